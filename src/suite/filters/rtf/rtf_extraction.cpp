#include "suite/filters/rtf/rtf_extraction.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "formats/rtf/characters.h"
#include "suite/filters/rtf/rtf_computed.h"

namespace kavo::rtf {
namespace {

// Enough of an instruction to tell its field.
constexpr std::size_t kLongestFieldType = 64;  // bytes

constexpr std::string_view kBreaks[] = {"par", "cell", "row", "sect", "page", "column", "nestcell", "nestrow"};

// Words that show something in their place.
struct ShownWord {
  std::string_view word;
  std::string_view type;
  std::string_view shown;
};
constexpr ShownWord kShownWords[] = {
    {"tab", "x-tab", {}},          {"line", "lb", {}},           {"softline", "lb", {}},      {"lbr", "lb", {}},
    {"chpgn", "x-field", "page"},  {"chdate", "x-field", "date"}, {"chdpl", "x-field", "date"}, {"chdpa", "x-field", "date"},
    {"chtime", "x-field", "time"}, {"chatn", "x-note", {}},      {"chftn", "x-note", {}},     {"sectnum", "x-field", "section"},
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

// "HYPERLINK" of " HYPERLINK \"http...".
std::string first_word(std::string_view text) {
  const std::size_t begin = std::min(text.find_first_not_of(" \t"), text.size());
  const std::size_t end = std::min(text.find_first_of(" \t\"\\", begin), text.size());
  return std::string(text.substr(begin, end - begin));
}

}  // namespace

RtfExtraction::RtfExtraction(BlockReader& document, const DocumentFormat& format, const ExtractionLanguages& languages,
                             ExtractionSink& sink)
    : document_(document),
      format_(format),
      languages_(languages),
      sink_(sink),
      maker_(&fonts_, same_font),
      stories_(1) {}

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
    groups_.push_back(std::move(inner));
    outside(token.bytes);
    return;
  }
  add(ItemKind::kHidden, token);
  groups_.push_back(std::move(inner));
  if (groups_.size() > kDeepestGroup) begin_data("x-rtf", false, {}, {TokenKind::kText, {}, {}, false, 0});
}

void RtfExtraction::close_group(const Token& token) {
  const Group closed = std::move(groups_.back());
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
    // A flushed paragraph takes the places of its items along.
    outer.story = stories_.size() - 1;
    outer.generation = story().generation;
    add(ItemKind::kClose, token).type = "link";
    return;
  }
  const bool is_code = !outer.is_silent && text_count_ == closed.text_count && code_count_ > closed.code_count;
  hidden(token);
  if (!is_code || !has_item(closed, closed.item)) return;
  // A group that holds codes and no text is one code.
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

void RtfExtraction::close_field(const Group& closed, const Token& token) {
  if (closed.has_result) {
    hidden(token);
    if (has_item(closed, closed.close_item)) collapse(closed.close_item, ItemKind::kClose, "link", {}, false);
    return;
  }
  text_count_ = std::min(text_count_, closed.text_count);
  add(ItemKind::kHidden, token);
  if (has_item(closed, closed.item)) {
    collapse(closed.item, ItemKind::kCode, "x-field", first_word(field_type_), false);
    paragraph_.items.back().is_required = false;
    ++code_count_;
  }
  drop_leading();
}

void RtfExtraction::take_word(const Token& token) {
  Group& current = group();
  if (current.may_begin && groups_.size() > 1) {
    if (begin_destination(token)) return;
    if (std::exchange(current.has_star, false)) return begin_data("x-rtf", false, {}, token);
  }
  if (take_property(token)) return hidden(token);
  // The data behind it follow as a token of their own.
  if (token.name == "bin") return code(token, "x-rtf", false, {});
  if (!current.is_silent) {
    if (is_one_of(kBreaks, token.name)) return take_break(token);
    for (const ShownWord& known : kShownWords)
      if (known.word == token.name) return code(token, known.type, true, known.shown);
  }
  hidden(token);
}

