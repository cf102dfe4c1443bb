#include "html/scripts/clsASP2HTML.h"

#include "common/block_reader.h"
#include "common/document_names.h"
#include "common/folder_run.h"
#include "common/line_index.h"
#include "common/pending_file.h"
#include "common/same_file.h"
#include "formats/text/utf16_mark.h"
#include "html/file_trouble.h"
#include "html/scripts/script_file.h"
#include "html/scripts/script_protector.h"
#include "html/scripts/script_restorer.h"
#include "platform/files.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "resources/string_table.h"

namespace kavo {
namespace {

// These messages share their numbers and texts with two buttons, deliberately: hosts know the messages by number and
// text.
constexpr TextRow kNoFileName = text::kMore;
constexpr TextRow kFileFailed = text::kLess;

[[noreturn]] void refuse_utf16(std::u16string_view path) {
  throw file_failure(path, u"The file is UTF-16 text. Save it as UTF-8 or in the system's code page and try again.");
}

// If an output were also the input or the other output, one document would overwrite another.
void refuse_shared_names(const PageNames& names) {
  const auto check = [](const std::u16string& a, const std::u16string& b) {
    if (!a.empty() && !b.empty() && about_file(b, [&] { return is_same_file(a, b); }))
      throw file_failure(b, u"The file is already open");
  };
  check(names.page, names.html);
  check(names.page, names.script);
  check(names.html, names.script);
}

void refuse_folder(const std::u16string& path) {
  const auto info = about_file(path, [&] { return ports().files->info(path); });
  if (info && info->is_folder) throw file_failure(path, u"There is a folder with this name");
}

std::u16string shown_path(std::u16string_view path) { return to_utf16(path_to_host(path)); }

std::u16string line_of(std::u16string_view path, std::uint64_t position) {
  const LinePlace place = about_file(path, [&] { return LineIndex(path).place_of(position); });
  return formatted(u", line {},", place.line);
}

std::u16string and_more(std::uint64_t count) { return count == 1 ? u"" : formatted(u" and {} more", count - 1); }

}  // namespace

std::int32_t clsASP2HTML::ASP2HTML() {
  return run(u"ASP2HTML : ", names_.page, complete_from_page, &clsASP2HTML::protect);
}

std::int32_t clsASP2HTML::HTML2ASP() {
  return run(u"HTML2ASP : ", names_.html, complete_from_html, &clsASP2HTML::restore);
}

std::int32_t clsASP2HTML::run(std::u16string_view what, const std::u16string& input, CompleteNames complete,
                              Operation operation) {
  messages_.clear();
  warnings_.clear();
  messages_.push_back({std::u16string(what) + input});
  progress_.restart();
  if (input.empty()) {
    messages_.push_back({std::u16string(kNoFileName.text), kNoFileName.number});
    return 1;
  }
  try {
    about_file(input, [&] { complete(names_); });
    refuse_shared_names(names_);
    return (this->*operation)();
  } catch (const file_failure& reason) {
    warnings_.clear();
    messages_.push_back(
        {formatted(u"{}{}\r\n{}", kFileFailed.text, reason.path(), reason.description()), kFileFailed.number});
    return 1;
  }
}

std::int32_t clsASP2HTML::protect() {
  auto input = about_file(names_.page, [&] { return BlockReader(names_.page); });
  if (about_file(names_.page, [&] { return starts_as_utf16(input); })) refuse_utf16(names_.page);
  refuse_folder(names_.html);
  refuse_folder(names_.script);
  // The page and the script file take their names together.
  auto run = about_file(names_.html, [&] { return std::make_unique<FolderRun>(names_.html); });
  PendingFile page = about_file(names_.html, [&] { return PendingFile(names_.html); });
  PendingFile script = about_file(names_.script, [&] { return PendingFile(names_.script); });
  ScriptProtector protector({page, page_trail_}, {script, script_trail_});
  protector.run(input, names_.page, progress_);
  ends_in_script_ = protector.ends_in_script();
  about_file(names_.script, [&] { script.commit(); });
  about_file(names_.html, [&] { page.commit(); });
  about_file(names_.html, [&] { run->commit(); });
  return 0;
}

std::int32_t clsASP2HTML::restore() {
  auto input = about_file(names_.html, [&] { return BlockReader(names_.html); });
  if (about_file(names_.html, [&] { return starts_as_utf16(input); })) refuse_utf16(names_.html);
  PendingFile page = about_file(names_.page, [&] { return PendingFile(names_.page); });
  auto script = about_file(names_.script, [&] { return ScriptFile(names_.script); });
  if (about_file(names_.script, [&] { return script.is_utf16(); })) refuse_utf16(names_.script);
  ScriptRestorer restorer(script, names_.script, page);
  restorer.run(input, names_.html, progress_);
  if (find_gaps(restorer, script) && refuse_gaps_) {
    messages_.insert(messages_.end(), warnings_.begin(), warnings_.end());
    return 1;
  }
  about_file(names_.page, [&] { page.commit(); });
  return 0;
}

// Collects the warnings. True when script would be lost.
bool clsASP2HTML::find_gaps(const ScriptRestorer& restorer, ScriptFile& script) {
  const ScriptRestorer::Missing& missing = restorer.missing();
  const ScriptFile::Unused unused = about_file(names_.script, [&] { return script.unused(); });
  const std::u16string script_name = shown_path(names_.script);
  const auto warn = [this](std::u16string text) { warnings_.push_back({std::move(text)}); };
  if (missing.count != 0)
    warn(formatted(u"{}{} has the placeholder {}{}, for which {} has no script", shown_path(names_.html),
                   line_of(names_.html, missing.position), missing.placeholder, and_more(missing.count), script_name));
  if (unused.count != 0)
    warn(formatted(u"{}{} has the script of {}{}, for which {} has no placeholder", script_name,
                   line_of(names_.script, unused.position), unused.placeholder, and_more(unused.count),
                   shown_path(names_.html)));
  if (script.ends_inside_block()) warn(script_name + u" ends inside its last script: it is cut short");
  const bool lost = !warnings_.empty();
  if (script.repeated() != 0)
    warn(formatted(u"Placeholders that occur more than once: {}; their script is written at each place",
                   script.repeated()));
  return lost;
}

std::u16string clsASP2HTML::GetError(std::int32_t index) const {
  if (index < 1 || static_cast<std::size_t>(index) > messages_.size()) return {};
  return messages_[static_cast<std::size_t>(index) - 1].text;
}

}  // namespace kavo
