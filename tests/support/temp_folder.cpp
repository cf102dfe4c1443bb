#include "support/temp_folder.h"

#include <filesystem>
#include <random>
#include <thread>

#include "platform/ports.h"
#include "platform/unicode.h"
#include "support/system.h"

namespace kavo::test {
namespace {

namespace fs = std::filesystem;

// A fresh thread has the system's adapters, whatever a test has put in their place in this one.
FileSystem& files() {
  static FileSystem* const system = [] {
    FileSystem* found = nullptr;
    std::thread([&] { found = ports().files; }).join();
    return found;
  }();
  return *system;
}

}  // namespace

TempFolder::TempFolder() {
  std::u16string parent = files().temporary_folder();
  if (!parent.ends_with(u'\\')) parent += u'\\';
  do {
    path_ = parent + u"kavo-test-" + to_utf16(std::to_string(std::random_device{}()));
  } while (!fs::create_directory(to_filesystem_path(path_)));
}

TempFolder::~TempFolder() {
  std::error_code ignored;
  const fs::path root = to_filesystem_path(path_);
  // Windows keeps a read-only file.
  for (fs::recursive_directory_iterator entry(root, ignored), end; !ignored && entry != end; entry.increment(ignored)) {
    std::error_code unimportant;
    if (entry->is_regular_file(unimportant))
      fs::permissions(entry->path(), fs::perms::owner_write, fs::perm_options::add, unimportant);
  }
  fs::remove_all(root, ignored);
}

std::u16string TempFolder::path(std::u16string_view name) const { return path_ + u'\\' + std::u16string(name); }

void TempFolder::make_folder(std::u16string_view name) const { fs::create_directories(to_filesystem_path(path(name))); }

std::u16string TempFolder::write(std::u16string_view name, std::string_view bytes) const {
  const std::size_t separator = name.rfind(u'\\');
  if (separator != std::u16string_view::npos) make_folder(name.substr(0, separator));
  write_file(path(name), bytes);
  return path(name);
}

std::string TempFolder::read(std::u16string_view name) const { return read_file(path(name)); }

bool TempFolder::exists(std::u16string_view name) const { return fs::exists(to_filesystem_path(path(name))); }

std::size_t TempFolder::entry_count() const {
  std::size_t count = 0;
  for ([[maybe_unused]] const fs::directory_entry& entry : fs::directory_iterator(to_filesystem_path(path_))) ++count;
  return count;
}

std::string read_file(std::u16string_view path) {
  const std::unique_ptr<File> file = files().open(path, Access::kRead);
  std::string bytes(static_cast<std::size_t>(file->size()), '\0');
  bytes.resize(file->read(bytes));
  return bytes;
}

void write_file(std::u16string_view path, std::string_view bytes) {
  const std::unique_ptr<File> file = files().open(path, Access::kCreate);
  file->write(bytes);
  file->close();
}

}  // namespace kavo::test
