#include "suite/filters/mif/mif_extraction.h"

#include <algorithm>
#include <iterator>

#include "formats/mif/escapes.h"
#include "suite/filters/mif/mif_text_place.h"

namespace kavo::mif {
namespace {

// A longer font is not set again behind a coloured text.
constexpr std::size_t kLongestFont = 4096;  // bytes

// What is shown of a code: its name and so many of its strings, cut behind so many bytes.
constexpr std::size_t kMostStrings = 2;
constexpr std::size_t kMostShown = 200;

// Of a string that names the entry of a side text.
constexpr std::string_view kSideTextTag = "KAVOTag";

constexpr std::string_view kFont = "Font";

// Never inside a paragraph: one that is still open was not closed.
constexpr std::string_view kOuterStatements[] = {"Para", "TextLine", "TextFlow", "Tbl", "Page"};
// The first of these that a document holds comes behind all its catalogues.
constexpr std::string_view kShownStatements[] = {"Para", "TextLine", "TextFlow", "Tbls", "AFrames", "Page"};

template <std::size_t kSize>
bool is_one_of(const std::string_view (&names)[kSize], std::string_view name) {
  return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

bool is_blank(char c) { return c == ' ' || c == '\t'; }
bool is_line_end(char c) { return c == '\n' || c == '\r'; }

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && (is_blank(text.front()) || is_line_end(text.front()))) text.remove_prefix(1);
  while (!text.empty() && (is_blank(text.back()) || is_line_end(text.back()))) text.remove_suffix(1);
  return text;
}

// What stands between the name of a statement and its end.
std::string_view word_of(std::string_view statement, std::string_view name) {
  return trimmed(statement.substr(1 + name.size(), statement.size() - name.size() - 2));
}

}  // namespace

// Anchors must come back, since what they anchor (a table, a footnote) would be lost with them.
const MifExtraction::Statement MifExtraction::kStatements[] = {
    {"String", ItemKind::kString, "x-string", false},
    {"Char", ItemKind::kCharacter, "x-char", false},
    {kFont, ItemKind::kOpen, "x-font", false},
    {"Variable", ItemKind::kVariable, "x-variable", false},
    {"XRef", ItemKind::kOpen, "x-xref", false},
    {"XRefEnd", ItemKind::kClose, "x-xref", false},
    {"Conditional", ItemKind::kOpen, "x-condition", false},
    {"Unconditional", ItemKind::kClose, "x-condition", false},
    {"ElementBegin", ItemKind::kOpen, "x-element", true},
    {"ElementEnd", ItemKind::kClose, "x-element", true},
    {"TextInset", ItemKind::kOpen, "x-inset", true},
    {"TextInsetEnd", ItemKind::kClose, "x-inset", true},
    {"Marker", ItemKind::kCode, "x-marker", false},
    {"ATbl", ItemKind::kCode, "x-table", true},
    {"AFrame", ItemKind::kCode, "x-frame", true},
    {"FNote", ItemKind::kCode, "x-footnote", true},
    {"TextRectID", ItemKind::kHidden, "x-place", false},
    {"", ItemKind::kCode, "x-mif", false},
};

const MifExtraction::Statement& MifExtraction::find_statement(std::string_view name) {
  return *std::find_if(std::begin(kStatements), std::end(kStatements) - 1,
                       [&](const Statement& row) { return row.name == name; });
}

void MifExtraction::run(ProgressEvent& progress) {
  MifToken token;
  for (;;) {
    const std::string_view window = document_.window();
    if (!window.empty() && scanner_.next(window, document_.exhausted(), token)) {
      take(token);
      document_.consume(token.bytes.size());
      continue;
    }
    if (!document_.more()) break;
    progress.report(document_.percent());
  }
  flush();
  progress.report(100);
}

void MifExtraction::take(const MifToken& token) {
  codings_.take(token);
  if (token.kind == MifTokenKind::kOpen) recover(token.name());
  switch (place_) {
    case Place::kOutside:
      return take_outside(token);
    case Place::kParagraph:
      return take_in_paragraph(token);
    case Place::kParagraphStatement:
      return take_about_paragraph(token);
    case Place::kLine:
      return take_in_line(token);
    case Place::kStatement:
      return take_in_statement(token);
  }
}

// Ends what was never closed before a statement that cannot stand in it.
void MifExtraction::recover(std::string_view name) {
  Place back = place_;
  if (is_one_of(kOuterStatements, name))
    back = Place::kOutside;
  else if (name == "ParaLine" && !is_text_line_ && place_ != Place::kOutside)
    back = Place::kParagraph;
  else if (name == "String" && place_ == Place::kStatement)
    back = Place::kLine;
  if (back == place_) return;
  flush();
  place_ = back;
}

