// Files through the system's calls.
//
// A file without write permission for its owner is read-only in the sense of Windows: it is not emptied, removed or
// replaced, though this system would allow the latter two. The permission bits decide, not what the user may do, so it
// is the same for an administrator.
#include "platform/files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>

#include "platform/adapters.h"
#include "platform/case_fold.h"
#include "platform/posix/flush.h"
#include "platform/posix/host.h"
#include "platform/posix/large_folders.h"
#include "platform/posix/paths.h"
#include "platform/wildcard.h"

namespace kavo {
namespace {

bool is_folder(const std::optional<struct stat>& status) { return status && S_ISDIR(status->st_mode); }
bool is_read_only(const std::optional<struct stat>& status) { return status && (status->st_mode & S_IWUSR) == 0; }

// A missing file and a missing folder share one errno but have different run-time error numbers.
failure path_failure(const std::string& path, const failure& error) {
  const std::string folder = split_host_path(path).folder;
  if (!error.is(FailureNumber::kFileNotFound) || folder.empty() || is_folder(status_of(folder))) return error;
  return failure(FailureNumber::kPathNotFound, error.description());
}

// True for a path that absolute() would return as it is. Most are.
bool is_plain_absolute(std::u16string_view path) {
  return path.front() == u'\\' && path.find(u'/') == path.npos && path.find(u"\\\\") == path.npos &&
         path.find(u"\\.") == path.npos;
}

class PosixFile final : public File {
 public:
  explicit PosixFile(const std::string& path, int flags) : descriptor_(open_host(path, flags)) {}

  std::size_t read(std::span<char> buffer) override {
    std::size_t done = 0;
    while (done < buffer.size()) {
      const ssize_t count = ::read(descriptor_.get(), buffer.data() + done, buffer.size() - done);
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) throw_errno();
      if (count == 0) break;
      done += static_cast<std::size_t>(count);
    }
    return done;
  }

  void write(std::string_view bytes) override { write_all(descriptor_.get(), bytes); }

  void seek(std::uint64_t position) override {
    if (::lseek(descriptor_.get(), static_cast<off_t>(position), SEEK_SET) < 0) throw_errno();
  }

  std::uint64_t size() override {
    struct stat status;
    if (::fstat(descriptor_.get(), &status) != 0) throw_errno();
    return static_cast<std::uint64_t>(status.st_size);
  }

  void close() override {
    if (descriptor_.get() >= 0) close_host(std::move(descriptor_));
  }

 private:
  Descriptor descriptor_;
};

// Network volumes of some systems have no flock(2).
bool means_no_locks(int error) { return error == ENOLCK || error == EOPNOTSUPP || error == EBADF; }

// flock(2) on the file or folder itself, so that a run that is killed leaves nothing behind.
class PosixLock final : public FileLock {
 public:
  // Null where the volume has no locks.
  static std::unique_ptr<PosixLock> take(const std::string& path) {
    for (;;) {
      Descriptor file = open_host(path, O_RDONLY | O_NONBLOCK);
      if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno == EINTR) continue;
        if (means_no_locks(errno)) return nullptr;
        throw errno == EWOULDBLOCK
            ? failure(FailureNumber::kPermissionDenied, path_from_host(path) + u" is in use by another run")
            : host_failure(errno);
      }
      // The last holder of the lock may have replaced the file. Then the new one must be locked.
      struct stat held;
      const std::optional<struct stat> named = status_of(path);
      if (::fstat(file.get(), &held) != 0) throw_errno();
      if (!named || named->st_ino != held.st_ino || named->st_dev != held.st_dev) continue;
      return std::unique_ptr<PosixLock>(new PosixLock(std::move(file)));
    }
  }

 private:
  explicit PosixLock(Descriptor file) : file_(std::move(file)) {}
  LockedFile file_;
};

// True when another user made this link in a folder where everybody may write. This is the kernel's own rule
// (fs.protected_symlinks), which is not switched on everywhere.
bool is_untrusted_link(const struct stat& link, const std::string& path) {
  const std::string folder = split_host_path(path).folder;
  const std::optional<struct stat> parent = status_of(folder.empty() ? "." : folder);
  constexpr mode_t kEverybodys = S_ISVTX | S_IWOTH;
  return parent && (parent->st_mode & kEverybodys) == kEverybodys && link.st_uid != ::geteuid() &&
         link.st_uid != parent->st_uid;
}

