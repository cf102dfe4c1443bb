#include "support/memory_files.h"

#include <algorithm>

#include "platform/failure.h"
#include "platform/wildcard.h"

namespace kavo::test {
namespace {

constexpr std::u16string_view kCurrentFolder = u"C:\\WORK";

[[noreturn]] void raise(FailureNumber number, std::u16string_view reason, std::u16string_view path) {
  throw failure(number, std::u16string(reason) + u": " + std::u16string(path));
}

class MemoryFile final : public File {
 public:
  MemoryFile(std::shared_ptr<std::string> bytes, bool writable) : bytes_(std::move(bytes)), writable_(writable) {}

  std::size_t read(std::span<char> buffer) override {
    if (position_ >= bytes_->size()) return 0;
    const std::size_t count = std::min(buffer.size(), bytes_->size() - position_);
    std::copy_n(bytes_->data() + position_, count, buffer.data());
    position_ += count;
    return count;
  }

  void write(std::string_view bytes) override {
    if (!writable_) raise(FailureNumber::kPermissionDenied, u"Opened for reading", u"");
    bytes_->resize(std::max(bytes_->size(), position_ + bytes.size()));
    std::copy_n(bytes.data(), bytes.size(), bytes_->data() + position_);
    position_ += bytes.size();
  }

  void seek(std::uint64_t position) override { position_ = static_cast<std::size_t>(position); }
  std::uint64_t size() override { return bytes_->size(); }
  void close() override { bytes_ = std::make_shared<std::string>(); }

 private:
  std::shared_ptr<std::string> bytes_;
  bool writable_;
  std::size_t position_ = 0;
};

}  // namespace

MemoryFiles::MemoryFiles() {
  add_folder(kCurrentFolder);
  add_folder(temporary_folder_);
}

// Absolute, with "\" only, without "." and "..", and without "\" at its end.
std::u16string MemoryFiles::key(std::u16string_view path) {
  std::u16string whole(path);
  std::replace(whole.begin(), whole.end(), u'/', u'\\');
  const auto starts_with_drive = [&] { return whole.size() >= 2 && whole[1] == u':'; };
  if (!starts_with_drive() && !whole.starts_with(u'\\')) whole = std::u16string(kCurrentFolder) + u'\\' + whole;
  const bool has_drive = starts_with_drive();
  std::vector<std::u16string_view> names;
  std::u16string_view rest = whole;
  while (!rest.empty()) {
    const std::u16string_view name = rest.substr(0, rest.find(u'\\'));
    rest.remove_prefix(std::min(rest.size(), name.size() + 1));
    if (name == u"..") {
      if (names.size() > 1) names.pop_back();
    } else if (!name.empty() && name != u".") {
      names.push_back(name);
    }
  }
  std::u16string result = has_drive ? u"" : whole.starts_with(u"\\\\") ? u"\\" : u"";
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0 || !has_drive) result += u'\\';
    result += names[i];
  }
  return result;
}

std::u16string MemoryFiles::parent(const std::u16string& path) {
  const std::size_t separator = path.rfind(u'\\');
  return separator == std::u16string::npos ? u"" : path.substr(0, separator);
}

void MemoryFiles::add_folder(std::u16string_view path) {
  for (std::u16string folder = key(path); !folder.empty(); folder = parent(folder))
    entries_.try_emplace(folder, Entry{true, false, nullptr, ++last_number_});
}

void MemoryFiles::put(std::u16string_view path, std::string_view bytes) {
  const std::u16string whole = key(path);
  add_folder(parent(whole));
  entries_.insert_or_assign(whole, Entry{false, false, std::make_shared<std::string>(bytes), ++last_number_});
}

std::string MemoryFiles::get(std::u16string_view path) const {
  const auto found = entries_.find(key(path));
  if (found == entries_.end() || found->second.is_folder) raise(FailureNumber::kFileNotFound, u"File not found", path);
  return *found->second.bytes;
}

bool MemoryFiles::has(std::u16string_view path) const { return entries_.contains(key(path)); }

std::vector<std::u16string> MemoryFiles::all_files() const {
  std::vector<std::u16string> paths;
  for (const auto& [path, entry] : entries_)
    if (!entry.is_folder) paths.push_back(path);
  return paths;
}

void MemoryFiles::check_folder(const std::u16string& path) {
  const std::u16string folder = parent(path);
  const auto found = entries_.find(folder);
  if (!folder.empty() && (found == entries_.end() || !found->second.is_folder))
    raise(FailureNumber::kPathNotFound, u"Path not found", path);
}

MemoryFiles::Entry& MemoryFiles::existing_file(const std::u16string& path) {
  check_folder(path);
  const auto found = entries_.find(path);
  if (found == entries_.end()) raise(FailureNumber::kFileNotFound, u"File not found", path);
  if (found->second.is_folder) raise(FailureNumber::kPathFileAccess, u"Is a folder", path);
  return found->second;
}

