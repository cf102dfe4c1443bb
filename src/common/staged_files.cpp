#include "common/staged_files.h"

#include <algorithm>
#include <array>
#include <utility>

#include "common/path_parts.h"
#include "common/work_folder_name.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/unicode.h"
#include "platform/wildcard.h"

namespace kavo {
namespace {

std::u16string_view folder_part(std::u16string_view path) { return path.substr(0, folder_size_of(path)); }

std::u16string_view name_part(std::u16string_view path) { return path.substr(folder_size_of(path)); }

bool lies_in(std::u16string_view path, std::u16string_view folder) {
  return path.size() > folder.size() && path[folder.size()] == u'\\' &&
         equal_ignoring_case(path.substr(0, folder.size()), folder);
}

[[noreturn]] void throw_absent(std::u16string_view path) {
  throw failure(FailureNumber::kFileNotFound, u"There is no file " + std::u16string(path));
}

}  // namespace

std::u16string numbered_scratch_folder(const std::u16string& scratch, std::size_t number) {
  return formatted(u"{}\\{}", scratch, number);
}

StagedFiles::StagedFiles(FileSystem& real, std::u16string folder, Needs needs)
    : real_(real), folder_(std::move(folder)), current_folder_(real.absolute(u".")), needs_(std::move(needs)) {
  if (!current_folder_.ends_with(u'\\')) current_folder_ += u'\\';
  temporary_folder_ = real_.temporary_folder();
  if (temporary_folder_.empty()) return;
  temporary_folder_ = full_path(temporary_folder_);
  if (!temporary_folder_.ends_with(u'\\')) temporary_folder_ += u'\\';
  // Documents that are in the temporary folder themselves are staged like any others.
  if (equal_ignoring_case(folder_part(folder_), temporary_folder_)) temporary_folder_.clear();
}

// A run asks a hundred times for each document, so the system is asked for the current folder only once.
std::u16string StagedFiles::full_path(std::u16string_view path) const {
  const bool is_below_current_folder =
      !path.empty() && path.front() != u'\\' && path.front() != u'/' && path.find(u':') == std::u16string_view::npos;
  return real_.absolute(is_below_current_folder ? current_folder_ + std::u16string(path) : path);
}

bool StagedFiles::is_temporary(const std::u16string& path) const {
  return !temporary_folder_.empty() && equal_ignoring_case(folder_part(path), temporary_folder_);
}

// The command's work folder that contains the path, "" when there is none.
std::u16string StagedFiles::work_folder_of(const std::u16string& path) const {
  if (temporary_folder_.empty() || path.size() <= temporary_folder_.size() ||
      !equal_ignoring_case(path.substr(0, temporary_folder_.size()), temporary_folder_))
    return u"";
  const std::size_t end = path.find(u'\\', temporary_folder_.size());
  if (end == std::u16string::npos) return u"";
  std::u16string folder = path.substr(0, end);
  return is_work_folder_name(std::u16string_view(folder).substr(temporary_folder_.size())) ? folder : u"";
}

// The command removes its work folders with everything in them, so their files need no staging. The one that the run
// works in is staged like any other folder.
bool StagedFiles::is_in_other_work_folder(const std::u16string& path) const {
  const std::u16string folder = work_folder_of(path);
  return !folder.empty() && !lies_in(folder_, folder);
}

std::u16string StagedFiles::temporary_folder() {
  const std::u16string own = work_folder_of(folder_);
  return own.empty() ? real_.temporary_folder() : own;
}

bool StagedFiles::passes_through(const std::u16string& path) const {
  return lies_in(path, folder_) || is_temporary(path) || is_in_other_work_folder(path) ||
         std::ranges::any_of(borrowed_, [&](const std::u16string& name) { return equal_ignoring_case(name, path); });
}

void StagedFiles::borrow(std::u16string_view path) { borrowed_.push_back(full_path(path)); }

void StagedFiles::give_back(std::u16string_view path) {
  const std::u16string name = full_path(path);
  std::erase_if(borrowed_, [&](const std::u16string& other) { return equal_ignoring_case(other, name); });
}

std::u16string StagedFiles::scratch_path(std::u16string_view name) {
  for (std::size_t number = 1;; ++number) {
    const std::u16string folder = numbered_scratch_folder(folder_, number);
    std::u16string place = folder + u'\\' + std::u16string(name);
    if (!taken_.insert(place).second) continue;
    if (number > numbered_folders_) {
      needs_.scratch_folder();
      real_.make_folder(folder);
      numbered_folders_ = number;
    }
    return place;
  }
}

std::u16string StagedFiles::path_to_read(std::u16string_view path) const {
  const auto found = view_.entries.find(full_path(path));
  return found == view_.entries.end() || found->second.scratch.empty() ? std::u16string(path) : found->second.scratch;
}

std::u16string StagedFiles::path_to_write(std::u16string_view path) {
  std::u16string whole = full_path(path);
  if (passes_through(whole)) return whole;
  if (const auto old = info(whole); old && old->is_folder)
    throw failure(FailureNumber::kPathFileAccess, whole + u" is a folder");
  std::u16string place = scratch_path(name_part(whole));
  set(whole, place);
  return place;
}

std::u16string StagedFiles::existing(std::u16string_view path) const {
  const auto found = view_.entries.find(full_path(path));
  if (found == view_.entries.end()) return std::u16string(path);
  if (found->second.scratch.empty()) throw_absent(path);
  return found->second.scratch;
}

void StagedFiles::set(const std::u16string& path, std::u16string scratch) {
  // A name that has no real file needs no entry to be absent.
  if (scratch.empty() && !real_.info(path))
    view_.entries.erase(path);
  else
    view_.entries.insert_or_assign(path, Entry{path, std::move(scratch)});
  view_.read_only.erase(path);
}

// Refuses what the system would refuse: a folder or a read-only file in the place (`old`), or a missing folder.
void StagedFiles::check_replaceable(const std::u16string& path, const std::optional<FileInfo>& old) {
  if (!old) return check_folder_of(path);
  if (old->is_folder) throw failure(FailureNumber::kPathFileAccess, path + u" is a folder");
  if (old->is_read_only) throw failure(FailureNumber::kPermissionDenied, path + u" is read-only");
}

void StagedFiles::check_folder_of(const std::u16string& path) {
  const auto folder = real_.info(folder_part(path));
  if (!folder || !folder->is_folder)
    throw failure(FailureNumber::kPathNotFound, u"There is no folder " + std::u16string(folder_part(path)));
}

std::u16string StagedFiles::draft_path(std::u16string_view path, bool replaces) {
  std::u16string whole = full_path(path);
  if (lies_in(whole, folder_) && !replaces) return whole;
  if (passes_through(whole)) return {};
  check_folder_of(whole);
  return scratch_path(name_part(whole));
}

std::unique_ptr<File> StagedFiles::open(std::u16string_view path, Access access) {
  if (access == Access::kRead) return real_.open(existing(path), access);
  const std::u16string whole = full_path(path);
  if (passes_through(whole)) {
    if (is_temporary(whole)) needs_.temporary_file(whole);
    return real_.open(path, access);
  }
  const auto old = info(whole);
  if (old && old->is_special) return real_.open(path, access);
  if (old && access == Access::kCreateNew) throw failure(FailureNumber::kFileAlreadyExists, whole + u" exists already");
  check_replaceable(whole, old);
  const bool appends = old && access == Access::kAppend;
  std::u16string place = appends ? copy_into_scratch(existing(path)) : scratch_path(name_part(whole));
  auto file = real_.open(place, appends ? Access::kAppend : Access::kCreateNew);
  set(whole, std::move(place));
  return file;
}

std::optional<FileInfo> StagedFiles::info(std::u16string_view path) {
  if (path.empty()) return std::nullopt;
  const std::u16string whole = full_path(path);
  const auto entry = view_.entries.find(whole);
  if (entry == view_.entries.end()) {
    auto info = real_.info(path);
    const auto attribute = view_.read_only.find(whole);
    if (info && attribute != view_.read_only.end()) info->is_read_only = attribute->second;
    return info;
  }
  if (entry->second.scratch.empty()) return std::nullopt;
  return real_.info(entry->second.scratch);
}

std::optional<FileIdentity> StagedFiles::identity(std::u16string_view path) {
  if (path.empty()) return std::nullopt;
  const auto entry = view_.entries.find(full_path(path));
  if (entry == view_.entries.end()) return real_.identity(path);
  return entry->second.scratch.empty() ? std::nullopt : real_.identity(entry->second.scratch);
}

std::vector<std::u16string> StagedFiles::find(std::u16string_view pattern) {
  std::vector<std::u16string> names = real_.find(pattern);
  const std::size_t separator = pattern.find_last_of(u"\\/");
  const std::size_t split = separator == std::u16string_view::npos ? 0 : separator + 1;
  const std::u16string folder = full_path(split == 0 ? u"." : pattern.substr(0, split));
  const std::u16string_view bare =
      folder.ends_with(u'\\') ? std::u16string_view(folder).substr(0, folder.size() - 1) : std::u16string_view(folder);
  for (const auto& [path, entry] : view_.entries) {
    const std::u16string_view parent = folder_part(path);
    if (!equal_ignoring_case(parent.substr(0, parent.size() - 1), bare)) continue;
    const std::u16string name(name_part(path));
    const auto same = [&](const std::u16string& other) { return equal_ignoring_case(other, name); };
    if (entry.scratch.empty() || !real_.info(entry.scratch))
      std::erase_if(names, same);
    else if (matches_wildcard(name, pattern.substr(split)) && std::ranges::none_of(names, same))
      names.push_back(name);
  }
  std::erase_if(names, [&](const std::u16string& name) {
    return equal_ignoring_case(name, name_part(folder_)) &&
           equal_ignoring_case(bare, folder_part(folder_).substr(0, bare.size()));
  });
  std::sort(names.begin(), names.end(), LessIgnoringCase{});
  return names;
}

void StagedFiles::remove_file(std::u16string_view path) {
  const std::u16string whole = full_path(path);
  if (passes_through(whole)) return real_.remove_file(path);
  const auto old = info(whole);
  if (!old) throw_absent(path);
  check_replaceable(whole, old);
  set(whole, u"");
}

void StagedFiles::rename_file(std::u16string_view from, std::u16string_view to) {
  const std::u16string source = full_path(from);
  const std::u16string target = full_path(to);
  const bool source_is_real = passes_through(source);
  if (source_is_real && passes_through(target)) return real_.rename_file(from, to);
  if (!info(source)) throw_absent(from);
  if (!equal_ignoring_case(source, target)) check_replaceable(target, info(target));
  if (passes_through(target)) {
    real_.rename_file(existing(source), target);
    return set(source, u"");
  }
  const auto entry = view_.entries.find(source);
  std::u16string place;
  if (taken_.contains(source) && name_part(source) == name_part(target)) {
    place = source;
  } else if (!source_is_real && entry == view_.entries.end()) {
    place = copy_into_scratch(source);
  } else {
    place = scratch_path(name_part(target));
    real_.rename_file(source_is_real ? source : entry->second.scratch, place);
  }
  if (!source_is_real) set(source, u"");
  set(target, std::move(place));
}

void StagedFiles::link_file(std::u16string_view path, std::u16string_view second_name) {
  const std::u16string second = full_path(second_name);
  if (passes_through(second)) return real_.link_file(existing(path), second_name);
  if (info(second)) throw failure(FailureNumber::kFileAlreadyExists, second + u" exists already");
  check_folder_of(second);
  set(second, copy_into_scratch(existing(path)));
}

void StagedFiles::set_read_only(std::u16string_view path, bool read_only) {
  const std::u16string whole = full_path(path);
  const auto entry = view_.entries.find(whole);
  if (passes_through(whole) || entry != view_.entries.end()) return real_.set_read_only(existing(path), read_only);
  const auto now = real_.info(path);
  if (!now) throw_absent(path);
  if (now->is_read_only == read_only)
    view_.read_only.erase(whole);
  else
    view_.read_only.insert_or_assign(whole, read_only);
}

std::u16string StagedFiles::link_target(std::u16string_view path) {
  return view_.entries.contains(full_path(path)) ? std::u16string(path) : real_.link_target(path);
}

void StagedFiles::take_permissions(std::u16string_view path, std::u16string_view model, Permissions which) {
  real_.take_permissions(path_to_read(path), path_to_read(model), which);
}

std::u16string StagedFiles::copy_into_scratch(const std::u16string& path) {
  std::u16string place = scratch_path(name_part(path));
  const auto input = real_.open(path, Access::kRead);
  const auto output = real_.open(place, Access::kCreateNew);
  std::array<char, 65536> block;
  while (const std::size_t count = input->read(block)) output->write({block.data(), count});
  output->close();
  return place;
}

}  // namespace kavo
