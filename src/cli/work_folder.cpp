#include "cli/work_folder.h"

#include <cstdio>
#include <random>

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

[[noreturn]] void throw_no_folder(const std::error_code& error) {
  throw failure(FailureNumber::kPathFileAccess,
                u"No temporary folder could be made: " + to_utf16(error ? error.message() : "every name is taken"));
}

}  // namespace

WorkFolder::WorkFolder() {
  const fs::path parent = to_filesystem(ports().files->temporary_folder());
  std::random_device random;
  std::error_code error;
  for (int attempt = 0; attempt < 100; ++attempt) {
    char name[32];
    std::snprintf(name, sizeof name, "kavo-%08x", static_cast<unsigned>(random()));
    path_ = parent / name;
    if (!fs::create_directory(path_, error)) {
      if (error) break;
      continue;
    }
    fs::permissions(path_, fs::perms::owner_all, error);
    return;
  }
  throw_no_folder(error);
}

WorkFolder::~WorkFolder() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

std::u16string WorkFolder::make(std::string_view name) const {
  const fs::path folder = path_ / name;
  std::error_code error;
  fs::create_directory(folder, error);
  if (error) throw_no_folder(error);
  return from_filesystem(folder);
}

}  // namespace kavo
