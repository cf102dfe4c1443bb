// Port: files and folders.
//
// Paths are Windows paths in the whole core: "\" separates, case does not matter. The native adapter maps them to the
// host: "\" becomes "/", and if the exact name does not exist, it looks for one that differs in case. Every operation
// that fails throws `failure` with a run-time error number and the system's own description: 7 out of memory, 53 no
// such file, 58 name exists, 61 disk full, 67 too many open files, 70 refused (a read-only file is not emptied, removed
// or replaced), 74 another volume, 75 a folder in the place of a file or an impossible name, 76 no such folder, 57
// anything else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kavo {

struct FileInfo {
  std::uint64_t size = 0;  // bytes
  bool is_folder = false;
  bool is_read_only = false;
  bool is_special = false;  // a device, pipe or socket: to be read or written, never replaced
  bool is_hidden = false;   // by its attribute on Windows; natively no file counts as hidden
};

// Which of another file's permissions a file gets.
enum class Permissions {
  kAll,          // all: the file replaces the other one
  kOfADocument,  // all but the right to execute: the file is made from a document
};

// Identifies a file whatever names it has: the volume and the file's number on it (st_dev and st_ino; volume serial
// number and file index).
struct FileIdentity {
  std::uint64_t volume = 0;
  std::uint64_t number = 0;
  bool operator==(const FileIdentity&) const = default;
};

enum class Access {
  kRead,       // an existing file, for reading
  kCreate,     // for writing; an existing file is emptied
  kCreateNew,  // for writing; fails with 58 when the name exists (no two callers can both succeed)
  kAppend,     // for writing behind what the file holds; a missing file is made
};

// An open file. The destructor closes it and ignores a failure to do so; a writer must call close() to see that
// failure.
class File {
 public:
  virtual ~File() = default;
  // Fills the buffer as far as the file goes. A result that is smaller than the buffer means the end of the file.
  virtual std::size_t read(std::span<char> buffer) = 0;
  // Writes all bytes or throws.
  virtual void write(std::string_view bytes) = 0;
  virtual void seek(std::uint64_t position) = 0;  // bytes from the start, 0-based
  virtual std::uint64_t size() = 0;
  virtual void close() = 0;
};

// A lock on a file or folder, held until the object is destroyed.
class FileLock {
 public:
  virtual ~FileLock() = default;
};

class FileSystem {
 public:
  virtual ~FileSystem() = default;
  virtual std::unique_ptr<File> open(std::u16string_view path, Access access) = 0;
  // Nothing when no such entry exists. Throws when that cannot be found out: the entry may exist.
  virtual std::optional<FileInfo> info(std::u16string_view path) = 0;
  // The identity of the file or folder that the path leads to; nothing when there is none.
  virtual std::optional<FileIdentity> identity(std::u16string_view path) = 0;
  // The names (without folder) of the entries that match the pattern's last component, in which "*" and "?" mean what
  // they mean to FindFirstFile. Never "." and "..". Empty when nothing matches or the folder does not exist.
  virtual std::vector<std::u16string> find(std::u16string_view pattern) = 0;
  // Makes a folder for this user alone, in one that exists. Throws 58 when the name is taken.
  virtual void make_folder(std::u16string_view path) = 0;
  // Removes an empty folder.
  virtual void remove_folder(std::u16string_view path) = 0;
  virtual void remove_file(std::u16string_view path) = 0;
  // Gives a file a second name on its volume (link(2), CreateHardLink). Throws 58 when that name is taken, and another
  // number, which depends on the system, where the volume does not support second names.
  virtual void link_file(std::u16string_view path, std::u16string_view second_name) = 0;
  // Forces what was written to closed files onto the disk (fsync(2), FlushFileBuffers). Flushing several files in one
  // call takes little longer than flushing one. Throws when one of them cannot be flushed, with its path in front of
  // the description.
  virtual void flush(const std::vector<std::u16string>& paths) = 0;
  // Gives a file a new name on the same volume, replacing a file of that name in one step (MoveFileEx, rename(2)).
  // Throws 74 when the two names lie on different volumes, so that the caller can copy instead.
  virtual void rename_file(std::u16string_view from, std::u16string_view to) = 0;
  virtual void set_read_only(std::u16string_view path, bool read_only) = 0;
  // Locks an existing file or folder against other callers of lock(), whatever path they use; callers that take no lock
  // are not stopped. Throws 70 when another thread or process holds the lock. The thread that took the lock must
  // release it; the system does so when the process ends. Null where the volume has no locks.
  virtual std::unique_ptr<FileLock> lock(std::u16string_view path) = 0;
  // Where to write a new file for `path`: the target of a symbolic link of that name, whether or not the target exists,
  // else `path` itself. Throws 70 for a link that another user made in a folder where everybody may write (a sticky
  // one), because it could lead anywhere, and 75 for links that form a circle.
  virtual std::u16string link_target(std::u16string_view path) = 0;
  // Gives a file the permissions (chmod) and, where this user may, the owner (chown) of another one. The owner keeps
  // the right to write. Does nothing on Windows, where a file inherits its rights from the folder, and when `model`
  // does not exist. A volume without permissions, or an owner that this user may not set, is not a failure.
  virtual void take_permissions(std::u16string_view path, std::u16string_view model, Permissions which) = 0;
  virtual std::u16string temporary_folder() = 0;  // as GetTempPath returns it, with or without a "\" at its end
  // The full path, made from the text alone as GetFullPathName does: nothing need exist, links are not followed.
  virtual std::u16string absolute(std::u16string_view path) = 0;
  // Where to write a new file for `path` until it is complete, perhaps `path` itself; "" for any name beside it.
  // `replaces`: there is a file of that name. A caller that finds somebody's file there asks again.
  virtual std::u16string draft_path(std::u16string_view /*path*/, bool /*replaces*/) { return {}; }
};

// A path as the user of this machine writes it (UTF-8), turned into the core's form, and back.
std::u16string path_from_host(std::string_view host_path);
std::string path_to_host(std::u16string_view path);

}  // namespace kavo
