#include "driver/run_files.h"

#include <ranges>

#include "common/clsCommon.h"
#include "common/clsGetTempFileName.h"
#include "common/pending_file.h"
#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {

RunFiles::~RunFiles() {
  for (const Entry& entry : entries_ | std::views::reverse) put_back(entry);
}

void RunFiles::put_back(const Entry& entry) {
  if (entry.old.empty()) {
    clsCommon().DeleteFile(entry.path);
    return;
  }
  try {
    replace_file(entry.old, entry.path);
  } catch (const failure&) {
    // Promised: it stays under its other name. What a name holds that was free is not whole.
    if (entry.is_new) clsCommon().DeleteFile(entry.path);
  }
}

void RunFiles::add(std::u16string_view path) { entries_.push_back({std::u16string(path), u"", true}); }

std::u16string RunFiles::add_scratch(std::u16string_view extension) {
  // No other run draws this number: the name is taken when the file is made, not here.
  std::u16string path = clsGetTempFileName().Filename() + u"-" + to_utf16(std::to_string(ports().clock->seed()));
  if (!extension.empty()) path += u"." + std::u16string(extension);
  add(path);
  return path;
}

void RunFiles::make_way_for(std::u16string_view name) {
  const std::u16string path = file_to_replace(name);
  const auto info = ports().files->info(path);
  if (info && info->is_folder) throw failure(FailureNumber::kPathFileAccess, path + u" is a folder");
  std::u16string old;
  if (info) {
    old = name_aside(path);
    try {
      replace_file(path, old);
    } catch (const failure& reason) {
      if (!reason.is(FailureNumber::kFileNotFound)) throw;
      old.clear();  // another run has freed the name
    }
  }
  entries_.push_back({path, std::move(old), true});
}

void RunFiles::borrow(std::u16string_view name) {
  make_way_for(name);
  entries_.back().is_borrowed = true;
}

void RunFiles::keep_copy_of(std::u16string_view name) {
  const std::u16string path = file_to_replace(name);
  const auto info = ports().files->info(path);
  if (info && info->is_folder) return;
  std::u16string old;
  if (info) {
    old = name_aside(path);
    copy_file(path, old);
    if (info->is_read_only) ports().files->set_read_only(old, true);
  }
  entries_.push_back({path, std::move(old), false});
}

void RunFiles::keep() {
  for (const Entry& entry : entries_) {
    if (entry.is_borrowed) {
      put_back(entry);
      continue;
    }
    if (entry.old.empty()) continue;
    if (entry.is_new) ports().files->take_permissions(entry.path, entry.old);
    clsCommon().DeleteFile(entry.old);
  }
  entries_.clear();
}

bool is_file(std::u16string_view path) {
  const auto info = ports().files->info(path);
  return info && !info->is_folder;
}

bool is_same_file(std::u16string_view a, std::u16string_view b) {
  FileSystem& files = *ports().files;
  return equal_ignoring_case(files.absolute(a), files.absolute(b));
}

void refuse_twin(std::u16string_view path) {
  const std::u16string_view name = path.substr(clsCommon().strParseFileName(path, 0).size());
  // The name may have been given in other letters than the folder has it.
  std::vector<std::u16string> found = ports().files->find(path);
  std::erase_if(found, [&](const std::u16string& other) { return !equal_ignoring_case(other, name); });
  if (found.size() < 2) return;
  throw failure(FailureNumber::kFileAlreadyExists, u"The names " + found[0] + u" and " + found[1] +
                                                       u" differ in letter case only; rename one of the files");
}

}  // namespace kavo
