// A new file that takes its final name only when it is complete.
//
// The bytes go to a temporary file. commit() writes the rest, forces the file onto the disk and renames it over the
// final name in one step, so at every moment the final name has the complete old or the complete new file. Without
// commit() the temporary file is removed and the old file stays. A link stays a link: the file that it leads to is
// replaced. The new file has the permissions of the old one. If there is no old file, it has the permissions that the
// system gives to new files, or those of the document from which it is made.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "platform/files.h"

namespace kavo {

class PendingFile {
 public:
  struct Target {
    std::u16string path;  // what a link leads to
    bool exists;
  };
  // The file that a new one for `path` will replace. Throws as file_to_replace() does.
  static Target target_of(std::u16string_view path);

  // Makes a temporary file of a new name beside `final_path`, or where the file system wants drafts. Throws `failure`,
  // as do all operations.
  explicit PendingFile(std::u16string_view final_path);
  // The same with a temporary name that the caller has chosen. An existing file with that name is an error (58).
  PendingFile(std::u16string_view final_path, std::u16string_view temporary_path);
  ~PendingFile();
  PendingFile(const PendingFile&) = delete;
  PendingFile& operator=(const PendingFile&) = delete;

  void write(std::string_view bytes) {
    if (bytes.size() <= kBufferSize - used_) {
      bytes.copy(buffer_.get() + used_, bytes.size());
      used_ += bytes.size();
    } else {
      write_through(bytes);
    }
  }
  // If there is no old file, the new one gets the permissions of `document`, from which it is made, but not the right
  // to execute. Call it before the first byte is written, so that what is private stays private.
  void take_permissions_of(std::u16string_view document);
  // Bytes written so far.
  std::uint64_t size() const { return written_ + used_; }
  // Writes what is buffered and closes the file. From now on the complete file can be read under temporary_path().
  // Without commit() it is still removed. A second call does nothing.
  void complete();
  // complete(), and the file stays under temporary_path() for the caller to move.
  void finish();
  // complete(), then the file takes its final name. When that fails, the old file stays and the destructor removes the
  // temporary file.
  void commit();

  const std::u16string& temporary_path() const { return temporary_path_; }
  const std::u16string& final_path() const { return final_path_; }  // what a link leads to

 private:
  static constexpr std::size_t kBufferSize = 256 * 1024;
  PendingFile(Target target, std::u16string_view temporary_path);
  void open();
  void write_through(std::string_view bytes);
  void flush();
  void discard() noexcept;

  std::u16string final_path_;
  std::u16string temporary_path_;
  std::unique_ptr<File> file_;
  std::unique_ptr<char[]> buffer_;
  std::size_t used_ = 0;
  std::uint64_t written_ = 0;
  bool replaces_;
  bool discard_ = true;
};

// Puts a complete file in the place of another one, which may be missing or read-only. It renames the file or, between
// volumes, makes a copy beside the target and renames that over it. At every moment one of the two files is whole; when
// it throws `failure`, both are as they were. False when the source was copied from another volume and could not be
// removed. The file that is replaced is file_to_replace(target).
bool replace_file(std::u16string_view source, std::u16string_view target);

// The file that a link leads to, or the path itself. Throws `failure` 75 for a device or a pipe: replacing it would
// take it away from every program.
std::u16string file_to_replace(std::u16string_view path);

// Copies through a PendingFile, so that an interrupted copy leaves no half file. An existing target is replaced and
// keeps its permissions. A new one gets those of the source, except for the right to execute.
void copy_file(std::u16string_view source, std::u16string_view target);

}  // namespace kavo