std::unique_ptr<File> MemoryFiles::open(std::u16string_view path, Access access) {
  const std::u16string whole = key(path);
  if (access == Access::kRead) return std::make_unique<MemoryFile>(existing_file(whole).bytes, false);
  check_folder(whole);
  const bool exists = entries_.contains(whole);
  if (exists && access == Access::kCreateNew) raise(FailureNumber::kFileAlreadyExists, u"File exists", path);
  if (!exists) entries_.emplace(whole, Entry{false, false, std::make_shared<std::string>(), ++last_number_});
  Entry& entry = existing_file(whole);
  if (entry.is_read_only) raise(FailureNumber::kPermissionDenied, u"Permission denied", path);
  auto file = std::make_unique<MemoryFile>(entry.bytes, true);
  if (access == Access::kAppend)
    file->seek(entry.bytes->size());
  else
    entry.bytes->clear();
  return file;
}

std::optional<FileInfo> MemoryFiles::info(std::u16string_view path) {
  if (path.empty()) return std::nullopt;
  const auto found = entries_.find(key(path));
  if (found == entries_.end()) return std::nullopt;
  const Entry& entry = found->second;
  return FileInfo{entry.is_folder ? 0 : entry.bytes->size(), entry.is_folder, entry.is_read_only};
}

std::vector<std::u16string> MemoryFiles::find(std::u16string_view pattern) {
  const std::size_t separator = pattern.find_last_of(u"\\/");
  const bool has_folder = separator != std::u16string_view::npos;
  const std::u16string folder = key(has_folder ? pattern.substr(0, separator + 1) : std::u16string_view());
  const std::u16string_view wanted = has_folder ? pattern.substr(separator + 1) : pattern;
  std::vector<std::u16string> names;
  for (const auto& [path, entry] : entries_) {
    if (!equal_ignoring_case(parent(path), folder)) continue;
    const std::u16string name = path.substr(folder.empty() ? 0 : folder.size() + 1);
    if (matches_wildcard(name, wanted)) names.push_back(name);
  }
  return names;
}

std::optional<FileIdentity> MemoryFiles::identity(std::u16string_view path) {
  if (path.empty()) return std::nullopt;
  const auto found = entries_.find(key(path));
  if (found == entries_.end()) return std::nullopt;
  return FileIdentity{1, found->second.number};
}

void MemoryFiles::make_folder(std::u16string_view path) {
  const std::u16string whole = key(path);
  check_folder(whole);
  if (!entries_.try_emplace(whole, Entry{true, false, nullptr, ++last_number_}).second)
    raise(FailureNumber::kFileAlreadyExists, u"File exists", path);
}

void MemoryFiles::remove_folder(std::u16string_view path) {
  const std::u16string whole = key(path);
  const auto found = entries_.find(whole);
  if (found == entries_.end()) raise(FailureNumber::kFileNotFound, u"File not found", path);
  for (const auto& [other, entry] : entries_)
    if (equal_ignoring_case(parent(other), whole)) raise(FailureNumber::kPathFileAccess, u"Folder not empty", path);
  entries_.erase(found);
}

void MemoryFiles::link_file(std::u16string_view path, std::u16string_view second_name) {
  const Entry entry = existing_file(key(path));
  const std::u16string second = key(second_name);
  check_folder(second);
  if (!entries_.emplace(second, entry).second) raise(FailureNumber::kFileAlreadyExists, u"File exists", second_name);
}

void MemoryFiles::remove_file(std::u16string_view path) {
  const std::u16string whole = key(path);
  if (existing_file(whole).is_read_only) raise(FailureNumber::kPermissionDenied, u"Permission denied", path);
  entries_.erase(whole);
}

void MemoryFiles::rename_file(std::u16string_view from, std::u16string_view to) {
  const std::u16string source = key(from);
  const std::u16string target = key(to);
  existing_file(source);
  check_folder(target);
  if (source.substr(0, 2) != target.substr(0, 2)) raise(FailureNumber::kDifferentDrive, u"Different drive", to);
  if (!equal_ignoring_case(source, target) && entries_.contains(target)) {
    const Entry& replaced = existing_file(target);
    if (replaced.is_read_only) raise(FailureNumber::kPermissionDenied, u"Permission denied", to);
    // Every open file shares the bytes with its entry, and so does every second name.
    long names = 0;
    for (const auto& [other, entry] : entries_) names += entry.bytes == replaced.bytes ? 1 : 0;
    if (replaced.bytes.use_count() > names) raise(FailureNumber::kPermissionDenied, u"The file is open", to);
  }
  const Entry moved = existing_file(source);
  entries_.erase(source);
  entries_.erase(target);
  entries_.emplace(target, moved);
}

void MemoryFiles::set_read_only(std::u16string_view path, bool read_only) {
  existing_file(key(path)).is_read_only = read_only;
}

std::unique_ptr<FileLock> MemoryFiles::lock(std::u16string_view path) {
  if (!has(path)) raise(FailureNumber::kFileNotFound, u"File not found", path);
  return nullptr;
}

std::u16string MemoryFiles::absolute(std::u16string_view path) {
  if (path.empty()) raise(FailureNumber::kFileNotFound, u"No name", path);
  std::u16string whole = key(path);
  if (path.ends_with(u'\\') || path.ends_with(u'/')) whole += u'\\';
  return whole;
}

}  // namespace kavo::test
