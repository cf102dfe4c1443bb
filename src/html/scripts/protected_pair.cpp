#include "html/scripts/protected_pair.h"

#include <algorithm>

#include "common/block_reader.h"
#include "common/file_comparison.h"
#include "common/folder_run.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "formats/script/language.h"
#include "formats/text/utf16_mark.h"
#include "html/file_trouble.h"
#include "html/repair/clsHTMLValidate.h"
#include "html/scripts/script_protector.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

// True for a file that holds more than white space. A script file without scripts holds a line end, or a blank and one.
bool holds_something(const std::u16string& path) {
  const auto info = ports().files->info(path);
  if (!info || info->is_folder) return false;
  BlockReader reader(path);
  while (reader.more()) {
    if (reader.window().find_first_not_of(" \t\r\n") != std::string_view::npos) return true;
    reader.consume(reader.window().size());
  }
  return false;
}

script::Language language_of_page(const std::u16string& page) {
  return script::language_of_page(to_utf8(ascii_lower(extension_of(page))));
}

bool is_same(std::u16string_view a, std::u16string_view b) {
  const auto one = ports().files->info(a);
  const auto other = ports().files->info(b);
  return one && other && one->size == other->size && !first_difference(a, b);
}

std::u16string compare_with_new_pair(const PageNames& names, bool has_html, bool has_script) {
  BlockReader page(names.page);
  if (starts_as_utf16(page)) return has_html ? names.html : names.script;  // UTF-16 pages are never protected
  // This run is never committed, so the files made here for comparison are removed again, even when the program is
  // killed.
  FolderRun scratch(names.html);
  PendingFile html(names.html);
  PendingFile script(names.script);
  ScriptProtector protector({html, nullptr}, {script, nullptr});
  ProgressEvent progress;
  protector.run(page, names.page, progress);
  html.complete();
  script.complete();
  if (has_script && !is_same(script.temporary_path(), names.script)) return names.script;
  if (!has_html || is_same(html.temporary_path(), names.html)) return {};
  // The command keeps repairs within branches, the automation object does not.
  for (const bool keeps_branches : {false, true}) {
    const std::u16string copy = scratch.scratch_path(file_name_of(names.html));
    copy_file(html.temporary_path(), copy);
    clsHTMLValidate repair;
    repair.Filename(copy);
    repair.ends_in_script(protector.ends_in_script());
    if (keeps_branches) repair.scripts(script.temporary_path(), language_of_page(names.page));
    if (repair.HTMLValidate() != 0) throw failure(FailureNumber::kPathFileAccess, repair.ErrorList().back().text);
    if (is_same(copy, names.html)) return {};
  }
  return names.html;
}

}  // namespace

std::u16string work_beside_page(const PageNames& names) {
  const bool has_html = holds_something(names.html);
  const bool has_script = holds_something(names.script);
  if (!has_html && !has_script) return {};
  try {
    return compare_with_new_pair(names, has_html, has_script);
  } catch (const file_failure& reason) {
    throw failure(FailureNumber::kPathFileAccess, to_utf16(path_to_host(reason.path())) + u": " + reason.description());
  }
}

}  // namespace kavo
