#include "formats/rc/rc_texts.h"

#include <algorithm>
#include <span>

#include "formats/text/ascii.h"

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

bool is_word_character(char c) { return is_letter(c) || is_digit(c) || c == '_' || c == ')'; }

bool is_comma(const RcStatement& statement, std::size_t item) {
  return item < statement.items.size() && statement.text(statement.items[item]) == ",";
}

// What follows the comma after a text.
std::string name_behind(const RcStatement& statement, const RcTextRun& run) {
  const std::size_t comma = statement.significant(run.last + 1);
  return is_comma(statement, comma) ? words_from(statement, comma + 1) : std::string();
}

// The texts of a string table, each with the name before it.
class StringReader {
 public:
  StringReader(const RcStatement& statement, std::vector<RcText>& texts) : statement_(statement), texts_(texts) {}

  void read() {
    for (std::size_t item = 0; item < statement_.items.size(); ++item) item = take(item);
  }

 private:
  // Returns the last item that was taken.
  std::size_t take(std::size_t item) {
    const RcStatement::Item& one = statement_.items[item];
    switch (one.kind) {
      case RcTokenKind::kLiteral:
        return text(item);
      case RcTokenKind::kWord:
        return word(item);
      case RcTokenKind::kMark:
        is_behind_comma_ = true;
        macro_.reset();
        return item;
      default:
        if (one.kind != RcTokenKind::kBlank && one.kind != RcTokenKind::kComment) macro_.reset();
        if (one.kind == RcTokenKind::kDirective || ends_line(one.kind, statement_.text(one))) {
          is_complete_ = true;
          is_behind_comma_ = false;
        }
        return item;
    }
  }

  // A macro in front of the literal belongs to its text. One after it that a comma follows is the name of the next.
  std::size_t text(std::size_t item) {
    RcTextRun run = *text_at(statement_, macro_.value_or(item), RcMacros::kOnLine);
    if (is_comma(statement_, statement_.significant(run.last + 1))) run = without_last_macros(statement_, run);
    texts_.push_back({RcText::kString, run, name_});
    is_complete_ = true;
    is_behind_comma_ = false;
    macro_.reset();
    return run.last;
  }

  // The name is the words before a text on the same line ("IDS_A + 1"), up to a comma.
  std::size_t word(std::size_t item) {
    const std::string bytes(statement_.text(statement_.items[item]));
    const bool begins_name = (is_complete_ || name_.empty()) && !is_behind_comma_;
    if (begins_name) {
      name_ = bytes;
      is_complete_ = false;
      macro_.reset();
      return item;
    }
    const bool may_be_macro = is_behind_comma_ || is_word_character(name_.back());
    if (const auto end = may_be_macro ? macro_end(statement_, item) : std::nullopt) {
      if (!macro_) macro_ = item;
      return *end;
    }
    if (!is_behind_comma_) name_ += ' ' + bytes;
    macro_.reset();
    return item;
  }

  const RcStatement& statement_;
  std::vector<RcText>& texts_;
  std::string name_;
  bool is_complete_ = false;          // the next word begins another name
  bool is_behind_comma_ = false;      // the rest of the line does not belong to the name
  std::optional<std::size_t> macro_;  // the first of those in front of a literal
};

void add_caption(const RcStatement& statement, std::vector<RcText>& texts) {
  for (std::size_t item = 0; item < statement.items.size(); ++item) {
    if (!statement.is_word(item, "CAPTION")) continue;
    if (const auto run = text_at(statement, statement.significant(item + 1), RcMacros::kOnLine))
      texts.push_back({RcText::kCaption, *run, statement.resource->name, false});
  }
}

// The text directly after the keyword. Macros after its last literal belong to it when a comma follows, or nothing may
// (`may_end`): in a script that leaves out commas they are other values.
std::optional<RcTextRun> first_argument(const RcStatement& statement, bool may_end) {
  const auto run = text_at(statement, statement.significant(statement.significant(0) + 1), RcMacros::kEverywhere);
  if (!run) return std::nullopt;
  const std::size_t next = statement.significant(run->last + 1);
  const bool is_closed = is_comma(statement, next) || (may_end && next >= statement.items.size());
  return is_closed ? run : without_last_macros(statement, *run);
}

void add_control(const RcStatement& statement, std::vector<RcText>& texts) {
  const std::size_t keyword = statement.significant(0);
  const auto run = first_argument(statement, false);
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
  const auto run = first_argument(statement, statement.is_word(statement.significant(0), "POPUP"));
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
  std::optional<std::size_t> macro;  // the first of those in front of a literal
  for (std::size_t item = key + 1; item < statement.items.size(); ++item) {
    const RcTokenKind kind = statement.items[item].kind;
    if (kind == RcTokenKind::kLiteral) {
      const RcTextRun run = *text_at(statement, macro.value_or(item), RcMacros::kEverywhere);
      texts.push_back({RcText::kVersion, run, name, false, is_one_of(name, kFixedValues)});
      item = run.last;
      macro.reset();
    } else if (const auto end = macro_end(statement, item)) {
      if (!macro) macro = item;
      item = *end;
    } else if (kind != RcTokenKind::kBlank && kind != RcTokenKind::kComment) {
      macro.reset();
    }
  }
}

}  // namespace

std::vector<RcText> texts_of(const RcStatement& statement) {
  std::vector<RcText> texts;
  switch (statement.kind) {
    case RcStatement::kString:
      StringReader(statement, texts).read();
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