bool RtfExtraction::begin_destination(const Token& token) {
  const std::optional<Destination> destination = destination_of(token.name);
  if (!destination) return false;
  Group& current = group();
  current.has_star = false;
  switch (*destination) {
    case Destination::kText:
      current.may_begin = false;
      hidden(token);
      return true;
    case Destination::kStory:
    case Destination::kNote:
    case Destination::kEntry:
      begin_story(*destination, token);
      return true;
    case Destination::kField:
      current.may_begin = false;
      begin_field(token);
      return true;
    case Destination::kInstruction:
      current.may_begin = false;
      current.destination = Destination::kInstruction;
      current.is_silent = true;
      hidden(token);
      return true;
    case Destination::kResult:
      begin_result(token);
      return true;
    case Destination::kFontTable:
      begin_table(Table::kFonts, token);
      return true;
    case Destination::kColourTable:
      begin_table(Table::kColours, token);
      return true;
    case Destination::kMarker:
      begin_data("x-object", true, "object", token);
      return true;
    case Destination::kPicture:
      begin_data("x-object", true, "object", token);
      return true;
    case Destination::kData:
      begin_data("x-rtf", false, {}, token);
      return true;
  }
  return false;
}

void RtfExtraction::begin_field(const Token& token) {
  Group& current = group();
  if (current.is_silent) return hidden(token);
  current.destination = Destination::kField;
  current.is_silent = true;
  field_type_.clear();
  ++text_count_;
  add(ItemKind::kHidden, token);
}

void RtfExtraction::begin_result(const Token& token) {
  Group& current = group();
  current.may_begin = false;
  Group& field = groups_[groups_.size() - 2];
  if (field.destination != Destination::kField || field.has_result) return hidden(token);
  const std::string type = first_word(field_type_);
  if (!has_readable_result(type)) return begin_data("x-field", false, type, token);
  current.destination = Destination::kResult;
  current.is_silent = false;
  field.has_result = true;
  add(ItemKind::kHidden, token);
  if (has_item(field, field.item)) collapse(field.item, ItemKind::kOpen, "link", {}, false);
}

void RtfExtraction::begin_story(Destination destination, const Token& token) {
  if (stories_.size() == kMostStories) return begin_data("x-rtf", false, {}, token);
  Group& current = group();
  current.may_begin = false;
  current.is_silent = false;
  add(ItemKind::kHidden, token);
  if (!is_waiting()) flush();
  Story inner;
  inner.group = groups_.size();
  inner.first_item = paragraph_.items.size();
  inner.generation = ++last_generation_;
  inner.text_count = text_count_;
  inner.code_count = code_count_;
  inner.is_note = destination == Destination::kNote;
  // The parts of a document's information stand in a group of their own kind.
  constexpr std::string_view information[] = {"title", "subject", "keywords", "doccomm"};
  inner.is_plain = destination == Destination::kEntry || is_one_of(information, token.name);
  inner.type = destination == Destination::kNote ? "x-note" : "x-text";
  stories_.push_back(inner);
}

void RtfExtraction::end_story(const Group& closed, const Token& token) {
  end_paragraph();
  const Story ended = story();
  stories_.pop_back();
  add(ItemKind::kHidden, token);
  if (!is_waiting()) return drop_leading();
  if (!has_item(closed, closed.item)) return;
  collapse(closed.item, ItemKind::kCode, ended.type, ended.is_note ? "note" : "text", ended.is_note);
  // It begins as the text around it looks.
  paragraph_.items.back().has_look = true;
  ++code_count_;
}

void RtfExtraction::begin_data(std::string_view type, bool is_required, std::string shown, const Token& token) {
  data_depth_ = 1;
  is_streaming_ = !is_waiting();
  if (is_streaming_) {
    hidden(token);
    drop_leading();
    return;
  }
  has_data_brace_ = has_item(group(), group().item);
  const std::size_t item = has_data_brace_ ? group().item : paragraph_.items.size();
  add(ItemKind::kHidden, token);
  collapse(item, ItemKind::kCode, type, std::move(shown), is_required);
  ++code_count_;
}

void RtfExtraction::take_data(const Token& token) {
  if (token.kind == TokenKind::kOpen) ++data_depth_;
  if (token.kind == TokenKind::kClose) --data_depth_;
  const bool is_over = data_depth_ == 0;
  if (is_streaming_) {
    outside(token.bytes);
  } else if (is_over && !has_data_brace_) {
    add(ItemKind::kHidden, token);
  } else {
    paragraph_.bytes += token.bytes;
    paragraph_.items.back().end = paragraph_.bytes.size();
    data_size_ += token.bytes.size();
  }
  if (!is_over) return;
  groups_.pop_back();
  group().may_begin = false;
  is_new_look_ = true;
  if (!is_streaming_ && has_data_brace_) join_codes();
}

