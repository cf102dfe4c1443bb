#include "suite/filters/mif/mif_extraction.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "suite/filters/mif/mif_statement.h"
#include "suite/filters/mif/mif_text_place.h"

namespace kavo::mif {
namespace {

// The tag of a string that names the entry of a side text.
constexpr std::string_view kSideTextTag = "KAVOTag";

// Parts of a table, as the place of a text names them.
constexpr std::pair<std::string_view, std::string_view> kTableParts[] = {
    {"TblTitle", "title/"}, {"TblH", "heading/"}, {"TblBody", "cell/"}, {"TblF", "footing/"}};

// These are never inside a paragraph, so a paragraph that is still open was not closed.
constexpr std::string_view kOuterStatements[] = {"Para", "TextLine", "TextFlow", "Tbl", "Page"};
// The first of these in a document comes after all its catalogues.
constexpr std::string_view kShownStatements[] = {"Para", "TextLine", "TextFlow", "Tbls", "AFrames", "Page"};

template <std::size_t kSize>
bool is_one_of(const std::string_view (&names)[kSize], std::string_view name) {
  return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

}  // namespace

// Anchors must come back, since what they anchor (a table, a footnote) would be lost with them.
const MifExtraction::Statement MifExtraction::kStatements[] = {
    {"String", ItemKind::kString, "x-string", false},
    {"Char", ItemKind::kCharacter, "x-char", false},
    {kFont, ItemKind::kOpen, "x-font", false},
    {"Variable", ItemKind::kVariable, "x-variable", false},
    {"XRef", ItemKind::kOpen, kReference, false},
    {"XRefEnd", ItemKind::kClose, kReference, false},
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

MifExtraction::FontPart MifExtraction::find_font_part(std::string_view name) {
  // Letter spacing by its names in all versions, shifts of single letters, kerning of pairs, narrower Asian
  // punctuation, and the language in which words are divided and checked.
  constexpr std::string_view spacing[] = {"FDW", "FSpread", "FDX", "FPairKern", "FTsume", "FLanguage"};
  if (name == "FLocked") return FontPart::kNone;
  if (name == "FTag") return FontPart::kTag;
  return is_one_of(spacing, name) ? FontPart::kSpacing : FontPart::kLook;
}

void MifExtraction::run(ProgressEvent& progress) {
  const MifPageSurvey pages(document_, progress);
  MifToken token;
  for (;;) {
    const std::string_view window = document_.window();
    if (!window.empty() && scanner_.next(window, document_.exhausted(), token)) {
      outline_.take(token);
      page_ = pages.kind_of(outline_.number());
      take(token);
      document_.consume(token.bytes.size());
      continue;
    }
    if (!document_.more()) break;
    progress.report(static_cast<std::int16_t>(50 + document_.percent() / 2));
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

// Ends what was never closed, at a statement that cannot be inside it.
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
  if (name == "Tbl") table_part_ = {};
  for (const auto& [statement, part] : kTableParts)
    if (name == statement) table_part_ = part;
  is_text_line_ = name == "TextLine";
  if (is_text_line_)
    place_ = Place::kLine;
  else if (name == "Para")
    place_ = Place::kParagraph;
  if (place_ == Place::kOutside) return;
  is_side_text_ = false;
  tag_.clear();
  paragraph_tag_.clear();
  font_.clear();
  look_.clear();
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
  is_paragraph_tag_ = token.kind == MifTokenKind::kOpen && token.name() == "PgfTag";
}

void MifExtraction::take_about_paragraph(const MifToken& token) {
  outside(token.bytes);
  if (token.kind == MifTokenKind::kOpen) ++depth_;
  if (token.kind == MifTokenKind::kClose && --depth_ == 0) place_ = Place::kParagraph;
  if (token.kind != MifTokenKind::kString || depth_ != 1) return;
  if (is_paragraph_tag_) paragraph_tag_ = decode_string(token.value(), coding_);
  if (!is_tag_) return;
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
      break;
    case MifTokenKind::kRest:
      if (!trimmed(token.bytes).empty()) reading_.has_more = true;
      break;
  }
  if (reading_.statement->name == kFont) read_font(token);
}

// Collects what a font sets. The line ends of the document do not belong to it.
void MifExtraction::read_font(const MifToken& token) {
  if (token.kind == MifTokenKind::kOpen && reading_.depth == 2) {
    reading_.font_part = find_font_part(token.name());
    if (reading_.font_part > FontPart::kTag) reading_.has_font = true;
  }
  const bool is_tag = reading_.font_part == FontPart::kTag;
  if (is_tag && token.kind == MifTokenKind::kString && !token.value().empty()) {
    reading_.has_font = true;
    reading_.look += token.bytes;
  }
  const bool is_part = reading_.font_part == FontPart::kLook && reading_.depth >= 2;
  if (is_part && (token.kind != MifTokenKind::kRest || !trimmed(token.bytes).empty())) reading_.look += token.bytes;
}

void MifExtraction::finish_statement() {
  const Item item = finished_item();
  items_.push_back(item);
  has_text_ = has_text_ || item.is_visible;
  // So the statement that names the text's first frame, for one, does not move into the text.
  if (item.kind == ItemKind::kHidden && !has_text_ && item.statement->name != kFont) flush();
}

MifExtraction::Item MifExtraction::finished_item() {
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
      if (item.statement->name == kFont) finish_font(item);
      break;
    default:
      break;
  }
  return item;
}

void MifExtraction::finish_font(Item& item) {
  item.sets_font = reading_.has_font;
  if (reading_.look == look_ && item.code_page == item.code_page_before)
    item.kind = ItemKind::kHidden;
  else if (reading_.look.empty())
    item.kind = ItemKind::kClose;
  look_ = reading_.look;
}

// Statements before the paragraph's first text do not belong to a segment.
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

// Remembers the line end and the indentation before what comes next.
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
