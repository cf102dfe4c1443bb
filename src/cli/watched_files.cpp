#include "cli/watched_files.h"

#include <algorithm>
#include <utility>

#include "cli/memory_reserve.h"
#include "common/folder_run.h"
#include "platform/failure.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr std::size_t kMostPaths = 4096;

// Runs an operation; its failure names the path.
template <class Operation>
decltype(auto) about(std::u16string_view path, Operation&& operation) {
  try {
    return operation();
  } catch (const failure& reason) {
    std::u16string text(path);
    text += u": ";
    // Some adapters name the file themselves.
    if (path.empty() || reason.description().starts_with(text)) throw;
    throw failure(reason.number(), text + reason.description(), reason.source());
  }
}

class WatchedFile final : public File {
 public:
  explicit WatchedFile(std::u16string_view path) : path_(path) {}
  void watch(std::unique_ptr<File> inner) noexcept { inner_ = std::move(inner); }

  std::size_t read(std::span<char> buffer) override {
    throw_if_memory_ran_out();
    return about(path_, [&] { return inner_->read(buffer); });
  }
  void write(std::string_view bytes) override {
    throw_if_memory_ran_out();
    about(path_, [&] { inner_->write(bytes); });
  }
  void seek(std::uint64_t position) override {
    about(path_, [&] { inner_->seek(position); });
  }
  std::uint64_t size() override {
    return about(path_, [&] { return inner_->size(); });
  }
  void close() override {
    about(path_, [&] { inner_->close(); });
  }

 private:
  std::unique_ptr<File> inner_;
  std::u16string path_;
};

// Replaces `what` with `with`, except where it is part of a longer path.
void replace_paths(std::u16string& text, const std::u16string& what, const std::u16string& with) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::u16string::npos;) {
    const std::size_t end = at + what.size();
    const bool is_part = (at > 0 && text[at - 1] == u'\\') || (end < text.size() && text[end] == u'\\');
    if (!is_part) text.replace(at, what.size(), with);
    at += is_part ? 1 : with.size();
  }
}

}  // namespace

std::u16string WatchedFiles::in_host_form(std::u16string text) const {
  std::vector<const std::u16string*> named;
  for (const Paths* const paths : {&paths_, &older_paths_})
    for (const std::u16string& path : *paths)
      if (text.find(path) != std::u16string::npos) named.push_back(&path);
  // A longer path comes before one that it begins with.
  std::ranges::stable_sort(named, std::ranges::greater(), [](const std::u16string* path) { return path->size(); });
  for (const std::u16string* path : named) {
    const std::u16string once = *path + u": ";
    for (std::size_t at; (at = text.find(once + once)) != std::u16string::npos;) text.erase(at, once.size());
    // "path (path: the reason)"
    if (const std::size_t at = text.find(*path + u" (" + once); at != std::u16string::npos)
      text.erase(at + path->size() + 2, once.size());
    if (path->find(u'\\') != std::u16string::npos) replace_paths(text, *path, to_utf16(path_to_host(*path)));
  }
  return text;
}

void WatchedFiles::forget() {
  paths_.clear();
  older_paths_.clear();
}

void WatchedFiles::remember(std::u16string_view path) {
  if (path.empty() || paths_.contains(path)) return;
  if (paths_.size() >= kMostPaths) older_paths_ = std::exchange(paths_, {});
  paths_.emplace(path);
  paths_.insert(FolderRun::without_scratch_folder(path));
}

std::unique_ptr<File> WatchedFiles::open(std::u16string_view path, Access access) {
  throw_if_memory_ran_out();
  remember(path);
  // This is allocated before the file is created. If memory ran out afterwards, nobody would remove the file.
  auto file = std::make_unique<WatchedFile>(path);
  file->watch(about(path, [&] { return inner_.open(path, access); }));
  return file;
}

std::optional<FileInfo> WatchedFiles::info(std::u16string_view path) {
  remember(path);
  return about(path, [&] { return inner_.info(path); });
}

std::vector<std::u16string> WatchedFiles::find(std::u16string_view pattern) {
  remember(pattern);
  return about(pattern, [&] { return inner_.find(pattern); });
}

std::optional<FileIdentity> WatchedFiles::identity(std::u16string_view path) {
  remember(path);
  return about(path, [&] { return inner_.identity(path); });
}

void WatchedFiles::make_folder(std::u16string_view path) {
  about(path, [&] { inner_.make_folder(path); });
}

void WatchedFiles::remove_folder(std::u16string_view path) {
  about(path, [&] { inner_.remove_folder(path); });
}

void WatchedFiles::link_file(std::u16string_view path, std::u16string_view second_name) {
  about(second_name, [&] { inner_.link_file(path, second_name); });
}

void WatchedFiles::flush(const std::vector<std::u16string>& paths) { inner_.flush(paths); }

void WatchedFiles::remove_file(std::u16string_view path) {
  remember(path);
  about(path, [&] { inner_.remove_file(path); });
}

void WatchedFiles::rename_file(std::u16string_view from, std::u16string_view to) {
  remember(from);
  remember(to);
  about(to, [&] { inner_.rename_file(from, to); });
}

void WatchedFiles::set_read_only(std::u16string_view path, bool read_only) {
  remember(path);
  about(path, [&] { inner_.set_read_only(path, read_only); });
}

std::unique_ptr<FileLock> WatchedFiles::lock(std::u16string_view path) {
  remember(path);
  return about(path, [&] { return inner_.lock(path); });
}

std::u16string WatchedFiles::link_target(std::u16string_view path) {
  std::u16string target = about(path, [&] { return inner_.link_target(path); });
  remember(path);
  remember(target);
  return target;
}

void WatchedFiles::take_permissions(std::u16string_view path, std::u16string_view model, Permissions which) {
  about(path, [&] { inner_.take_permissions(path, model, which); });
}

std::u16string WatchedFiles::temporary_folder() {
  std::u16string folder = inner_.temporary_folder();
  remember(folder);
  return folder;
}

std::u16string WatchedFiles::absolute(std::u16string_view path) {
  std::u16string whole = about(path, [&] { return inner_.absolute(path); });
  remember(whole);
  return whole;
}

}  // namespace kavo