void MifExtraction::take_outside(const MifToken& token) {
  if (token.kind != MifTokenKind::kOpen) {
    outside(token.bytes);
    return;
  }
  const std::string_view name = token.name();
  if (!has_colours_ && (token.bytes == kColourCatalogue || is_one_of(kShownStatements, name))) {
    has_colours_ = true;
    sink_.computed(kColours, token.bytes);
    position_.advance(token.bytes);
  } else {
    outside(token.bytes);
  }
  is_text_line_ = name == "TextLine";
  if (is_text_line_)
    place_ = Place::kLine;
  else if (name == "Para")
    place_ = Place::kParagraph;
  if (place_ == Place::kOutside) return;
  is_side_text_ = false;
  tag_.clear();
  font_.clear();
  blanks_.clear();
}

void MifExtraction::take_in_paragraph(const MifToken& token) {
  if (token.kind == MifTokenKind::kOpen && token.name() == "ParaLine") {
    hidden(token.bytes);
    place_ = Place::kLine;
    return;
  }
  if (token.kind != MifTokenKind::kOpen && token.kind != MifTokenKind::kClose) {
    hidden(token.bytes);
    return;
  }
  flush();
  outside(token.bytes);
  place_ = token.kind == MifTokenKind::kClose ? Place::kOutside : Place::kParagraphStatement;
  depth_ = 1;
  is_tag_ = token.kind == MifTokenKind::kOpen && token.name() == kSideTextTag;
}

void MifExtraction::take_about_paragraph(const MifToken& token) {
  outside(token.bytes);
  if (token.kind == MifTokenKind::kOpen) ++depth_;
  if (token.kind == MifTokenKind::kClose && --depth_ == 0) place_ = Place::kParagraph;
  if (token.kind != MifTokenKind::kString || !is_tag_ || depth_ != 1) return;
  is_side_text_ = true;
  tag_ = decode_string(token.value(), coding_);
}

void MifExtraction::take_in_line(const MifToken& token) {
  if (token.kind == MifTokenKind::kOpen) {
    begin_statement(token);
    return;
  }
  if (token.kind == MifTokenKind::kClose && is_text_line_) {
    flush();
    outside(token.bytes);
    place_ = Place::kOutside;
    return;
  }
  hidden(token.bytes);
  if (token.kind == MifTokenKind::kClose) place_ = Place::kParagraph;
}

void MifExtraction::begin_statement(const MifToken& token) {
  if (paragraph_.size() >= kLongestParagraph) flush();
  reading_ = {};
  reading_.statement = &find_statement(token.name());
  reading_.begin = paragraph_.size();
  reading_.code_page = codings_.current_code_page();
  reading_.depth = 1;
  paragraph_ += token.bytes;
  place_ = Place::kStatement;
}

void MifExtraction::take_in_statement(const MifToken& token) {
  if (!reading_.is_too_long && paragraph_.size() + token.bytes.size() - reading_.begin > kLongestStatement) {
    flush();
    reading_.is_too_long = true;
  }
  if (reading_.is_too_long)
    outside(token.bytes);
  else
    paragraph_ += token.bytes;

  switch (token.kind) {
    case MifTokenKind::kOpen:
      ++reading_.depth;
      reading_.has_more = true;
      if (reading_.depth != 2) break;
      reading_.is_font_tag = token.name() == "FTag";
      // The lock says nothing about how the text looks.
      if (!reading_.is_font_tag && token.name() != "FLocked") reading_.has_font = true;
      break;
    case MifTokenKind::kClose:
      if (--reading_.depth != 0) break;
      place_ = Place::kLine;
      if (!reading_.is_too_long) finish_statement();
      break;
    case MifTokenKind::kString:
      ++reading_.string_count;
      reading_.value_end = paragraph_.size() - 1;
      reading_.value = paragraph_.size() + 1 - token.bytes.size();
      if (reading_.depth == 2 && reading_.is_font_tag && !token.value().empty()) reading_.has_font = true;
      break;
    case MifTokenKind::kRest:
      if (!trimmed(token.bytes).empty()) reading_.has_more = true;
      break;
  }
}

void MifExtraction::finish_statement() {
  const Item item = finished_item();
  items_.push_back(item);
  has_text_ = has_text_ || item.is_visible;
  // Above all the statement that tells which frame the text begins in must not move into the text.
  if (item.kind == ItemKind::kHidden && !has_text_) flush();
}

