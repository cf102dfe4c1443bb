#include "formats/rc/rc_texts.h"

#include <algorithm>
#include <span>

namespace kavo::rc {
namespace {

constexpr std::string_view kWithoutText[] = {"ICON",      "EDITTEXT", "COMBOBOX", "LISTBOX",
                                             "SCROLLBAR", "BEDIT",    "HEDIT",    "IEDIT"};
// Styles of static controls whose text names a picture.
constexpr std::string_view kPictureStyles[] = {"SS_ICON", "SS_BITMAP", "SS_ENHMETAFILE"};
// Values that programs compare with the file's own name or number, so they must not change.
constexpr std::string_view kFixedValues[] = {"InternalName", "OriginalFilename", "FileVersion", "ProductVersion"};

bool is_one_of(std::string_view word, std::span<const std::string_view> words) {
  return std::ranges::find(words, word) != words.end();
}

bool is_empty(const RcStatement& statement, const RcTextRun& run) {
  for (std::size_t item = run.first; item <= run.last; ++item) {
    const RcStatement::Item& literal = statement.items[item];
    const std::string_view text = statement.text(literal);
    if (literal.kind == RcTokenKind::kLiteral && text.size() > (text.front() == '"' ? 2U : 3U)) return false;
  }
  return true;
}

// The words from an item up to the next mark, unchanged.
std::string words_from(const RcStatement& statement, std::size_t item) {
  std::string words;
  for (item = statement.significant(item); item < statement.items.size(); item = statement.significant(item + 1)) {
    if (statement.items[item].kind != RcTokenKind::kWord) break;
    if (!words.empty()) words += ' ';
    words += statement.text(statement.items[item]);
  }
  return words;
}

bool is_comma(const RcStatement& statement, std::size_t item) {
  return item < statement.items.size() && statement.text(statement.items[item]) == ",";
}

// What follows the comma after a text.
std::string name_behind(const RcStatement& statement, const RcTextRun& run) {
  const std::size_t comma = statement.significant(run.last + 1);
  return is_comma(statement, comma) ? words_from(statement, comma + 1) : std::string();
}

// A string's name is the words before it on the same line, up to a comma.
void add_string(const RcStatement& statement, std::vector<RcText>& texts) {
  std::string name;
  bool is_complete = false;      // the next word begins another name
  bool is_behind_comma = false;  // the rest of the line does not belong to the name
  for (std::size_t item = 0; item < statement.items.size(); ++item) {
    const RcStatement::Item& one = statement.items[item];
    const std::string_view bytes = statement.text(one);
    if (one.kind == RcTokenKind::kLiteral) {
      const RcTextRun run = *find_text(statement, item);
      texts.push_back({RcText::kString, run, name});
      item = run.last;
      is_complete = true;
    } else if (one.kind == RcTokenKind::kDirective || bytes.find_first_of("\r\n") != std::string_view::npos) {
      is_complete = true;
      is_behind_comma = false;
    } else if (one.kind == RcTokenKind::kMark) {
      is_behind_comma = true;
    } else if (one.kind == RcTokenKind::kWord && !is_behind_comma) {
      name = is_complete || name.empty() ? std::string(bytes) : name + ' ' + std::string(bytes);
      is_complete = false;
    }
    if (one.kind == RcTokenKind::kLiteral) is_behind_comma = false;
  }
}

void add_caption(const RcStatement& statement, std::vector<RcText>& texts) {
  for (std::size_t item = 0; item < statement.items.size(); ++item) {
    if (!statement.is_word(item, "CAPTION")) continue;
    if (const auto run = text_at(statement, statement.significant(item + 1)))
      texts.push_back({RcText::kCaption, *run, statement.resource->name, false});
  }
}

// The text directly after the keyword.
std::optional<RcTextRun> first_argument(const RcStatement& statement) {
  return text_at(statement, statement.significant(statement.significant(0) + 1));
}

void add_control(const RcStatement& statement, std::vector<RcText>& texts) {
  const std::size_t keyword = statement.significant(0);
  const auto run = first_argument(statement);
  if (!run || std::ranges::any_of(kWithoutText, [&](auto name) { return statement.is_word(keyword, name); })) return;
  RcText text{RcText::kControl, *run, name_behind(statement, *run)};
  for (const RcStatement::Item& item : statement.items) {
    if (item.kind != RcTokenKind::kWord) continue;
    if (is_one_of(statement.text(item), kPictureStyles)) return;
    if (statement.text(item) == "SS_NOPREFIX") text.has_access_key = false;
  }
  texts.push_back(std::move(text));
}

void add_item(const RcStatement& statement, std::vector<RcText>& texts) {
  const auto run = first_argument(statement);
  if (!run) return;
  std::string name = name_behind(statement, *run);
  // A popup has its options where one in an extended menu has its identifier.
  constexpr std::string_view kOptions[] = {"GRAYED", "INACTIVE", "HELP", "CHECKED", "MENUBARBREAK", "MENUBREAK"};
  if (name.empty() || is_one_of(name, kOptions)) name = statement.resource->name;
  texts.push_back({RcText::kMenuItem, *run, std::move(name)});
}

void add_value(const RcStatement& statement, std::vector<RcText>& texts) {
  const std::size_t keyword = statement.significant(0);
  const std::size_t key = statement.significant(keyword + 1);
  if (!statement.is_word(keyword, "VALUE") || key >= statement.items.size() ||
      statement.items[key].kind != RcTokenKind::kLiteral)
    return;
  const std::string_view quoted = statement.text(statement.items[key]);
  const std::size_t begin = quoted.find('"') + 1;
  const std::string name(quoted.substr(begin, quoted.size() - begin - 1));
  for (auto run = find_text(statement, key + 1); run; run = find_text(statement, run->last + 1))
    texts.push_back({RcText::kVersion, *run, name, false, is_one_of(name, kFixedValues)});
}

}  // namespace

std::vector<RcText> texts_of(const RcStatement& statement) {
  std::vector<RcText> texts;
  switch (statement.kind) {
    case RcStatement::kString:
      add_string(statement, texts);
      break;
    case RcStatement::kHeader:
      if (statement.resource->type == RcType::kDialog) add_caption(statement, texts);
      break;
    case RcStatement::kControl:
      add_control(statement, texts);
      break;
    case RcStatement::kMenuItem:
      add_item(statement, texts);
      break;
    case RcStatement::kValue:
      add_value(statement, texts);
      break;
    default:
      break;
  }
  std::erase_if(texts, [&](const RcText& text) { return is_empty(statement, text.run); });
  return texts;
}

}  // namespace kavo::rc
