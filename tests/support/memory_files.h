// Files and folders in memory, for tests that must see every byte and fail on purpose.
//
// Behaves as the system's adapters do: names ignore case and keep it, a file needs an existing folder, a read-only file
// is not emptied, removed or replaced, and no file is renamed over one that is open (Windows refuses that, so a
// converter must close its input before it replaces it). Unlike Windows it lets an open file be removed.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/case_fold.h"
#include "platform/files.h"

namespace kavo::test {

class MemoryFiles : public FileSystem {
 public:
  // "C:\", "C:\TEMP" (the temporary folder) and "C:\WORK" (where relative paths lie) exist.
  MemoryFiles();

  // For the test itself: no failures, folders are made as needed.
  void put(std::u16string_view path, std::string_view bytes);
  std::string get(std::u16string_view path) const;  // throws `failure` 53
  bool has(std::u16string_view path) const;
  void add_folder(std::u16string_view path);      // with every folder above it
  std::vector<std::u16string> all_files() const;  // full paths as written, sorted without regard to case
  void set_temporary_folder(std::u16string_view path) { temporary_folder_ = path; }

  std::unique_ptr<File> open(std::u16string_view path, Access access) override;
  std::optional<FileInfo> info(std::u16string_view path) override;
  std::vector<std::u16string> find(std::u16string_view pattern) override;
  std::optional<FileIdentity> identity(std::u16string_view path) override;
  void make_folder(std::u16string_view path) override;
  void remove_folder(std::u16string_view path) override;
  void remove_file(std::u16string_view path) override;
  void link_file(std::u16string_view path, std::u16string_view second_name) override;
  void flush(const std::vector<std::u16string>& paths) override {
    for (const std::u16string& path : paths) existing_file(key(path));
  }
  void rename_file(std::u16string_view from, std::u16string_view to) override;
  void set_read_only(std::u16string_view path, bool read_only) override;
  // Nobody else is there to be kept from a file.
  std::unique_ptr<FileLock> lock(std::u16string_view path) override;
  std::u16string link_target(std::u16string_view path) override { return std::u16string(path); }
  void take_permissions(std::u16string_view, std::u16string_view, Permissions) override {}
  std::u16string temporary_folder() override { return temporary_folder_; }
  std::u16string absolute(std::u16string_view path) override;

 private:
  struct Entry {
    bool is_folder = false;
    bool is_read_only = false;
    std::shared_ptr<std::string> bytes;
    std::uint64_t number = 0;
  };
  using Entries = std::map<std::u16string, Entry, LessIgnoringCase>;

  static std::u16string key(std::u16string_view path);
  static std::u16string parent(const std::u16string& path);
  Entry& existing_file(const std::u16string& path);
  void check_folder(const std::u16string& path);

  Entries entries_;
  std::uint64_t last_number_ = 0;  // of an entry, its identity
  std::u16string temporary_folder_ = u"C:\\TEMP\\";
};

}  // namespace kavo::test