MifExtraction::Item MifExtraction::finished_item() const {
  Item item;
  item.statement = reading_.statement;
  item.kind = item.statement->kind;
  item.begin = reading_.begin;
  item.end = paragraph_.size();
  item.code_page_before = reading_.code_page;
  item.code_page = codings_.current_code_page();
  const std::string_view bytes = bytes_of(item);
  switch (item.kind) {
    case ItemKind::kString:
      if (reading_.string_count != 1 || reading_.has_more) {
        item.kind = ItemKind::kCode;
        break;
      }
      item.value = reading_.value;
      item.value_end = reading_.value_end;
      item.is_visible = is_visible_string(std::string_view(paragraph_).substr(item.value, item.value_end - item.value),
                                          codings_.of(item.code_page));
      break;
    case ItemKind::kCharacter: {
      const std::string_view name = word_of(bytes, item.statement->name);
      const NamedCharacter* const character = find_named_character(name);
      item.kind = character ? ItemKind::kCharacter : name == "SoftHyphen" ? ItemKind::kHidden : ItemKind::kCode;
      if (!character) break;
      item.text = character->text;
      item.is_visible = !is_blank_character(item.text);
      break;
    }
    case ItemKind::kOpen:
      if (item.statement->name == kFont && !reading_.has_font) item.kind = ItemKind::kClose;
      break;
    default:
      break;
  }
  return item;
}

// What stands in front of any text of the paragraph is no part of a segment.
void MifExtraction::hidden(std::string_view bytes) {
  if (items_.empty() || paragraph_.size() >= kLongestParagraph) {
    flush();
    follow_blanks(bytes);
    outside(bytes);
    return;
  }
  if (items_.back().kind != ItemKind::kHidden) {
    Item item;
    item.begin = paragraph_.size();
    items_.push_back(item);
  }
  paragraph_ += bytes;
  items_.back().end = paragraph_.size();
}

void MifExtraction::flush() {
  if (paragraph_.empty()) return;
  std::size_t first = 0;
  std::size_t last = 0;
  pair_codes(items_, open_codes_,
             [](const Item& open, const Item& close) { return open.statement->type == close.statement->type; });
  std::size_t written = 0;
  const std::string_view all = paragraph_;
  if (find_core(first, last)) {
    outside(all.substr(0, items_[first].begin));
    follow_fonts(0, first);
    write_segment(first, last);
    written = items_[last].end;
    follow_fonts(first, items_.size());
  } else {
    follow_fonts(0, items_.size());
  }
  outside(all.substr(written));
  blanks_ = blanks_before(paragraph_.size());
  paragraph_.clear();
  items_.clear();
  has_text_ = false;
}

// The items of the segment; false when there is no text.
bool MifExtraction::find_core(std::size_t& first, std::size_t& last) const {
  first = 0;
  while (first < items_.size() && !items_[first].is_visible) ++first;
  if (first == items_.size()) return false;
  last = items_.size() - 1;
  while (!items_[last].is_visible) --last;
  for (std::size_t i = first; i-- > 0;)
    if (items_[i].kind == ItemKind::kVariable) first = i;
  for (std::size_t i = last + 1; i < items_.size(); ++i)
    if (items_[i].kind == ItemKind::kVariable) last = i;

  include_partners(items_, first, last);
  return true;
}

void MifExtraction::write_segment(std::size_t first, std::size_t last) {
  builder_.start(position_.line(), position_.column());
  builder_.context(to_context({is_side_text_, blanks_before(items_[first].begin), font_, code_pages(first, last)}));
  if (is_side_text_) builder_.note(tag_);
  for (std::size_t i = first; i <= last; ++i) {
    const Item& item = items_[i];
    switch (item.kind) {
      case ItemKind::kHidden:
        builder_.add_hidden(bytes_of(item));
        break;
      case ItemKind::kString:
        write_string(item);
        break;
      case ItemKind::kCharacter:
        builder_.add_text(item.text, bytes_of(item));
        break;
      default:
        write_code(item);
        break;
    }
  }
  position_.advance(std::string_view(paragraph_).substr(items_[first].begin, items_[last].end - items_[first].begin));
  sink_.segment(builder_.finish());
}

void MifExtraction::write_string(const Item& item) {
  const std::string_view all = paragraph_;
  builder_.add_hidden(all.substr(item.begin, item.value - item.begin));
  const StringCoding& coding = codings_.of(item.code_page);
  StringReader reader(all.substr(item.value, item.value_end - item.value), coding);
  for (StringPart part; reader.next(part);) {
    switch (part.kind) {
      case StringPart::Kind::kRun:
        write_run(part.bytes, coding);
        break;
      case StringPart::Kind::kText:
        builder_.add_text(part.text, part.bytes);
        break;
      case StringPart::Kind::kBreak:
        builder_.add_text(" ", part.bytes);
        break;
      case StringPart::Kind::kHyphen:
        builder_.add_hidden(part.bytes);
        break;
      case StringPart::Kind::kCode:
        builder_.add_code(CodeKind::kStandalone, "x-escape", part.bytes, part.bytes);
        break;
    }
  }
  builder_.add_hidden(all.substr(item.value_end, item.end - item.value_end));
}