// Data beside data is one code.
void RtfExtraction::join_codes() {
  std::vector<Item>& items = paragraph_.items;
  const auto is_data = [](const Item& item) {
    return item.kind == ItemKind::kCode && item.type == "x-rtf" && item.shown.empty() && !item.is_required;
  };
  if (!is_data(items.back())) return;
  const std::size_t before = items.size() - 1;
  if (before == story().first_item || !is_data(items[before - 1]) || items[before - 1].end != items.back().begin) return;
  items[before - 1].end = paragraph_.bytes.size();
  items.pop_back();
  --code_count_;
}

void RtfExtraction::begin_table(Table table, const Token& token) {
  if (is_waiting()) return begin_data("x-rtf", false, {}, token);
  hidden(token);
  drop_leading();
  table_ = table;
  table_depth_ = 1;
  table_bytes_.clear();
  is_long_table_ = false;
  if (table == Table::kColours) has_colours_ = true;
}

void RtfExtraction::take_table(const Token& token) {
  if (token.kind == TokenKind::kOpen) ++table_depth_;
  if (token.kind == TokenKind::kClose) --table_depth_;
  if (table_depth_ != 0) {
    if (table_ == Table::kFonts) font_reader_.take(token);
    table_bytes_ += token.bytes;
    if (is_long_table_ || table_bytes_.size() > kLongestTable) {
      is_long_table_ = true;
      outside(table_bytes_);
      table_bytes_.clear();
    }
    return;
  }
  if (table_ == Table::kFonts) font_reader_.finish();
  if (!is_long_table_) sink_.computed(table_ == Table::kFonts ? kFonts : kColours, table_bytes_);
  table_ = Table::kNone;
  groups_.pop_back();
  group().may_begin = false;
  // The fonts of the groups around it are known now.
  for (Group& each : groups_) set_font(each);
  outside(token.bytes);
}

