// The groups of an RTF document that are not running text: fields, separate texts, data and tables.
#include <algorithm>
#include <iterator>
#include <utility>

#include "suite/filters/rtf/rtf_computed.h"
#include "suite/filters/rtf/rtf_extraction.h"

namespace kavo::rtf {
namespace {

// How much of an instruction is read to find the field's name.
constexpr std::size_t kLongestFieldType = 64;  // bytes

// "HYPERLINK" of " HYPERLINK \"http...".
std::string first_word(std::string_view text) {
  const std::size_t begin = std::min(text.find_first_not_of(" \t"), text.size());
  const std::size_t end = std::min(text.find_first_of(" \t\"\\", begin), text.size());
  return std::string(text.substr(begin, end - begin));
}

}  // namespace

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

bool RtfExtraction::begin_destination(const Token& token) {
  const std::optional<Destination> destination = destination_of(token.name);
  if (!destination) return false;
  Group& current = group();
  current.has_star = false;
  switch (*destination) {
    case Destination::kText:
      current.may_begin = false;
      if (token.name == "formfield") form_field_.clear();
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
    case Destination::kStyleSheet:
      begin_table(Table::kStyles, token);
      return true;
    case Destination::kVariants:
      current.may_begin = false;
      current.destination = Destination::kVariants;
      hidden(token);
      return true;
    case Destination::kMarker:
      begin_data("x-object", true, "object", token);
      return true;
    case Destination::kPicture:
      begin_data("x-object", true, "object", token);
      return true;
    case Destination::kData:
      begin_data("x-rtf", false, {}, token);
      begin_name(token.name);
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
  inner.is_plain =
      destination == Destination::kEntry || std::ranges::find(information, token.name) != std::end(information);
  inner.type = destination == Destination::kNote ? "x-note" : "x-text";
  inner.word = token.name;
  if (destination == Destination::kEntry && token.name.starts_with("ff")) inner.name = form_field_;
  stories_.push_back(std::move(inner));
}

void RtfExtraction::end_story(const Group& closed, const Token& token) {
  end_paragraph();
  const Story ended = story();
  stories_.pop_back();
  add(ItemKind::kHidden, token);
  if (!is_waiting()) return drop_leading();
  if (!has_item(closed, closed.item)) return;
  collapse(closed.item, ItemKind::kCode, ended.type, ended.is_note ? "note" : "text", ended.is_note);
  // The group begins with the look of the text around it.
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
  if (name_ != Name::kNone) take_name(token);
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

// Adjacent data becomes one code.
void RtfExtraction::join_codes() {
  std::vector<Item>& items = paragraph_.items;
  const auto is_data = [](const Item& item) {
    return item.kind == ItemKind::kCode && item.type == "x-rtf" && item.shown.empty() && !item.is_required;
  };
  if (!is_data(items.back())) return;
  const std::size_t before = items.size() - 1;
  if (before == story().first_item || !is_data(items[before - 1]) || items[before - 1].end != items.back().begin)
    return;
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
    if (table_ == Table::kStyles) styles_.take(token, codings_.find(format_.code_page));
    table_bytes_ += token.bytes;
    if (is_long_table_ || table_bytes_.size() > kLongestTable) {
      is_long_table_ = true;
      outside(table_bytes_);
      table_bytes_.clear();
    }
    return;
  }
  if (table_ == Table::kFonts) font_reader_.finish();
  if (table_ == Table::kStyles)
    outside(table_bytes_);
  else if (!is_long_table_)
    sink_.computed(table_ == Table::kFonts ? kFonts : kColours, table_bytes_);
  table_ = Table::kNone;
  groups_.pop_back();
  group().may_begin = false;
  // The fonts of the groups around it are known now.
  for (Group& each : groups_) set_font(each);
  outside(token.bytes);
}

// Takes the instruction of a field. Its first word decides what is done with the field.
void RtfExtraction::take_silent_text(const Token& token) {
  group().may_begin = false;
  if (token.kind == TokenKind::kText && group().destination != Destination::kField)
    field_type_ += token.bytes.substr(0, kLongestFieldType - std::min(kLongestFieldType, field_type_.size()));
  code(token, "x-field", false, {});
}

}  // namespace kavo::rtf