void MifExtraction::write_run(std::string_view run, const StringCoding& coding) {
  if (&coding == &coding_) return builder_.add_text(run);
  while (!run.empty()) {
    std::string character;
    bool is_valid = false;
    const std::string_view bytes = run.substr(0, coding.bytes().decode_one(run, character, is_valid));
    if (is_valid) {
      builder_.add_text(character, bytes);
    } else {
      std::string shown;
      for (const char byte : bytes) append_byte_escape(static_cast<unsigned char>(byte), shown);
      builder_.add_code(CodeKind::kStandalone, "x-byte", shown, bytes);
    }
    run.remove_prefix(bytes.size());
  }
}

// At the beginning of a segment and behind each font of it; none when all are the document's.
std::vector<unsigned> MifExtraction::code_pages(std::size_t first, std::size_t last) const {
  std::vector<unsigned> pages{items_[first].code_page_before};
  for (std::size_t i = first; i <= last; ++i)
    if (items_[i].statement && items_[i].statement->name == kFont) pages.push_back(items_[i].code_page);
  const auto is_other = [&](unsigned page) { return &codings_.of(page) != &coding_; };
  if (std::ranges::none_of(pages, is_other)) pages.clear();
  return pages;
}

void MifExtraction::write_code(const Item& item) {
  CodeKind kind = CodeKind::kStandalone;
  if (item.partner != kNoPartner) kind = item.kind == ItemKind::kOpen ? CodeKind::kOpen : CodeKind::kClose;
  const std::string_view bytes = bytes_of(item);
  std::string_view type = item.statement->type;
  if (item.statement->name == "Char" && word_of(bytes, "Char") == "HardReturn") type = "lb";
  builder_.add_code(kind, type, kind == CodeKind::kStandalone ? shown(item) : std::string(), bytes,
                    item.statement->is_required);
}

// "Page Count" for a variable, "Marker: Index, lexical parsing", "ATbl 5".
std::string MifExtraction::shown(const Item& item) const {
  const std::string_view bytes = bytes_of(item);
  std::string text;
  std::size_t strings = 0;
  MifTokenScanner scanner;
  MifToken token;
  for (std::size_t at = 0; at < bytes.size() && strings < kMostStrings; at += token.bytes.size()) {
    scanner.next(bytes.substr(at), true, token);
    if (token.kind != MifTokenKind::kString) continue;
    const std::string string = decode_string(token.value(), coding_);
    if (string.empty()) continue;
    if (strings++ != 0) text += ", ";
    text += string;
  }
  if (strings == 0) return std::string(trimmed(bytes.substr(1, std::min(bytes.size() - 2, kMostShown))));
  if (item.kind == ItemKind::kVariable) return text;
  std::string name;
  for (std::size_t at = 1; at < bytes.size() && !is_blank(bytes[at]) && !is_line_end(bytes[at]); ++at)
    name += bytes[at];
  return name + ": " + text;
}

void MifExtraction::follow_fonts(std::size_t first, std::size_t last) {
  for (std::size_t i = first; i < last; ++i) {
    const Item& item = items_[i];
    if (!item.statement || item.statement->name != kFont) continue;
    font_.clear();
    if (item.kind == ItemKind::kOpen && item.end - item.begin <= kLongestFont) font_ = bytes_of(item);
  }
}

// Keeps the line end and the indentation in front of what comes next.
void MifExtraction::follow_blanks(std::string_view bytes) {
  if (is_line_end(bytes.front())) {
    for (const char c : bytes) {
      const bool joins = c == '\n' && blanks_ == "\r";
      if (!joins) blanks_.clear();
      blanks_ += c;
    }
  } else if (is_blank(bytes.front())) {
    blanks_ += bytes.substr(0, kLongestSeparator - blanks_.size());
  } else {
    blanks_.clear();
  }
}

std::string_view MifExtraction::blanks_before(std::size_t place) const {
  if (place == 0) return blanks_;
  const std::string_view all = paragraph_;
  std::size_t begin = place;
  while (begin != 0 && place - begin < kLongestSeparator - 2 && is_blank(all[begin - 1])) --begin;
  if (begin != 0 && all[begin - 1] == '\n') --begin;
  if (begin != 0 && all[begin - 1] == '\r') --begin;
  return all.substr(begin, place - begin);
}

void MifExtraction::outside(std::string_view bytes) {
  if (bytes.empty()) return;
  sink_.skeleton(bytes);
  position_.advance(bytes);
}

}  // namespace kavo::mif
