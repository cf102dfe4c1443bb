#include "suite/filters/rtf/rtf_extraction.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "formats/rtf/characters.h"
#include "formats/rtf/text_reader.h"

namespace kavo::rtf {
namespace {

constexpr std::string_view kBreaks[] = {"par", "cell", "row", "sect", "page", "column", "nestcell", "nestrow"};

// Control words in whose place something is shown.
struct ShownWord {
  std::string_view word;
  std::string_view type;
  std::string_view shown;
};
constexpr ShownWord kShownWords[] = {
    {"tab", "x-tab", {}},          {"line", "lb", {}},
    {"softline", "lb", {}},        {"lbr", "lb", {}},
    {"chpgn", "x-field", "page"},  {"chdate", "x-field", "date"},
    {"chdpl", "x-field", "date"},  {"chdpa", "x-field", "date"},
    {"chtime", "x-field", "time"}, {"chatn", "x-note", {}},
    {"chftn", "x-note", {}},       {"sectnum", "x-field", "section"},
    {"chftnsep", "x-rtf", {}},     {"chftnsepc", "x-rtf", {}},
};

template <class Names>
bool is_one_of(const Names& names, std::string_view name) {
  return std::ranges::find(names, name) != std::end(names);
}

bool is_blank_unit(std::int32_t number) {
  return number == 32 || number == 160 || (number >= 0x2000 && number <= 0x200B) || number == 0x3000;
}

bool is_text(const Token& token) {
  switch (token.kind) {
    case TokenKind::kText:
    case TokenKind::kByte:
      return true;
    case TokenKind::kWord:
      return (token.name == "u" && token.has_number) || !character_of(token).empty();
    case TokenKind::kSymbol:
      return !character_of(token).empty();
    default:
      return false;
  }
}

bool is_visible(const Token& token) {
  switch (token.kind) {
    case TokenKind::kText:
      return std::ranges::any_of(token.bytes, [](char c) { return static_cast<unsigned char>(c) > ' '; });
    case TokenKind::kByte: {
      const int value = byte_value(token.bytes);
      return value > ' ' && value != 0xA0;
    }
    case TokenKind::kWord:
      return token.name != "u" || !is_blank_unit(token.number);
    default:
      return token.symbol() != '~' && token.symbol() != '-';
  }
}

bool same_font(const void* table, std::int32_t first, std::int32_t second) {
  if (first == second) return true;
  const auto& fonts = *static_cast<const FontTable*>(table);
  const Font* const one = fonts.find(first);
  const Font* const two = fonts.find(second);
  return one && two && one->same_as == two->same_as;
}

}  // namespace

RtfExtraction::RtfExtraction(BlockReader& document, const DocumentFormat& format, const ExtractionLanguages& languages,
                             std::vector<std::string> excluded_styles, ExtractionSink& sink)
    : document_(document),
      format_(format),
      languages_(languages),
      sink_(sink),
      maker_(&fonts_, same_font),
      stories_(1),
      styles_(std::move(excluded_styles)) {}

void RtfExtraction::run(ProgressEvent& progress) {
  Token token;
  for (;;) {
    const std::string_view window = document_.window();
    const TextCoding* const coding = groups_.empty() ? nullptr : group().coding;
    if (!window.empty() && scanner_.next(window, document_.exhausted(), coding, token)) {
      take(token);
      place_.advance(token.bytes.substr(std::exchange(advanced_, 0)));
      document_.consume(token.bytes.size());
      continue;
    }
    if (!document_.more()) break;
    progress.report(document_.percent());
  }
  if (table_ != Table::kNone && !is_long_table_) outside(table_bytes_);
  flush();
  progress.report(100);
}

void RtfExtraction::take(const Token& token) {
  keep_within_limits(token);
  if (table_ != Table::kNone) return take_table(token);
  if (data_depth_ != 0) return take_data(token);
  if (groups_.empty() && (is_over_ || token.kind != TokenKind::kOpen)) return outside(token.bytes);
  switch (token.kind) {
    case TokenKind::kOpen:
      return open_group(token);
    case TokenKind::kClose:
      return close_group(token);
    case TokenKind::kLineEnd:
      if (joins_last(ItemKind::kText, {})) {
        paragraph_.bytes += token.bytes;
        paragraph_.items.back().end = paragraph_.bytes.size();
      } else {
        hidden(token);
      }
      return;
    case TokenKind::kData:
      return code(token, "x-rtf", false, {});
    default:
      break;
  }
  const bool is_first = std::exchange(group().is_new, false);
  if (is_text(token)) return group().is_silent ? take_silent_text(token) : take_text(token);
  if (token.kind == TokenKind::kWord) return take_word(token);
  if (token.symbol() == '*') group().has_star = is_first;
  if (token.symbol() == '\r' || token.symbol() == '\n') return take_break(token);
  if (token.symbol() == ':' || token.symbol() == '|') return code(token, "x-rtf", false, token.bytes.substr(1));
  hidden(token);
}

void RtfExtraction::open_group(const Token& token) {
  Group inner;
  if (groups_.empty()) {
    inner.look.reset(format_.font);
    set_font(inner);
    inner.may_begin = false;
  } else {
    const Group& outer = group();
    inner.is_silent = outer.is_silent;
    inner.fallback = outer.fallback;
    inner.style = outer.style;
    inner.is_in_cell = outer.is_in_cell;
    inner.coding = outer.coding;
    inner.look = outer.look;
  }
  inner.text_count = text_count_;
  inner.code_count = code_count_;
  inner.item = paragraph_.items.size();
  inner.story = stories_.size() - 1;
  inner.generation = story().generation;
  if (groups_.empty()) {
    inner.item = kNowhere;
    groups_.push_back(inner);
    outside(token.bytes);
    return;
  }
  // The first of two variants is for programs that do not understand the second.
  const bool is_older_variant =
      group().destination == Destination::kVariants && !std::exchange(group().has_result, true);
  add(ItemKind::kHidden, token);
  groups_.push_back(inner);
  if (groups_.size() > kDeepestGroup || is_older_variant)
    begin_data("x-rtf", false, {}, {TokenKind::kText, {}, {}, false, 0});
}

void RtfExtraction::close_group(const Token& token) {
  const Group closed = groups_.back();
  groups_.pop_back();
  is_new_look_ = true;
  if (groups_.empty()) {
    flush();
    is_over_ = true;
    outside(token.bytes);
    return;
  }
  group().may_begin = false;
  if (stories_.size() > 1 && story().group == groups_.size() + 1) return end_story(closed, token);
  if (closed.destination == Destination::kField) return close_field(closed, token);
  Group& outer = group();
  if (closed.destination == Destination::kResult && outer.has_result) {
    outer.close_item = paragraph_.items.size();
    // Indexes of items are invalid once their paragraph has been flushed.
    outer.story = stories_.size() - 1;
    outer.generation = story().generation;
    add(ItemKind::kClose, token).type = "link";
    return;
  }
  const bool is_code = !outer.is_silent && text_count_ == closed.text_count && code_count_ > closed.code_count;
  hidden(token);
  if (!is_code || !has_item(closed, closed.item)) return;
  // A group with codes and without text becomes one code.
  std::vector<Item>& items = paragraph_.items;
  const bool is_single = code_count_ == closed.code_count + 1;
  std::string_view type = "x-rtf";
  std::string shown;
  bool is_required = false;
  for (std::size_t i = closed.item; i < items.size(); ++i) {
    if (items[i].kind != ItemKind::kCode) continue;
    if (is_single) type = items[i].type;
    if (shown.empty()) shown = items[i].shown;
    is_required = is_required || items[i].is_required;
  }
  code_count_ = closed.code_count + 1;
  collapse(closed.item, ItemKind::kCode, type, std::move(shown), is_required);
  items.back().has_look = true;
}

void RtfExtraction::take_word(const Token& token) {
  Group& current = group();
  if (current.may_begin && groups_.size() > 1) {
    if (begin_destination(token)) return;
    if (std::exchange(current.has_star, false)) return begin_data("x-rtf", false, {}, token);
  }
  // This is part of a text, since it may come between the two halves of a character.
  if (token.name == "uc" && joins_last(ItemKind::kText, {})) {
    current.fallback = fallback_of(token);
    paragraph_.bytes += token.bytes;
    paragraph_.items.back().end = paragraph_.bytes.size();
    paragraph_.items.back().last_fallback = current.fallback;
    return;
  }
  if (take_property(token)) return hidden(token);
  // Its data follows as a token of its own.
  if (token.name == "bin") return code(token, "x-rtf", false, {});
  if (!current.is_silent) {
    if (is_one_of(kBreaks, token.name)) return take_break(token);
    for (const ShownWord& known : kShownWords)
      if (known.word == token.name) return code(token, known.type, true, known.shown);
  }
  hidden(token);
}

void RtfExtraction::take_text(const Token& token) {
  Group& current = group();
  Token rest = token;
  if (token.kind == TokenKind::kText) {
    if (!is_waiting()) {
      // Blanks before the first text of a paragraph do not belong to the text.
      rest.bytes = token.bytes.substr(0, std::min(token.bytes.find_first_not_of(' '), token.bytes.size()));
      if (!rest.bytes.empty()) hidden(rest);
      pass(rest.bytes);
      rest.bytes = token.bytes.substr(rest.bytes.size());
    }
    rest.bytes = take_long_text(rest);
    if (rest.bytes.empty()) return;
  }
  current.may_begin = false;
  add_text(rest);
}

void RtfExtraction::add_text(const Token& token) {
  const Group& current = group();
  const Font* const font = fonts_.find(current.look.get(Property::kFont));
  if (current.look.get(Property::kDeleted) != 0) return code(token, "x-deleted", true, "deleted");
  if (is_excluded(current)) return code(token, "x-excluded", true, "not to be translated");
  if (font && font->charset == kSymbolCharset) return code(token, "x-symbol", true, "symbol");
  if (joins_last(ItemKind::kText, {})) {
    paragraph_.bytes += token.bytes;
    paragraph_.items.back().end = paragraph_.bytes.size();
  } else {
    ++text_count_;
    add(ItemKind::kText, token).coding = current.coding;
  }
  Item& item = paragraph_.items.back();
  item.is_visible = item.is_visible || is_visible(token);
  story().style = current.style;
  story().is_in_cell = current.is_in_cell;
}

void RtfExtraction::take_break(const Token& token) {
  if (group().is_silent) return hidden(token);
  group().may_begin = false;
  end_paragraph();
  story().name.clear();
  hidden(token);
}

bool RtfExtraction::take_property(const Token& token) {
  Group& current = group();
  // Behind \loch the "associated" font is that of Western text: so styles say which font it has.
  const bool is_western = std::exchange(is_behind_loch_, token.name == "loch");
  if (token.name == "plain") {
    current.look.reset(format_.font);
    set_font(current);
  } else if (token.name == "uc") {
    current.fallback = fallback_of(token);
  } else if (is_western && token.name == "af" && token.has_number) {
    current.look.set(Property::kFont, token.number);
    set_font(current);
  } else if (current.look.apply(token)) {
    if (token.name == "f") set_font(current);
  } else {
    if (token.name == "pard") {
      current.style = 0;
      current.is_in_cell = false;
    }
    if (token.name == "s" && token.has_number) current.style = token.number;
    if (token.name == "intbl") current.is_in_cell = true;
    return false;
  }
  is_new_look_ = true;
  return true;
}

bool RtfExtraction::is_excluded(const Group& group) const {
  return styles_.excludes_paragraphs(group.style) || styles_.excludes_characters(group.look.get(Property::kStyle));
}

void RtfExtraction::set_font(Group& group) {
  group.coding = codings_.find(code_page_of(fonts_.find(group.look.get(Property::kFont)), format_.code_page));
}

void RtfExtraction::hidden(const Token& token) {
  if (!is_waiting() && paragraph_.items.empty()) {
    if (token.kind == TokenKind::kWord)
      outside_word(token);
    else
      outside(token.bytes);
    return;
  }
  add(ItemKind::kHidden, token);
  drop_leading();
}

void RtfExtraction::code(const Token& token, std::string_view type, bool has_look, std::string_view shown) {
  if (joins_last(ItemKind::kCode, type) && type != "x-tab" && type != "lb") {
    paragraph_.bytes += token.bytes;
    paragraph_.items.back().end = paragraph_.bytes.size();
    return;
  }
  Item& item = add(ItemKind::kCode, token);
  item.type = type;
  item.has_look = has_look;
  item.shown = shown;
  ++code_count_;
  drop_leading();
}

Item& RtfExtraction::add(ItemKind kind, const Token& token) {
  if (is_new_look_ || paragraph_.looks.empty()) {
    const Look& look = groups_.empty() ? Look() : group().look;
    if (paragraph_.looks.empty() || paragraph_.looks.back() != look) paragraph_.looks.push_back(look);
    is_new_look_ = false;
  }
  Item item;
  item.kind = kind;
  item.fallback = item.last_fallback = groups_.empty() ? 1 : group().fallback;
  item.begin = paragraph_.bytes.size();
  paragraph_.bytes += token.bytes;
  item.end = paragraph_.bytes.size();
  item.look = paragraph_.looks.size() - 1;
  item.line = place_.line();
  item.column = place_.column();
  paragraph_.items.push_back(std::move(item));
  return paragraph_.items.back();
}

// True when the token after the last item continues that item.
bool RtfExtraction::joins_last(ItemKind kind, std::string_view type) const {
  if (paragraph_.items.size() <= stories_.back().first_item) return false;
  const Item& last = paragraph_.items.back();
  if (last.kind != kind || last.type != type || last.end != paragraph_.bytes.size()) return false;
  const Group& current = groups_.back();
  if (is_new_look_ && paragraph_.looks[last.look] != current.look) return false;
  return kind == ItemKind::kText ? last.coding == current.coding && last.last_fallback == current.fallback : true;
}

}  // namespace kavo::rtf
