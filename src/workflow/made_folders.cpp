#include "workflow/made_folders.h"

#include <string>
#include <system_error>

#include "platform/failure.h"
#include "platform/files.h"
#include "platform/unicode.h"

namespace kavo {

MadeFolders::~MadeFolders() {
  for (auto folder = made_.rbegin(); folder != made_.rend(); ++folder) {
    std::error_code error;
    std::filesystem::remove(*folder, error);  // what is not empty stays
  }
}

void MadeFolders::make(std::u16string_view folder) {
  const std::string host = path_to_host(folder);
  std::filesystem::path path(std::u8string(host.begin(), host.end()));
  if (!path.has_filename()) path = path.parent_path();  // "a/" is "a"
  std::error_code error;
  const auto check = [&] {
    if (error)
      throw failure(FailureNumber::kPathFileAccess, to_utf16(host + ": the folder cannot be made: " + error.message()));
  };
  std::vector<std::filesystem::path> missing;
  for (; !path.empty() && !std::filesystem::exists(path, error); path = path.parent_path()) {
    check();
    missing.push_back(path);
  }
  check();
  for (auto each = missing.rbegin(); each != missing.rend(); ++each) {
    const bool is_new = std::filesystem::create_directory(*each, error);  // false when another run was quicker
    check();
    if (is_new) made_.push_back(*each);
  }
}

}  // namespace kavo
