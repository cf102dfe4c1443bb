// The part of MifExtraction that ends a paragraph: the gathered bytes become a segment (or a place for an earlier one)
// and skeleton.
#include <algorithm>

#include "formats/mif/building_block.h"
#include "formats/mif/escapes.h"
#include "suite/filters/mif/mif_extraction.h"
#include "suite/filters/mif/mif_shown.h"
#include "suite/filters/mif/mif_statement.h"
#include "suite/filters/mif/mif_text_place.h"

namespace kavo::mif {
namespace {

// A longer font statement is not restored after a coloured text.
constexpr std::size_t kLongestFont = 4096;  // bytes

// The first building block of a value that begins in [from, end); `end` when there is none.
std::size_t find_block(std::string_view value, std::size_t from, std::size_t end) {
  while (from < end && building_block_length(value.substr(from)) == 0)
    from = std::min(value.substr(0, end).find('<', from + 1), end);
  return std::min(from, end);
}

}  // namespace

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

// Finds the items that belong to the segment. False when there is no text.
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
  write_items(first, last);
  builder_.element(element());
  if (is_side_text_) builder_.note(tag_);
  if (!wanted_.has(page_)) {
    builder_.locked(true);
    builder_.note("The text is on a " + std::string(name_of(page_)) +
                  " page: it is translated when the option mif.page-types names this kind");
  }
  const std::string_view original =
      std::string_view(paragraph_).substr(items_[first].begin, items_[last].end - items_[first].begin);
  // The format consists of building blocks only.
  if (is_side_text_ && !builder_.has_text()) return outside(original);
  const Segment& segment = builder_.finish();
  MifTextPlace place{is_side_text_, false, blanks_before(items_[first].begin), font_, code_pages(first, last)};
  MifMasterTexts::Entry entry;
  if (page_ == PageKind::kMaster && !segment.locked && place.code_pages.empty())
    entry = master_texts_.take(segment, font_);
  position_.advance(original);
  if (entry.is_again) {
    sink_.computed(kRepeatedText + entry.number, original);
    return;
  }
  place.is_repeated = entry.is_noted;
  builder_.context(to_context(place));
  sink_.segment(segment);
}

// "table/cell/CellBody", "master page/Header", "frame/text line".
std::string MifExtraction::element() const {
  if (is_side_text_) return {};
  std::string path;
  if (page_ != PageKind::kBody) (path += name_of(page_)) += " page/";
  if (outline_.kind() == MifOutline::Kind::kFrame) path += "frame/";
  if (outline_.kind() == MifOutline::Kind::kTable) (path += "table/") += table_part_;
  path += is_text_line_ ? std::string_view("text line") : std::string_view(paragraph_tag_);
  if (path.ends_with('/')) path.pop_back();
  return path;
}

void MifExtraction::write_items(std::size_t first, std::size_t last) {
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
}

void MifExtraction::write_string(const Item& item) {
  const std::string_view all = paragraph_;
  builder_.add_hidden(all.substr(item.begin, item.value - item.begin));
  for (std::string_view value = all.substr(item.value, item.value_end - item.value); !value.empty();)
    value.remove_prefix(write_value(value, codings_.of(item.code_page)));
  builder_.add_hidden(all.substr(item.value_end, item.end - item.value_end));
}

// Writes a value up to its end or to the end of the first building block, and returns the number of bytes. Only side
// texts hold building blocks; in the document's own texts the same characters are text.
std::size_t MifExtraction::write_value(std::string_view value, const StringCoding& coding) {
  StringReader reader(value, coding);
  bool is_literal = false;  // a backslash comes before it
  for (StringPart part; reader.next(part);) {
    switch (part.kind) {
      case StringPart::Kind::kRun: {
        const std::size_t begin = static_cast<std::size_t>(part.bytes.data() - value.data());
        const std::size_t end = begin + part.bytes.size();
        const std::size_t block = is_side_text_ ? find_block(value, begin + (is_literal ? 1 : 0), end) : end;
        write_run(value.substr(begin, block - begin), coding);
        if (block == end) break;
        const std::string_view bytes = value.substr(block, building_block_length(value.substr(block)));
        builder_.add_code(CodeKind::kStandalone, "x-building-block", decode_string(bytes, coding), bytes);
        return block + bytes.size();
      }
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
    is_literal = part.kind == StringPart::Kind::kText && part.text == "\\";
  }
  return value.size();
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

// The code pages at the beginning of a segment and after each of its fonts. Empty when all are the document's own.
std::vector<unsigned> MifExtraction::code_pages(std::size_t first, std::size_t last) const {
  std::vector<unsigned> pages{items_[first].code_page_before};
  for (std::size_t i = first; i <= last; ++i)
    if (items_[i].kind != ItemKind::kHidden && items_[i].statement && items_[i].statement->name == kFont)
      pages.push_back(items_[i].code_page);
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
  std::string shown;
  if (kind == CodeKind::kStandalone) shown = shown_of_code(bytes, item.kind == ItemKind::kVariable, coding_);
  builder_.add_code(kind, type, shown, bytes, item.statement->is_required);
  if (item.statement->type == kReference && item.kind == ItemKind::kOpen) builder_.equivalent(name_in(bytes, coding_));
}

void MifExtraction::follow_fonts(std::size_t first, std::size_t last) {
  for (std::size_t i = first; i < last; ++i) {
    const Item& item = items_[i];
    if (!item.statement || item.statement->name != kFont) continue;
    font_.clear();
    if (item.sets_font && item.end - item.begin <= kLongestFont) font_ = bytes_of(item);
  }
}

}  // namespace kavo::mif