class PosixFiles final : public FileSystem {
 public:
  std::unique_ptr<File> open(std::u16string_view path, Access access) override {
    const FoundPath found = look_up(path);
    const std::string& host = found.host;
    if (access != Access::kCreateNew) {
      const std::optional<struct stat> status = found.target_status();
      if (is_folder(status)) throw host_failure(EISDIR);  // a folder can be opened for reading, but each read fails
      if (access != Access::kRead && is_read_only(status)) throw host_failure(EACCES);
    }
    int flags = O_RDONLY;
    if (access == Access::kCreate) flags = O_RDWR | O_CREAT | O_TRUNC;
    if (access == Access::kCreateNew) flags = O_RDWR | O_CREAT | O_EXCL;
    if (access == Access::kAppend) flags = O_RDWR | O_CREAT | O_APPEND;
    try {
      // make_unique allocates before the constructor opens the file. The other way round, a lack of memory would leave
      // a new file that nobody removes.
      return std::make_unique<PosixFile>(host, flags);
    } catch (const failure& error) {
      throw path_failure(host, error);
    }
  }

  std::optional<FileInfo> info(std::u16string_view path) override {
    const std::optional<struct stat> status = look_up(path).target_status();
    if (!status) return std::nullopt;
    FileInfo info;
    info.is_folder = is_folder(status);
    info.is_read_only = is_read_only(status);
    info.is_special = !info.is_folder && !S_ISREG(status->st_mode);
    info.size = info.is_folder ? 0 : static_cast<std::uint64_t>(status->st_size);
    return info;
  }

  std::optional<FileIdentity> identity(std::u16string_view path) override {
    const std::optional<struct stat> status = look_up(path).target_status();
    if (!status) return std::nullopt;
    return FileIdentity{status->st_dev, status->st_ino};
  }

  std::vector<std::u16string> find(std::u16string_view pattern) override {
    const std::size_t separator = pattern.find_last_of(u"\\/");
    const std::size_t split = separator == std::u16string_view::npos ? 0 : separator + 1;
    const std::string folder = split == 0 ? "." : resolve(pattern.substr(0, split));
    const std::u16string_view wanted = pattern.substr(split);
    std::vector<std::u16string> names;
    const bool is_one_name = wanted.find_first_of(u"*?") == std::u16string_view::npos;
    if (const auto kept = is_one_name ? spellings_in_large_folder(folder, path_to_host(wanted)) : std::nullopt) {
      for (const std::string& name : *kept) names.push_back(path_from_host(name));
      return names;
    }
    for_each_entry(folder, [&](const char* entry) {
      std::u16string name = path_from_host(entry);
      if (name != u"." && name != u".." && matches_wildcard(name, wanted)) names.push_back(std::move(name));
    });
    std::sort(names.begin(), names.end(), LessIgnoringCase{});
    return names;
  }

  void make_folder(std::u16string_view path) override {
    const std::string host = resolve(path);
    if (::mkdir(host.c_str(), 0700) != 0) throw path_failure(host, host_failure(errno));
  }

  void remove_folder(std::u16string_view path) override {
    const std::string host = resolve(path);
    if (::rmdir(host.c_str()) != 0) throw path_failure(host, host_failure(errno));
  }

  void link_file(std::u16string_view path, std::u16string_view second_name) override {
    const std::string source = resolve(path);
    const std::string target = resolve(second_name);
    if (::link(source.c_str(), target.c_str()) != 0) throw path_failure(target, host_failure(errno));
  }

  void flush(const std::vector<std::u16string>& paths) override {
    std::vector<std::string> hosts;
    hosts.reserve(paths.size());
    for (const std::u16string& path : paths) hosts.push_back(resolve(path));
    const std::vector<std::exception_ptr> failures = flush_together(hosts);
    for (std::size_t i = 0; i < paths.size(); ++i) {
      if (!failures[i]) continue;
      try {
        std::rethrow_exception(failures[i]);
      } catch (const failure& error) {
        const failure reason = path_failure(hosts[i], error);
        throw failure(reason.number(), paths[i] + u": " + reason.description(), reason.source());
      }
    }
  }

  void remove_file(std::u16string_view path) override {
    const auto& [host, status] = look_up(path);
    if (is_folder(status)) throw host_failure(EISDIR);
    if (is_read_only(status)) throw host_failure(EACCES);
    if (::unlink(host.c_str()) != 0) throw path_failure(host, host_failure(errno));
  }

  void rename_file(std::u16string_view from, std::u16string_view to) override {
    const std::string source = resolve(from);
    const FoundPath replaced = look_up(to);
    std::string target = replaced.host;
    if (target == source) {
      // The names differ in case at most: the caller wants the new spelling.
      target = split_host_path(source).folder + split_host_path(path_to_host(to)).name;
    } else {
      const std::optional<struct stat> status = replaced.target_status();
      if (is_folder(status)) throw host_failure(EISDIR);
      if (is_read_only(status)) throw host_failure(EACCES);
    }
    if (::rename(source.c_str(), target.c_str()) == 0) return;
    const failure error = host_failure(errno);
    throw path_failure(status_of(source, false) ? target : source, error);
  }

