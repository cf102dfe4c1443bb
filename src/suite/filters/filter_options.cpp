#include "suite/filters/filter_options.h"

#include <algorithm>

#include "common/nearest.h"
#include "common/program_settings.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/trimmed.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

using enum OptionKind;

// A filter's options are together. docs/filter-options.md has the same rows; a test compares them.
constexpr FilterOption kOptions[] = {
    {"overwrite", kSwitch, "off",
     "Replaces what a document already has in the target language. `--overwrite` sets it for a run", "on"},

    {"html.code-patterns", kPatterns, "",
     "What else is a code in a text, besides placeholders for values and addresses: a text in which `*` stands for "
     "one or more characters",
     "[[*]]"},
    {"html.excluded-elements", kWords, "", "Elements of pages whose content is left alone", "code, kbd"},
    {"html.inline-elements", kWords, "", "Elements that do not end a text", "div, caption"},
    {"html.note-comments", kPatterns, "",
     "Which comments become the note of the text after them: a text in which `*` stands for any characters; if none "
     "is given, every comment that is prose",
     "Translators:*"},
    {"html.open-codes", kSwitch, "off",
     "Opens texts that hold only codes, numbers or signs, which are otherwise locked", "on"},
    {"html.text-attributes", kWords, "", "Attributes of any element whose values are offered", "data-title, data-hint"},
    {"html.text-elements", kWords, "",
     "Elements whose content is offered even if the page says that it must not be translated (`translate`, the class "
     "`notranslate`)",
     "button, caption"},
    {"mif.page-types", kWords, "body, master",
     "The kinds of pages whose texts are translated: body, master, reference and hidden. Texts of the others are "
     "locked",
     "body, master, reference"},

    {"rc.dialog-charset", kNumber, "",
     "The character set of the fonts of translated dialogs, a number of the Windows API (default: that of the source)",
     "128"},
    {"rc.dialog-font", kText, "", "The font of translated dialogs (default: that of the source)", "MS UI Gothic"},
    {"rc.dialog-font-size", kNumber, "", "The size of that font in points (default: that of the source)", "9"},

    {"rtf.excluded-styles", kNames, "", "Styles of paragraphs and characters whose texts are not offered",
     "Code, HTML Preformatted"},

    {"scripts.never", kWords, "", "Functions of scripts whose arguments are never offered", "Log, Trace"},
    {"scripts.offer", kChoice, "likely",
     "The texts of scripts to offer: those that people are likely to read, with doubtful ones locked; doubtful ones, "
     "too; or none",
     "all", "likely all none"},
    {"scripts.texts", kWords, "", "Functions of scripts whose arguments are always offered", "Translate, Say"},

    {"text.paragraphs", kChoice, "auto",
     "What counts as one text in a text file: a line; the lines between empty lines; or whatever the lines look like, "
     "see "
     "[text.md](text.md). `--paragraphs` sets it for a run",
     "blank", "lines blank auto"},

    {"xls.excluded-columns", kNames, "",
     "Columns of workbooks whose cells are left alone: `B` or `C:E` of every sheet, `Prices!B` of one",
     "B, Prices!C:E"},
    {"xls.excluded-rows", kNames, "", "Rows of workbooks whose cells are left alone, in the same way", "1, Prices!3:5"},
    {"xls.excluded-sheets", kNames, "", "Sheets of workbooks that are left alone, by their names", "Data, Old prices"},
    {"xls.excluded-styles", kNames, "", "Styles of cells of workbooks whose texts are left alone, by their names",
     "Code, Input"},
};

constexpr std::string_view kBlanks = " \t";

// What separates the items of a list; "" for a kind that is not a list.
std::string_view separators_of(OptionKind kind) {
  switch (kind) {
    case kWords:
      return ", \t";
    case kNames:
      return ",\t";
    case kPatterns:
      return "\t";
    default:
      return {};
  }
}

std::vector<std::string> split(std::string_view text, std::string_view separators) {
  std::vector<std::string> items;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of(separators), text.size());
    if (const std::string_view item = trimmed(text.substr(0, end), kBlanks); !item.empty()) items.emplace_back(item);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return items;
}

