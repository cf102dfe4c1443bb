// A folder is known by its volume and number, so that one that was moved or replaced is not taken for another. When
// notes are lost or cannot be read, everything is forgotten and folders are listed again.
#include "platform/posix/large_folders.h"

#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <exception>
#include <iterator>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "platform/case_fold.h"
#include "platform/fnv_hash.h"
#include "platform/posix/paths.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr std::size_t kMostFolders = 16;
constexpr std::size_t kMostCounted = 256;  // folders that are listed
constexpr std::uint32_t kAppears = IN_CREATE | IN_MOVED_TO;
constexpr std::uint32_t kGoes = IN_DELETE | IN_MOVED_FROM;

// ext2 to ext4, XFS, Btrfs, F2FS, ZFS, tmpfs, overlay: what statfs(2) says of volumes that only this machine changes.
constexpr std::uint32_t kLocalVolumes[] = {0xEF53,     0x58465342, 0x9123683E, 0xF2F52010,
                                           0x2FC12FC1, 0x01021994, 0x794C7630};

bool is_local(const std::string& folder) {
  struct statfs volume;
  return ::statfs(folder.c_str(), &volume) == 0 &&
         std::ranges::find(kLocalVolumes, static_cast<std::uint32_t>(volume.f_type)) != std::end(kLocalVolumes);
}

class Folder {
 public:
  Folder(int watch, const struct stat& status) : watch_(watch), volume_(status.st_dev), number_(status.st_ino) {}

  int watch() const { return watch_; }
  bool is(const struct stat& status) const { return status.st_dev == volume_ && status.st_ino == number_; }
  std::vector<std::string> spellings_of(const std::string& name) const {
    const std::u16string wanted = to_utf16(name);
    std::vector<std::string> found;
    const auto [begin, end] = names_.equal_range(spelling_hash(name));
    for (auto entry = begin; entry != end; ++entry)
      if (equal_ignoring_case(to_utf16(entry->second), wanted)) found.push_back(entry->second);
    std::ranges::sort(found);
    return found;
  }

  void add(const std::string& name) {
    remove(name);  // a file renamed over an existing name does not remove that name
    names_.emplace(spelling_hash(name), name);
  }
  void remove(const std::string& name) {
    const auto [begin, end] = names_.equal_range(spelling_hash(name));
    const auto found = std::find_if(begin, end, [&](const auto& entry) { return entry.second == name; });
    if (found != end) names_.erase(found);
  }

 private:
  static std::uint64_t spelling_hash(const std::string& name) {
    std::uint64_t hash = kFnvSeed;
    for (const char16_t unit : to_utf16(name)) hash = fnv_add(hash, upper_case(unit));
    return hash;
  }

  int watch_;
  dev_t volume_;
  ino_t number_;
  std::unordered_multimap<std::uint64_t, std::string> names_;  // by the hash that all spellings have
};

class LargeFolders {
 public:
  std::optional<std::vector<std::string>> spellings(const std::string& folder, const std::string& name,
                                                    const std::optional<struct stat>& status) {
    if (folders_.empty()) return std::nullopt;
    struct stat asked;
    if (!status && ::stat(folder.c_str(), &asked) != 0) return std::nullopt;
    const struct stat& known = status ? *status : asked;
    read_notes();
    const auto found = std::ranges::find_if(folders_, [&](const Folder& each) { return each.is(known); });
    if (found == folders_.end()) return std::nullopt;
    return found->spellings_of(name);
  }

  // The folder's name counts, not its identity, because scratch folders come and go with the same names.
  bool is_worth_keeping(const std::string& folder, std::size_t names) {
    if (listed_.size() == kMostCounted && !listed_.contains(folder)) listed_.clear();
    return (listed_[folder] += names + kNamesOfOneListing) >= kNamesWorthKeeping;
  }

  void keep(const std::string& folder) {
    if (!is_local(folder)) return;
    if (folders_.size() == kMostFolders) {
      // Documents come folder by folder, so the oldest one is not asked any more.
      ::inotify_rm_watch(notes_, folders_.front().watch());
      folders_.erase(folders_.begin());
    }
    if (notes_ < 0) notes_ = ::inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
    const int watch = ::inotify_add_watch(notes_, folder.c_str(), kAppears | kGoes | IN_ONLYDIR);
    if (watch < 0) return;
    struct stat status;
    if (::stat(folder.c_str(), &status) != 0) return forget();
    std::erase_if(folders_, [&](const Folder& each) { return each.watch() == watch; });
    // From here on every change is noted, and a note says whether a name exists, so it does not matter whether the
    // listing has seen the change.
    Folder& kept = folders_.emplace_back(watch, status);
    for_each_entry(folder, [&](const std::string& name) {
      if (name != "." && name != "..") kept.add(name);
    });
  }

  void forget() {
    folders_.clear();
    if (notes_ >= 0) ::close(notes_);
    notes_ = -1;
  }

 private:
  void read_notes() {
    alignas(inotify_event) char block[16384];
    for (;;) {
      const ssize_t size = ::read(notes_, block, sizeof block);
      if (size < 0 && errno == EINTR) continue;
      if (size < 0 && errno == EAGAIN) return;
      if (size <= 0) return forget();
      for (const char* at = block; at < block + size;) {
        inotify_event note;
        std::memcpy(&note, at, sizeof note);
        if ((note.mask & IN_Q_OVERFLOW) != 0) return forget();
        apply(note, note.len == 0 ? "" : at + sizeof note);
        at += sizeof note + note.len;
      }
    }
  }

  void apply(const inotify_event& note, const std::string& name) {
    const auto folder = std::ranges::find(folders_, note.wd, &Folder::watch);
    if (folder == folders_.end()) return;
    if ((note.mask & IN_IGNORED) != 0)
      folders_.erase(folder);
    else if ((note.mask & kAppears) != 0)
      folder->add(name);
    else if ((note.mask & kGoes) != 0)
      folder->remove(name);
  }

  int notes_ = -1;
  std::vector<Folder> folders_;
  std::unordered_map<std::string, std::size_t> listed_;  // names, by folder
};

// One object for all threads.
struct Shared {
  std::mutex mutex;
  LargeFolders folders;
};
Shared& shared() {
  static Shared object;
  return object;
}

// If a step cannot finish, everything is forgotten, because its notes have already been read.
template <class Step>
auto on_large_folders(Step&& step) noexcept {
  const std::lock_guard guard(shared().mutex);
  try {
    return step(shared().folders);
  } catch (const std::exception&) {
    shared().folders.forget();
    return decltype(step(shared().folders))();
  }
}

}  // namespace

std::optional<std::vector<std::string>> spellings_in_large_folder(const std::string& folder, const std::string& name,
                                                                  const std::optional<struct stat>& status) noexcept {
  return on_large_folders([&](LargeFolders& folders) { return folders.spellings(folder, name, status); });
}

void note_listing(const std::string& folder, std::size_t names) noexcept {
  on_large_folders([&](LargeFolders& folders) {
    if (folders.is_worth_keeping(folder, names)) folders.keep(folder);
  });
}

}  // namespace kavo
