#include "suite/filters/html/placeholder_scripts.h"

#include <algorithm>

#include "common/document_names.h"
#include "common/path_parts.h"
#include "formats/html/elements.h"
#include "formats/script/control_flow.h"
#include "platform/case_fold.h"
#include "platform/formatted.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "suite/filters/document_facts.h"

namespace kavo::html {
namespace {

// How much of a script is shown.
constexpr std::size_t kLongestMeaning = 80;  // bytes

script::Language language_of_page(const ConversionSettings& settings) {
  PageNames names;
  names.html = settings.document;
  complete_from_html(names);
  const std::u16string page = settings.author_document.empty() ? names.page : settings.author_document;
  return script::language_of_page(to_utf8(ascii_lower(extension_of(page))));
}

// The script on one line, shortened before its end: "<% If a Then ... %>".
std::string shortened(std::string_view script, const TextCoding& coding) {
  std::string line;
  for (const char c : script) {
    if (line.size() > 4 * kLongestMeaning) break;
    if (!is_html_space(c))
      line += c;
    else if (!line.ends_with(' '))
      line += ' ';
  }
  if (line.size() <= kLongestMeaning) return line;
  line.resize(kLongestMeaning);
  line.resize(line.size() - coding.incomplete_tail(line));
  line += "...";
  if (script.ends_with("%>") || script.ends_with("?>")) (line += ' ') += script.substr(script.size() - 2);
  return line;
}

}  // namespace

PlaceholderScripts::PlaceholderScripts(const ConversionSettings& settings, const TextCoding& coding)
    : coding_(coding), languages_(language_of_page(settings)) {
  open(settings);
}

void PlaceholderScripts::open(const ConversionSettings& settings) {
  std::u16string script_file = to_utf16(fact(settings.options, kCompanion));
  if (script_file.empty()) {
    PageNames names;
    names.html = settings.document;
    complete_from_html(names);
    script_file = names.script;
  }
  MarkerReader page(settings.document, false);
  const auto info = ports().files->info(script_file);
  std::u16string problem;
  if (info && !info->is_folder) {
    MarkerReader scripts(script_file, true);
    for (std::uint64_t number = 1;; ++number) {
      const std::uint64_t in_page = page.next();
      const std::uint64_t in_scripts = scripts.next();
      if (in_page == 0 && in_scripts == 0) {
        file_.emplace(script_file, true);
        file_->next();
        return;
      }
      if (in_page == number && in_scripts == number) continue;
      problem = file_name_of(script_file) + u" does not hold the scripts of " + file_name_of(settings.document);
      break;
    }
  } else if (page.next() != 0) {
    problem =
        formatted(u"there is no {} with the scripts of {}", file_name_of(script_file), file_name_of(settings.document));
  }
  if (!problem.empty() && settings.tell)
    settings.tell({problem + u": its placeholders are shown as numbers, and conditions do not end a text. Prepare the "
                             u"page again"});
}

std::string PlaceholderScripts::meaning(std::string_view server_code) {
  if (placeholder_number(server_code) == 0)
    return server_code.starts_with(placeholder::kMarker) ? std::string() : shortened(server_code, coding_);
  const Script* const script = find(server_code);
  return script ? script->meaning : std::string();
}

bool PlaceholderScripts::divides(std::string_view server_code) {
  if (server_code.starts_with(placeholder::kMarker)) {
    const Script* const script = find(server_code);
    return script && script->divides;
  }
  return server_code.size() <= kLongestBlock && script_of(server_code).divides;
}

std::string PlaceholderScripts::unended_php(std::string_view server_code) {
  if (!server_code.starts_with(placeholder::kMarker))
    return server_code.size() <= kLongestBlock ? script_of(server_code).unended_php : std::string();
  const Script* const script = find(server_code);
  return script ? script->unended_php : std::string();
}

std::string PlaceholderScripts::text(std::string_view bytes) {
  if (!bytes.starts_with(placeholder::kMarker)) return std::string(bytes);
  keeps_text_ = true;
  const Script* const script = find(bytes);
  keeps_text_ = false;
  return script ? script->text : std::string(bytes);
}

const PlaceholderScripts::Script* PlaceholderScripts::find(std::string_view marker) {
  const std::uint64_t number = placeholder_number(marker);
  if (!file_ || number < first_) return nullptr;
  while (first_ + read_.size() <= number) {
    block_.clear();
    const bool is_last = file_->next(&block_) == 0;
    if (is_last && block_.empty()) return nullptr;
    read_.push_back(script_of(text_of_block(block_)));
  }
  return &read_[static_cast<std::size_t>(number - first_)];
}

PlaceholderScripts::Script PlaceholderScripts::script_of(std::string_view block) {
  Script script;
  script.meaning = shortened(block, coding_);
  // The script file does not distinguish a line end at the end of a block from its own. A heredoc needs one.
  const std::string_view line_end = block.ends_with("?>") ? "" : "\n";
  if (keeps_text_) script.text = formatted("{}{}", block, line_end);
  if (block.size() > kLongestBlock) return script;
  pieces_.clear();
  languages_.add_block(block, 0, block.size(), pieces_);
  bool goes_on = false;
  for (const script::Piece& piece : pieces_) {
    const script::Flow flow = script::flow_of(block, piece);
    script.divides = script.divides || flow.divides();
    goes_on = flow.goes_on;
  }
  if (goes_on) script.unended_php = formatted("{}{}", block.substr(pieces_.back().begin), line_end);
  return script;
}

}  // namespace kavo::html
