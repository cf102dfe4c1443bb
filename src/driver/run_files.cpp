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
namespace {

// A name of its own: what a killed run left there may be the only whole copy.
std::u16string name_aside(std::u16string_view path) {
  FileSystem& files = *ports().files;
  std::u16string name = std::u16string(path) + u".kavo-old";
  for (int number = 2; files.info(name); ++number)
    name = std::u16string(path) + u".kavo-old" + to_utf16(std::to_string(number));
  return name;
}

}  // namespace

RunFiles::~RunFiles() {
  for (const Entry& entry : entries_ | std::views::reverse) {
    if (entry.old.empty()) {
      clsCommon().DeleteFile(entry.path);
      continue;
    }
    try {
      replace_file(entry.old, entry.path);
    } catch (const failure&) {
      // Promised: it stays under its other name. What a name holds that was free is not whole.
      if (entry.is_new) clsCommon().DeleteFile(entry.path);
    }
  }
}

void RunFiles::add(std::u16string_view path) { entries_.push_back({std::u16string(path), u"", true}); }

std::u16string RunFiles::add_scratch(std::u16string_view extension) {
  std::u16string path = clsGetTempFileName().Filename();
  if (!extension.empty()) path += u"." + std::u16string(extension);
  add(path);
  return path;
}

void RunFiles::make_way_for(std::u16string_view path) {
  const auto info = ports().files->info(path);
  if (info && info->is_folder) throw failure(FailureNumber::kPathFileAccess, std::u16string(path) + u" is a folder");
  std::u16string old;
  if (info) {
    old = name_aside(path);
    replace_file(path, old);
  }
  entries_.push_back({std::u16string(path), std::move(old), true});
}

void RunFiles::keep_copy_of(std::u16string_view path) {
  const auto info = ports().files->info(path);
  if (info && info->is_folder) return;
  std::u16string old;
  if (info) {
    old = name_aside(path);
    copy_file(path, old);
    if (info->is_read_only) ports().files->set_read_only(old, true);
  }
  entries_.push_back({std::u16string(path), std::move(old), false});
}

void RunFiles::keep() {
  for (const Entry& entry : entries_)
    if (!entry.old.empty()) clsCommon().DeleteFile(entry.old);
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

}  // namespace kavo
