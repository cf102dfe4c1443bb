#include "platform/posix/host.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <utility>

#include "platform/formatted.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

FailureNumber number_of(int error) {
  switch (error) {
    case ENOENT:
      return FailureNumber::kFileNotFound;
    case ENOTDIR:
      return FailureNumber::kPathNotFound;
    case EEXIST:
      return FailureNumber::kFileAlreadyExists;
    case EACCES:
    case EPERM:
    case EROFS:
    case EBUSY:
    case ETXTBSY:
      return FailureNumber::kPermissionDenied;
    case EISDIR:
    case ELOOP:
    case EINVAL:
    case ENOTEMPTY:
    case ENAMETOOLONG:
      return FailureNumber::kPathFileAccess;
    case ENOSPC:
    case EFBIG:
    case EDQUOT:
      return FailureNumber::kDiskFull;
    case EMFILE:
    case ENFILE:
      return FailureNumber::kTooManyFiles;
    case EXDEV:
      return FailureNumber::kDifferentDrive;
    case ENOMEM:
      return FailureNumber::kOutOfMemory;
    default:
      return FailureNumber::kDeviceError;
  }
}

}  // namespace

failure host_failure(int error) { return failure(number_of(error), to_utf16(std::generic_category().message(error))); }

void throw_errno() { throw host_failure(errno); }

bool means_absent(int error) { return error == ENOENT || error == ENOTDIR; }

Descriptor::~Descriptor() {
  if (number_ >= 0) ::close(number_);
}

LockedFile::~LockedFile() {
  if (file_.get() >= 0) ::flock(file_.get(), LOCK_UN);
}

int Descriptor::release() noexcept { return std::exchange(number_, -1); }

Descriptor open_host(const std::string& path, int flags, unsigned mode) {
  for (;;) {
    const int number = ::open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, mode);
    if (number >= 0) return Descriptor(number);
    if (errno != EINTR) throw_errno();
  }
}

void write_all(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw_errno();
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void close_host(Descriptor descriptor) {
  // Linux has released the descriptor even when it reports an interruption.
  if (::close(descriptor.release()) != 0 && errno != EINTR) throw_errno();
}

std::optional<std::string> read_host_file(const std::string& path) {
  struct stat status;
  if (::stat(path.c_str(), &status) != 0) {
    if (means_absent(errno)) return std::nullopt;
    throw_errno();
  }
  const Descriptor descriptor = open_host(path, O_RDONLY);
  std::string bytes;
  std::array<char, 65536> block;
  for (;;) {
    const ssize_t count = ::read(descriptor.get(), block.data(), block.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw_errno();
    if (count == 0) return bytes;
    bytes.append(block.data(), static_cast<std::size_t>(count));
  }
}

void replace_host_file(const std::string& path, std::string_view bytes) {
  struct stat status;
  const bool exists = ::stat(path.c_str(), &status) == 0;
  // Skips the names of other processes that are doing the same at this moment.
  std::string temporary;
  std::optional<Descriptor> descriptor;
  for (int attempt = 0; !descriptor; ++attempt) {
    temporary = formatted("{}.kavo-{}-{}", path, ::getpid(), attempt);
    try {
      descriptor.emplace(open_host(temporary, O_WRONLY | O_CREAT | O_EXCL));
    } catch (const failure& reason) {
      if (!reason.is(FailureNumber::kFileAlreadyExists) || attempt == 100) throw;
    }
  }
  try {
    if (exists && ::fchmod(descriptor->get(), status.st_mode & 07777) != 0) throw_errno();
    write_all(descriptor->get(), bytes);
    if (::fsync(descriptor->get()) != 0) throw_errno();
    close_host(std::move(*descriptor));
    if (::rename(temporary.c_str(), path.c_str()) != 0) throw_errno();
  } catch (...) {
    ::unlink(temporary.c_str());
    throw;
  }
}

std::string config_folder() {
  const auto variable = [](const char* name) {
    const char* value = std::getenv(name);
    return std::string(value ? value : "");
  };
  if (std::string own = variable("KAVO_CONFIG_FOLDER"); !own.empty()) return own;
  if (const std::string shared = variable("XDG_CONFIG_HOME"); !shared.empty()) return shared + "/kavo";
  std::string home = variable("HOME");
  if (home.empty()) {  // services and cron jobs may run without it
    if (const passwd* const user = ::getpwuid(::getuid())) home = user->pw_dir;
  }
  return home + "/.config/kavo";
}

void make_host_folder(const std::string& path) {
  for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
    const std::string part = path.substr(0, end);
    // The mode is 0700, because settings are private.
    if (::mkdir(part.c_str(), 0700) != 0 && errno != EEXIST) throw_errno();
    if (end == std::string::npos) return;
  }
}

}  // namespace kavo