void RtfExtraction::take_text(const Token& token) {
  Group& current = group();
  Token rest = token;
  if (token.kind == TokenKind::kText) {
    if (!is_waiting()) {
      // Blanks in front of all text of a paragraph are no part of it.
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
}

// What a field does is read for its first word.
void RtfExtraction::take_silent_text(const Token& token) {
  group().may_begin = false;
  if (token.kind == TokenKind::kText && group().destination != Destination::kField)
    field_type_ += token.bytes.substr(0, kLongestFieldType - std::min(kLongestFieldType, field_type_.size()));
  code(token, "x-field", false, {});
}

void RtfExtraction::take_break(const Token& token) {
  if (group().is_silent) return hidden(token);
  group().may_begin = false;
  end_paragraph();
  hidden(token);
}

bool RtfExtraction::take_property(const Token& token) {
  Group& current = group();
  if (token.name == "plain") {
    current.look.reset(format_.font);
    set_font(current);
  } else if (token.name == "uc") {
    current.fallback = static_cast<unsigned>(std::clamp(token.number, 0, 16));
  } else if (current.look.apply(token)) {
    if (token.name == "f") set_font(current);
  } else {
    return false;
  }
  is_new_look_ = true;
  return true;
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
  item.fallback = groups_.empty() ? 1 : group().fallback;
  item.begin = paragraph_.bytes.size();
  paragraph_.bytes += token.bytes;
  item.end = paragraph_.bytes.size();
  item.look = paragraph_.looks.size() - 1;
  item.line = place_.line();
  item.column = place_.column();
  paragraph_.items.push_back(std::move(item));
  return paragraph_.items.back();
}

// Whether the token behind the last item continues it.
bool RtfExtraction::joins_last(ItemKind kind, std::string_view type) const {
  if (paragraph_.items.size() <= stories_.back().first_item) return false;
  const Item& last = paragraph_.items.back();
  if (last.kind != kind || last.type != type || last.end != paragraph_.bytes.size()) return false;
  const Group& current = groups_.back();
  if (is_new_look_ && paragraph_.looks[last.look] != current.look) return false;
  return kind == ItemKind::kText ? last.coding == current.coding && last.fallback == current.fallback : true;
}

// Makes one item of those from `item` on.
void RtfExtraction::collapse(std::size_t item, ItemKind kind, std::string_view type, std::string shown,
                             bool is_required) {
  std::vector<Item>& items = paragraph_.items;
  items.resize(item + 1);
  Item& whole = items.back();
  whole.kind = kind;
  whole.type = type;
  whole.shown = std::move(shown);
  whole.is_required = is_required;
  whole.is_visible = false;
  whole.has_look = false;
  whole.end = paragraph_.bytes.size();
}

// What stands in front of any text of a paragraph is no part of a segment.
void RtfExtraction::drop_leading() {
  if (!is_waiting() && !paragraph_.items.empty()) flush();
}

std::size_t RtfExtraction::waiting_text_size() const {
  return paragraph_.bytes.size() - std::min(data_size_, paragraph_.bytes.size());
}

// Takes the part of a long text that ends a paragraph which has become too long; what is left of it afterwards. Where
// that is depends on nothing but the document.
std::string_view RtfExtraction::take_long_text(const Token& token) {
  std::string_view rest = token.bytes;
  for (;;) {
    const std::size_t size = waiting_text_size();
    if (size + rest.size() <= kLongestParagraph) return rest;
    const std::size_t longest = std::max(2 * kLongestParagraph, size + 1) - size;
    const std::size_t blank = rest.find(' ', kLongestParagraph - std::min(size, kLongestParagraph));
    const std::size_t cut = std::min(blank, longest);
    if (cut >= rest.size()) return rest;
    Token part = token;
    part.bytes = rest.substr(0, cut);
    if (cut != 0) add_text(part);
    flush();
    pass(part.bytes);
    rest.remove_prefix(cut);
    part.bytes = rest.substr(0, std::min(rest.find_first_not_of(' '), rest.size()));
    hidden(part);
    pass(part.bytes);
    rest.remove_prefix(part.bytes.size());
  }
}

// Moves the place behind bytes of a token that has not been taken whole.
void RtfExtraction::pass(std::string_view bytes) {
  place_.advance(bytes);
  advanced_ += bytes.size();
}

// A document without ends must not become one segment that fills the memory.
void RtfExtraction::keep_within_limits(const Token& token) {
  const std::size_t text_size = waiting_text_size();
  if (text_size <= kLongestParagraph && data_size_ <= kLongestData) return;
  // Texts are cut at a blank; a character in another form should not be cut either.
  if (token.kind == TokenKind::kText && data_depth_ == 0) return;
  const bool may_cut = token.kind == TokenKind::kOpen || token.kind == TokenKind::kClose || data_depth_ != 0;
  if (!may_cut && text_size <= 2 * kLongestParagraph) return;
  flush();
  if (data_depth_ != 0) is_streaming_ = true;
}

void RtfExtraction::end_paragraph() {
  if (story().first_item == 0) return flush();
  keep_segments();
  paragraph_.items.resize(story().first_item);
  story().generation = ++last_generation_;
  text_count_ = story().text_count;
  code_count_ = story().code_count;
}

// Makes the segments of a story inside another's line; they wait for that one.
void RtfExtraction::keep_segments() {
  const bool is_plain = story().is_plain;
  for (const Core& core : find_cores(paragraph_, story().first_item, paragraph_.items.size())) {
    const std::size_t begin = paragraph_.items[core.first].begin;
    const std::size_t end = paragraph_.items[core.last].end;
    if (Segment* const segment = maker_.make(paragraph_, core, is_plain))
      paragraph_.inner.push_back({std::move(*segment), begin, end, 0, false});
  }
}

void RtfExtraction::flush() {
  // Stories that are still being read are cut, too; the innermost one comes first.
  const std::size_t depth = stories_.size();
  std::vector<Story> outer;
  while (stories_.size() > 1 && story().first_item != 0) {
    keep_segments();
    paragraph_.sort_inner();
    paragraph_.items.resize(story().first_item);
    outer.push_back(story());
    stories_.pop_back();
  }
  const bool is_plain = story().is_plain;
  while (stories_.size() < depth) {
    stories_.push_back(outer.back());
    outer.pop_back();
  }
  emitted_ = 0;
  next_inner_ = 0;
  std::size_t next_item = 0;
  for (const Core& core : find_cores(paragraph_, 0, paragraph_.items.size())) {
    emit_hidden(next_item, core.first, paragraph_.items[core.first].begin);
    next_item = core.first;
    Segment* const segment = maker_.make(paragraph_, core, is_plain);
    if (!segment) continue;
    if (!is_plain) before_first_segment();
    const std::size_t end = paragraph_.items[core.last].end;
    for (; next_inner_ < paragraph_.inner.size() && paragraph_.inner[next_inner_].end <= end; ++next_inner_) {
      InnerSegment& inner = paragraph_.inner[next_inner_];
      if (!inner.is_nested) continue;
      number_nested(inner.segment);
      inner.number = sink_.nested_segment(inner.segment);
    }
    number_nested(*segment);
    sink_.segment(*segment);
    emitted_ = end;
    next_item = core.last + 1;
  }
  emit_hidden(next_item, paragraph_.items.size(), paragraph_.bytes.size());
  paragraph_.clear();
  text_count_ = 0;
  code_count_ = 0;
  data_size_ = 0;
  is_new_look_ = true;
  for (Story& each : stories_) {
    each.first_item = 0;
    each.text_count = 0;
    each.code_count = 0;
    each.generation = ++last_generation_;
  }
}

// Gives out items [first, last) and the bytes up to `end` as skeleton.
void RtfExtraction::emit_hidden(std::size_t first, std::size_t last, std::size_t end) {
  for (std::size_t i = first; i < last; ++i) {
    const Item& item = paragraph_.items[i];
    const std::string_view bytes = paragraph_.bytes_of(item);
    emit_bytes(item.begin);
    if (item.kind == ItemKind::kHidden && bytes.size() > 1 && bytes[0] == '\\' && bytes[1] >= 'a' && bytes[1] <= 'z') {
      outside_word(word_at(bytes));
      emitted_ = item.end;
    } else {
      emit_bytes(item.end);
    }
  }
  emit_bytes(end);
}

// The same for bytes, with the segments that wait among them.
void RtfExtraction::emit_bytes(std::size_t end) {
  const std::string_view all = paragraph_.bytes;
  for (; next_inner_ < paragraph_.inner.size() && paragraph_.inner[next_inner_].end <= end; ++next_inner_) {
    InnerSegment& inner = paragraph_.inner[next_inner_];
    if (!inner.is_nested && inner.begin < emitted_) continue;
    number_nested(inner.segment);
    if (inner.is_nested) {
      inner.number = sink_.nested_segment(inner.segment);
      continue;
    }
    outside(all.substr(emitted_, inner.begin - emitted_));
    sink_.segment(inner.segment);
    emitted_ = inner.end;
  }
  if (end <= emitted_) return;
  outside(all.substr(emitted_, end - emitted_));
  emitted_ = end;
}

void RtfExtraction::number_nested(Segment& segment) const {
  for (NestedPlace& place : segment.nested) place.segment = paragraph_.inner[place.segment].number;
}

// Where a document has no colours or tells no direction, this is the last place for it.
void RtfExtraction::before_first_segment() {
  if (std::exchange(has_segment_, true)) return;
  if (!has_colours_) sink_.computed(kColours, {});
  if (!has_direction_ && languages_.target && is_right_to_left(*languages_.target)) sink_.computed(kDirection, {});
}

void RtfExtraction::outside(std::string_view bytes) {
  if (!bytes.empty()) sink_.skeleton(bytes);
}

void RtfExtraction::outside_word(const Token& word) {
  const LanguageRow* const target = languages_.target;
  if (target && target != languages_.source) {
    const bool is_right = is_right_to_left(*target);
    if (is_right && tells_direction(word)) {
      has_direction_ = true;
      sink_.computed(kDirection, word.bytes);
      return;
    }
    if (tells_language(word, *target)) {
      sink_.computed(kLanguage, word.bytes);
      return;
    }
  }
  outside(word.bytes);
}

}  // namespace kavo::rtf
