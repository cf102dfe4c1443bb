// fsync(2) waits until the disk has emptied its own cache. Files that are flushed one after another wait for that each
// time, but the kernel combines requests that wait at the same time. So the bytes of all files are sent on their way
// first, and several threads wait.
#include "platform/posix/flush.h"

#include <fcntl.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <system_error>
#include <thread>

#include "platform/posix/host.h"

namespace kavo {
namespace {

constexpr std::size_t kMostThreads = 4;  // with more, starting them costs more than they save
constexpr std::uint32_t kInMemory = 0x01021994;  // tmpfs, as statfs(2) names it: nothing to wait for

bool is_in_memory(const std::string& file) {
  struct statfs volume;
  return ::statfs(file.c_str(), &volume) == 0 && static_cast<std::uint32_t>(volume.f_type) == kInMemory;
}

// Has the kernel begin to write a file, without waiting. Only a hint: what cannot be begun is written by fsync(2).
void begin_to_write(const std::string& path) noexcept {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (file < 0) return;
  ::sync_file_range(file, 0, 0, SYNC_FILE_RANGE_WRITE);
  ::close(file);
}

void flush_one(const std::string& path) {
  const Descriptor file = open_host(path, O_RDONLY);
  // Pipes and some mounted volumes have nothing to force.
  if (::fsync(file.get()) != 0 && errno != EINVAL && errno != EROFS) throw_errno();
}

}  // namespace

std::vector<std::exception_ptr> flush_together(const std::vector<std::string>& files) {
  std::vector<std::exception_ptr> failures(files.size());
  std::atomic<std::size_t> next = 0;
  const auto work = [&]() noexcept {
    for (std::size_t i; (i = next++) < files.size();) {
      try {
        flush_one(files[i]);
      } catch (...) {
        failures[i] = std::current_exception();
      }
    }
  };
  std::vector<std::jthread> helpers;
  if (files.size() > 1 && !is_in_memory(files.front())) {
    const std::size_t count = std::min(files.size(), kMostThreads) - 1;
    helpers.reserve(count);
    for (const std::string& file : files) begin_to_write(file);
    try {
      while (helpers.size() < count) helpers.emplace_back(work);
    } catch (const std::exception&) {
      // If there are no more threads, or no memory for them, those that have started do all the work.
    }
  }
  work();
  helpers.clear();
  return failures;
}

}  // namespace kavo