bool can_be(const FilterOption& option, std::string_view value) {
  if (value.find_first_of("\r\n") != value.npos) return false;
  switch (option.kind) {
    case kSwitch:
      return value == "on" || value == "off" || value == "1" || value == "0";
    case kChoice:
      return std::ranges::count(split(option.choices, " "), value) != 0;
    case kNumber:
      return !value.empty() && value.size() <= 9 && value.find_first_not_of("0123456789") == value.npos;
    default:
      return true;
  }
}

const FilterOption& row_of(std::string_view key) {
  const FilterOption* const row = find_filter_option(key);
  if (!row) throw failure(FailureNumber::kInternal, u"a filter reads an option that is in no table: " + to_utf16(key));
  return *row;
}

constexpr std::u16string_view kApplication = u"KAVO";

struct StoredPlace {
  std::u16string section;
  std::u16string name;
};
StoredPlace place_of(const FilterOption& option) {
  const std::size_t dot = option.key.find('.');
  return {to_utf16(option.key.substr(0, dot)), to_utf16(option.key.substr(dot + 1))};
}

}  // namespace

std::span<const FilterOption> filter_options() { return kOptions; }

const FilterOption* find_filter_option(std::string_view key) {
  const auto* const found = std::ranges::find(kOptions, key, &FilterOption::key);
  return found == std::end(kOptions) ? nullptr : found;
}

bool is_lasting(const FilterOption& option) { return option.key.find('.') != option.key.npos; }

std::string values_of(const FilterOption& option) {
  switch (option.kind) {
    case kSwitch:
      return "on or off";
    case kChoice: {
      const std::vector<std::string> words = split(option.choices, " ");
      std::string text;
      for (std::size_t i = 0; i < words.size(); ++i)
        text += (i == 0 ? "" : i + 1 < words.size() ? ", " : " or ") + words[i];
      return text;
    }
    case kNumber:
      return "a number";
    case kText:
      return "a text";
    case kWords:
      return "words separated by commas";
    case kNames:
      return "names separated by commas";
    case kPatterns:
      return "patterns, one at a time";
  }
  return {};
}

std::string option_problem(std::string_view key, std::string_view value) {
  const FilterOption* const option = find_filter_option(key);
  if (!option) {
    std::vector<std::string_view> keys;
    for (const FilterOption& known : kOptions) keys.push_back(known.key);
    return "there is no option \"" + std::string(key) + "\"; the nearest is \"" +
           std::string(nearest(key, std::move(keys)).front()) + "\"";
  }
  if (can_be(*option, value)) return {};
  return formatted("{} can be {}, not \"{}\"", key, values_of(*option), value);
}

void choose(FilterOptions& options, std::string_view key, std::string_view value) {
  const auto [entry, is_new] = options.try_emplace(std::string(key), value);
  if (is_new) return;
  if (separators_of(row_of(key).kind).empty())
    entry->second = value;
  else
    (entry->second += '\t') += value;
}

FilterOptions stored_filter_options() {
  FilterOptions options;
  for (const FilterOption& option : kOptions) {
    if (!is_lasting(option)) continue;
    const StoredPlace place = place_of(option);
    const std::string value = to_utf8(SettingsSection{kApplication, place.section}.get(place.name));
    if (!value.empty()) options.emplace(option.key, value);
  }
  return options;
}

void store_filter_option(std::string_view key, std::string_view value) {
  const StoredPlace place = place_of(row_of(key));
  SettingsSection{kApplication, place.section}.save(place.name, to_utf16(value));
}

std::string_view option_text(const FilterOptions& options, std::string_view key) {
  const auto found = options.find(key);
  return found == options.end() ? row_of(key).usual : std::string_view(found->second);
}

bool is_on(const FilterOptions& options, std::string_view key) {
  const std::string_view value = option_text(options, key);
  return value == "on" || value == "1";
}

std::vector<std::string> option_items(const FilterOptions& options, std::string_view key) {
  return split(option_text(options, key), separators_of(row_of(key).kind));
}

}  // namespace kavo
