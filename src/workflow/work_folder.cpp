#include "workflow/work_folder.h"

#include <cstdio>
#include <exception>
#include <memory>
#include <optional>
#include <random>
#include <set>

#include "common/work_folder_name.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

namespace fs = std::filesystem;

fs::path to_filesystem(std::u16string_view path) {
  const std::string host = path_to_host(path);
  return fs::path(std::u8string(host.begin(), host.end()));
}

std::u16string from_filesystem(const fs::path& path) {
  const std::u8string host = path.u8string();
  return path_from_host(std::string(host.begin(), host.end()));
}

[[noreturn]] void throw_no_folder(const fs::path& parent, const std::error_code& error) {
  throw failure(FailureNumber::kPathFileAccess, u"No temporary folder could be made in " +
                                                    to_utf16(path_to_host(from_filesystem(parent))) + u": " +
                                                    to_utf16(error ? error.message() : "every name is taken"));
}

// The mark of such a folder. A marked folder that nobody locks was left by a killed run.
constexpr char kMark[] = "kavo.work";

// Removes a folder with all that it holds, the mark last, so that what a run killed here leaves can still be
// recognized. Throws `failure` and std::filesystem::filesystem_error.
void remove_marked_folder(const fs::path& folder) {
  for (const fs::directory_entry& entry : fs::directory_iterator(folder))
    if (entry.path().filename() != kMark) fs::remove_all(entry.path());
  FileSystem& files = *ports().files;
  const std::u16string mark = from_filesystem(folder / kMark);
  if (files.info(mark)) files.remove_file(mark);
  files.remove_folder(from_filesystem(folder));
}

// The reason why a folder could not be removed, or nothing. Tries twice: the second attempt may succeed.
std::optional<std::string> trouble_of_removing(const fs::path& folder) {
  for (int attempt = 0;; ++attempt) {
    try {
      remove_marked_folder(folder);
      return std::nullopt;
    } catch (const std::exception& reason) {
      if (attempt > 0) return reason.what();
    }
  }
}

void remove_own_folder(const fs::path& folder) {
  if (const std::optional<std::string> reason = trouble_of_removing(folder))
    std::fprintf(stderr, "kavo: %s could not be removed: %s\n", path_to_host(from_filesystem(folder)).c_str(),
                 reason->c_str());
}

// The folders of this process that are in use. A lock cannot show this, because on Windows the thread that holds a lock
// gets it again.
std::set<std::u16string>& folders_in_use() {
  static std::set<std::u16string> folders;
  return folders;
}

// True for the folder that a run leaves when it is killed before it has made its mark.
bool is_empty_folder(const fs::path& path) {
  std::error_code error;
  return fs::is_directory(path, error) && fs::is_empty(path, error);
}

// True when another run mistook a folder that had no mark yet for an abandoned one.
bool was_cleared_up(const failure& reason) {
  return reason.is(FailureNumber::kFileNotFound) || reason.is(FailureNumber::kPathNotFound) ||
         reason.is(FailureNumber::kPermissionDenied);
}

// Removes what killed runs of this user have left. What cannot be examined or removed stays.
void remove_abandoned_folders(const fs::path& parent) {
  FileSystem& files = *ports().files;
  std::u16string folder = from_filesystem(parent);
  if (!folder.ends_with(u'\\')) folder += u'\\';
  try {
    for (const std::u16string& name : files.find(folder + std::u16string(kWorkFolderStart) + u"*")) {
      if (!is_work_folder_name(name) || folders_in_use().contains(name)) continue;
      const std::u16string path = folder + name;
      const bool has_mark = files.info(path + u"\\" + to_utf16(kMark)).has_value();
      if (!has_mark && !is_empty_folder(to_filesystem(path))) continue;
      std::unique_ptr<FileLock> lock;
      try {
        lock = files.lock(path);
      } catch (const failure&) {
        continue;  // its run is at work
      }
      bool is_removed = false;
      if (has_mark) {
        is_removed = !trouble_of_removing(to_filesystem(path));
      } else {
        std::error_code error;  // it may be empty no more
        is_removed = fs::remove(to_filesystem(path), error);
      }
      if (is_removed)
        std::fprintf(stderr, "kavo: removed %s, which a run that was stopped had left\n", path_to_host(path).c_str());
    }
  } catch (const failure&) {
    // The temporary folder cannot be listed. Then old folders stay.
  }
}

}  // namespace

WorkFolder::WorkFolder() {
  const fs::path parent = to_filesystem(ports().files->temporary_folder());
  remove_abandoned_folders(parent);
  std::random_device random;
  std::error_code error;
  for (int attempt = 0; attempt < 100; ++attempt) {
    char digits[kWorkFolderDigits + 1];
    std::snprintf(digits, sizeof digits, "%08x", static_cast<unsigned>(random()));
    path_ = parent / (to_utf8(kWorkFolderStart) + digits);
    if (!fs::create_directory(path_, error)) {
      if (error) break;
      continue;
    }
    fs::permissions(path_, fs::perms::owner_all, error);
    try {
      lock_ = ports().files->lock(from_filesystem(path_));
      ports().files->open(from_filesystem(path_ / kMark), Access::kCreate)->close();
      folders_in_use().insert(from_filesystem(path_.filename()));
    } catch (const failure& reason) {
      remove_own_folder(path_);
      if (attempt > 0 || !was_cleared_up(reason)) throw;
      continue;
    } catch (...) {
      remove_own_folder(path_);
      throw;
    }
    return;
  }
  throw_no_folder(parent, error);
}

WorkFolder::~WorkFolder() {
  remove_own_folder(path_);
  folders_in_use().erase(from_filesystem(path_.filename()));
}

std::u16string WorkFolder::make(std::string_view name) const {
  const fs::path folder = path_ / name;
  std::error_code error;
  fs::create_directory(folder, error);
  if (error) throw_no_folder(path_, error);
  return from_filesystem(folder);
}

}  // namespace kavo
