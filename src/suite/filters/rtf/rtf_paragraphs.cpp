// The part of RtfExtraction that ends a paragraph: what waits becomes segments and skeleton, within limits.
#include <algorithm>
#include <utility>

#include "formats/rtf/characters.h"
#include "suite/filters/rtf/rtf_computed.h"
#include "suite/filters/rtf/rtf_extraction.h"

namespace kavo::rtf {

namespace {

// Whether a control word stands between characters and never in one, nor in what stands for one in older programs.
bool divides_text(const Token& token) {
  return token.kind == TokenKind::kWord && token.name != "u" && token.name != "uc" && character_of(token).empty();
}

}  // namespace

// Joins the items from `item` on into one.
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

// Items before the first text of a paragraph do not belong to a segment.
void RtfExtraction::drop_leading() {
  if (!is_waiting() && !paragraph_.items.empty()) flush();
}

std::size_t RtfExtraction::waiting_text_size() const {
  return paragraph_.bytes.size() - std::min(data_size_, paragraph_.bytes.size());
}

// If the paragraph has become too long, takes the part of a long text that ends it, and returns the rest. Where it is
// cut depends only on the document.
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

// Counts bytes of a token of which only a part has been taken.
void RtfExtraction::pass(std::string_view bytes) {
  place_.advance(bytes);
  advanced_ += bytes.size();
}

// A document without ends must not become one segment that fills the memory.
void RtfExtraction::keep_within_limits(const Token& token) {
  const std::size_t text_size = waiting_text_size();
  const bool has_many = paragraph_.items.size() > kMostItems;
  if (text_size <= kLongestParagraph && data_size_ <= kLongestData && !has_many) return;
  // Texts are cut at a blank; a character in another form should not be cut either.
  if (token.kind == TokenKind::kText && data_depth_ == 0) return;
  const bool may_cut = token.kind == TokenKind::kOpen || token.kind == TokenKind::kClose || data_depth_ != 0 ||
                       (has_many && divides_text(token));
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
    Segment* const segment = maker_.make(paragraph_, core, is_plain);
    if (!segment) continue;
    identify(*segment, story());
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
  const std::size_t owner = stories_.size() - 1;
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
    identify(*segment, stories_[owner]);
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

// Writes items [first, last) and the bytes up to `end` into the skeleton.
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

// If the document has set no colours or no direction so far, this is the last place where they can be added.
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