  void set_read_only(std::u16string_view path, bool read_only) override {
    const FoundPath found = look_up(path);
    const std::string& host = found.host;
    const std::optional<struct stat> status = found.target_status();
    if (!status) throw path_failure(host, host_failure(ENOENT));
    constexpr mode_t kAllWrite = S_IWUSR | S_IWGRP | S_IWOTH;
    const mode_t bits = status->st_mode & 07777;
    if (::chmod(host.c_str(), read_only ? bits & ~kAllWrite : bits | S_IWUSR) != 0) throw_errno();
  }

  std::unique_ptr<FileLock> lock(std::u16string_view path) override { return PosixLock::take(resolve(path)); }

  std::u16string link_target(std::u16string_view path) override {
    constexpr int kMostLinks = 40;  // the system's own limit
    const FoundPath found = look_up(path);
    if (!found.status || !S_ISLNK(found.status->st_mode)) return std::u16string(path);
    std::string host = found.host;
    std::array<char, PATH_MAX> target;
    for (int links = 0;; ++links) {
      const ssize_t size = ::readlink(host.c_str(), target.data(), target.size());
      if (size < 0) return links == 0 ? std::u16string(path) : path_from_host(host);
      if (links == kMostLinks) throw host_failure(ELOOP);
      if (const auto link = status_of(host, false); link && is_untrusted_link(*link, host))
        throw failure(FailureNumber::kPermissionDenied,
                      path_from_host(host) + u" is a link that another user made: name the file itself");
      std::string name(target.data(), static_cast<std::size_t>(size));
      if (!name.starts_with('/')) name.insert(0, split_host_path(host).folder);
      host = std::move(name);
    }
  }

  void take_permissions(std::u16string_view path, std::u16string_view model, Permissions which) override {
    const std::optional<struct stat> old = look_up(model).target_status();
    if (!old) return;
    const FoundPath found = look_up(path);
    const std::string& host = found.host;
    const std::optional<struct stat> now = found.target_status();
    if (!now) return;
    const bool same_owner = old->st_uid == now->st_uid && old->st_gid == now->st_gid;
    if (!same_owner) static_cast<void>(::chown(host.c_str(), old->st_uid, old->st_gid) == 0);
    // After chown(2), because that clears bits.
    const mode_t wanted = (old->st_mode & (which == Permissions::kAll ? 07777 : 0666)) | S_IWUSR;
    if (same_owner && wanted == (now->st_mode & 07777)) return;
    if (::chmod(host.c_str(), wanted) != 0 && errno != EPERM && errno != EOPNOTSUPP) throw_errno();
  }

  std::u16string temporary_folder() override {
    const char* folder = std::getenv("TMPDIR");
    return path_from_host(folder && *folder ? folder : "/tmp");
  }

  std::u16string absolute(std::u16string_view path) override {
    if (path.empty()) throw host_failure(ENOENT);
    std::u16string whole(path);
    if (is_plain_absolute(path)) return whole;
    std::replace(whole.begin(), whole.end(), u'/', u'\\');
    if (whole.front() != u'\\') {
      std::array<char, PATH_MAX> current;
      if (!::getcwd(current.data(), current.size())) {
        if (errno != ERANGE) throw_errno();
        throw failure(FailureNumber::kPathFileAccess,
                      u"its path is longer than the system can open (4,095 bytes). Work in a folder nearer to the top");
      }
      whole = path_from_host(current.data()) + u'\\' + whole;
    }
    // Uses the text alone, as GetFullPathName does: links are not followed.
    std::vector<std::u16string_view> names;
    std::u16string_view rest = whole;
    while (!rest.empty()) {
      const std::u16string_view name = rest.substr(0, rest.find(u'\\'));
      rest.remove_prefix(std::min(rest.size(), name.size() + 1));
      if (name == u"..") {
        if (!names.empty()) names.pop_back();
      } else if (!name.empty() && name != u".") {
        names.push_back(name);
      }
    }
    std::u16string result;
    for (const std::u16string_view name : names) (result += u'\\') += name;
    if (result.empty() || whole.back() == u'\\') result += u'\\';
    return result;
  }
};

}  // namespace

FileSystem& system_files() {
  static PosixFiles files;
  return files;
}

}  // namespace kavo
