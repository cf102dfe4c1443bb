// A folder of a test's own, removed with all it holds when the test ends.
#pragma once

#include <string>
#include <string_view>

namespace kavo::test {

class TempFolder {
 public:
  // A new folder in the system's temporary folder; throws when it cannot be made. Always the system's own files, even
  // while a test has another adapter in place.
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::u16string& path() const { return path_; }  // without "\" at its end
  // The core path of a name in the folder; the name may hold folders ("a\b.txt").
  std::u16string path(std::u16string_view name) const;
  void make_folder(std::u16string_view name) const;  // with every folder above it
  // Writes a file (folders in the name are made) and returns its path.
  std::u16string write(std::u16string_view name, std::string_view bytes) const;
  std::string read(std::u16string_view name) const;  // throws `failure` 53 when there is none
  bool exists(std::u16string_view name) const;
  std::size_t entry_count() const;  // files and folders directly in it

 private:
  std::u16string path_;
};

// A whole file through the system's files, wherever it lies; throws `failure`.
std::string read_file(std::u16string_view path);
void write_file(std::u16string_view path, std::string_view bytes);

}  // namespace kavo::test
