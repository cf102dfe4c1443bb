// The writing half of PageExtraction: turns a gathered paragraph into segments and skeleton.
#include <algorithm>
#include <utility>

#include "formats/html/entities.h"
#include "suite/filters/html/html_extraction.h"
#include "suite/filters/script/script_place.h"

namespace kavo::html {
namespace {

// The type of "br".
constexpr std::string_view kLineBreak = "lb";

bool has_line_end(std::string_view bytes) { return bytes.find_first_of("\r\n") != std::string_view::npos; }

bool is_ascii(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

}  // namespace

void PageExtraction::flush(const Element* ends_at) {
  if (items_.empty()) return;
  pair_tags();
  std::size_t first = 0;
  std::size_t last = 0;
  const bool has_text = find_core(first, last);
  const std::size_t core = has_text ? first : items_.size();
  for (std::size_t i = 0; i < core; ++i) write_outside(items_[i]);
  if (has_text) {
    std::string name = name_around(first, last);
    if (name.empty()) name = surroundings_.name_of_text(ends_at);
    write_segment(first, last, name);
    for (std::size_t i = last + 1; i < items_.size(); ++i) write_outside(items_[i]);
  }
  paragraph_.clear();
  items_.clear();
  values_.clear();
  // In a page that holds only placeholders each token ends a paragraph and begins the next one.
  scripts_.forget(token_scripts_);
}

bool PageExtraction::same_name(const Item& a, const Item& b) const {
  if (a.element != b.element || !a.element->name.empty()) return a.element == b.element;
  return equal_name(std::string_view(paragraph_).substr(a.begin + 1, a.name_size),
                    std::string_view(paragraph_).substr(b.begin + 2, b.name_size));
}

void PageExtraction::pair_tags() {
  pair_codes(items_, open_tags_, [this](const Item& open, const Item& close) { return same_name(open, close); });
  for (Item& item : items_)
    if ((item.kind == ItemKind::kOpen || item.kind == ItemKind::kClose) && item.partner == kNoPartner)
      item.kind = ItemKind::kCode;
}

// Finds the items that belong to the segment. False when there is no text.
bool PageExtraction::find_core(std::size_t& first, std::size_t& last) const {
  const auto is_text = [&](const Item& item) {
    return item.kind == ItemKind::kText && text_.is_visible(bytes_of(item), false);
  };
  first = 0;
  while (first < items_.size() && !is_text(items_[first])) ++first;
  if (first == items_.size()) return false;
  last = items_.size() - 1;
  while (!is_text(items_[last])) --last;

  for (;;) {
    const std::pair before(first, last);
    include_server_code(first, last);
    include_partners(items_, first, last);
    if (before == std::pair(first, last)) return true;
  }
}

// Server code on the line of the text is a part of the sentence ("<%=n%> files"); on a line of its own it controls what
// the page shows.
void PageExtraction::include_server_code(std::size_t& first, std::size_t& last) const {
  const auto ends_line = [&](const Item& item) { return has_line_end(bytes_of(item)) || item.type == kLineBreak; };
  const std::string_view first_text = bytes_of(items_[first]);
  if (items_[first].kind != ItemKind::kText || !has_line_end(first_text.substr(0, leading_space(first_text)))) {
    for (std::size_t i = first; i-- > 0 && !ends_line(items_[i]);)
      if (items_[i].kind == ItemKind::kContent) first = i;
  }
  const std::string_view last_text = bytes_of(items_[last]);
  if (items_[last].kind != ItemKind::kText ||
      !has_line_end(last_text.substr(last_text.size() - trailing_space(last_text)))) {
    for (std::size_t i = last + 1; i < items_.size() && !ends_line(items_[i]); ++i)
      if (items_[i].kind == ItemKind::kContent) last = i;
  }
}

// The "id" of the innermost element in the paragraph that contains all of its text.
std::string PageExtraction::name_around(std::size_t first, std::size_t last) const {
  for (std::size_t i = first; i-- > 0;) {
    const Item& item = items_[i];
    if (item.partner == kNoPartner || item.partner < last || item.id.end == item.id.begin) continue;
    const std::string_view id = bytes_of(item).substr(item.id.begin, item.id.end - item.id.begin);
    if (id.find('<') == std::string_view::npos) return for_xml(text_.decoded(id));
  }
  return {};
}

void PageExtraction::lock_without_words(SegmentBuilder& builder, std::string_view note) {
  if (text_.has_words() || opens_codes_) {
    builder.note(note);
    return;
  }
  builder.locked(true);
  builder.note(note.empty() ? std::string(kNothingToTranslate)
                            : std::string(note) + ". " + std::string(kNothingToTranslate));
}

void PageExtraction::write_segment(std::size_t first, std::size_t last, std::string_view name) {
  std::size_t leading = 0;
  std::size_t trailing = 0;
  if (items_[first].kind == ItemKind::kText) leading = leading_space(bytes_of(items_[first]));
  if (items_[last].kind == ItemKind::kText) trailing = trailing_space(bytes_of(items_[last]));
  const std::size_t begin = items_[first].begin + leading;
  const std::size_t end = items_[last].end - trailing;
  const std::string_view all = paragraph_;
  outside(all.substr(items_[first].begin, leading));
  const TextPlace place = place_of_text(all.substr(begin, end - begin));
  builder_.start(position_.line(), position_.column());
  builder_.context(to_context(place));
  builder_.author_line(author_lines_.line_of({position_.line(), position_.column()}));
  builder_.name(name);
  surroundings_.tell(builder_);
  surroundings_.wrote_text();
  text_.has_words(false);
  for (std::size_t i = first; i <= last; ++i) {
    const Item& item = items_[i];
    if (item.kind != ItemKind::kText) {
      write_code(item);
      continue;
    }
    const std::size_t from = std::max(item.begin, begin);
    const std::string_view text = all.substr(from, std::min(item.end, end) - from);
    text_.add(builder_, text, place);
    advance(text);
  }
  lock_without_words(builder_, "");
  sink_.segment(builder_.finish());
  outside(all.substr(end, trailing));
}

void PageExtraction::write_code(const Item& item) {
  const std::string_view bytes = bytes_of(item);
  if (item.kind == ItemKind::kContent && item.is_server_code && item.value_count == 0) {
    text_.add_server_code(builder_, bytes);
    advance(bytes);
    return;
  }
  const CodeKind kind = item.kind == ItemKind::kOpen    ? CodeKind::kOpen
                        : item.kind == ItemKind::kClose ? CodeKind::kClose
                                                        : CodeKind::kStandalone;
  const bool is_content = item.kind == ItemKind::kContent;
  std::string_view type = item.type;
  if (is_content) type = "x-untranslated";
  if (item.kind == ItemKind::kForeign) type = "x-foreign";
  // In XLIFF only a pair can be of type "bold" or "link".
  if (item.element && !item.element->is_void && kind == CodeKind::kStandalone) type = "x-html-tag";
  const std::string shown = kind == CodeKind::kStandalone ? text_.shown(bytes) : std::string();
  builder_.begin_code(kind, type, shown, is_content || item.is_server_code);
  if (item.element && kind != CodeKind::kClose) builder_.equivalent(meaning_of(item));
  std::size_t at = 0;
  const auto code_bytes = [&](std::size_t end) {
    builder_.code_bytes(input_.original(bytes.substr(at, end - at)));
    advance(bytes.substr(at, end - at));
    at = end;
  };
  for (std::size_t i = 0; i < item.value_count; ++i) {
    Value value = values_[item.first_value + i];
    if (!has_text(value, bytes)) continue;
    code_bytes(value.begin);
    const std::string_view text = bytes.substr(value.begin, value.end - value.begin);
    const std::uint32_t number = sink_.nested_segment(segment_of(value, bytes));
    builder_.nested(number, input_.original(text));
    advance(text);
    at = value.end;
  }
  code_bytes(bytes.size());
  builder_.end_code();
}

// What a translator sees of a code: the address of a link, the name of any other tag.
std::string PageExtraction::meaning_of(const Item& item) const {
  const std::string_view tag = bytes_of(item);
  if (item.link.end != 0) return text_.shown_value(tag.substr(item.link.begin, item.link.end - item.link.begin));
  const std::size_t name = tag.starts_with("</") ? 2 : 1;
  return text_.shown(tag.substr(0, name + item.name_size)) + ">";
}

// True when people see the text. Removes the white space around a text in a drawing.
bool PageExtraction::has_text(Value& value, std::string_view bytes) const {
  if (value.place != PlaceKind::kContent) return true;
  const std::string_view text = bytes.substr(value.begin, value.end - value.begin);
  if (!text_.is_visible(text, false)) return false;
  value.begin += leading_space(text);
  value.end -= trailing_space(text);
  return true;
}

std::string PageExtraction::element_of_value(std::string_view tag, std::string_view attribute) const {
  const std::size_t name_end = std::min(tag.find_first_of(" \t\r\n\f/>", 1), tag.size());
  std::string element = for_xml(text_.decoded(tag.substr(1, name_end - 1)));
  for (char& c : element) c = script::lower(c);
  return element + "@" + std::string(attribute);
}

// The segment of a text inside a script or an embedded page, which is in a tag or in PHP.
const Segment& PageExtraction::embedded_segment(const EmbeddedText& text, std::string_view tag) {
  const script::Unit& unit = text.unit;
  value_builder_.start(position_.line(), position_.column());
  value_builder_.author_line(author_lines_.line_of({position_.line(), position_.column()}));
  value_builder_.context(to_context({text.embedding, text.quote, script::context_of(script::place_of_unit(unit))}));
  std::string element = text.attribute.empty() ? std::string() : element_of_value(tag, text.attribute);
  if (!element.empty() && !unit.element.empty()) element += ' ';
  value_builder_.element(element + unit.element);
  for (const script::UnitPart& part : unit.parts) {
    const std::string_view bytes = tag.substr(part.begin, part.end - part.begin);
    if (!part.is_code) {
      value_builder_.add_text(part.text, input_.original(bytes));
      continue;
    }
    const CodeKind kind = part.kind == 'o'   ? CodeKind::kOpen
                          : part.kind == 'c' ? CodeKind::kClose
                                             : CodeKind::kStandalone;
    value_builder_.add_code(kind, part.type.empty() ? "x-script" : part.type, text_.shown_value(bytes),
                            input_.original(bytes), part.is_operand || part.type == "x-placeholder");
  }
  if (unit.verdict == script::Verdict::kDoubt) {
    value_builder_.locked(!embedded_.opens_doubts());
    value_builder_.note(script::doubt_of(unit));
  }
  return value_builder_.finish();
}

const Segment& PageExtraction::segment_of(const Value& value, std::string_view tag) {
  if (value.embedded) return embedded_segment(*value.embedded, tag);
  const bool had_words = text_.has_words();  // of the text around it
  text_.has_words(false);
  value_builder_.start(position_.line(), position_.column());
  value_builder_.author_line(author_lines_.line_of({position_.line(), position_.column()}));
  value_builder_.context(to_context({value.place, {}}));
  value_builder_.element(value.attribute.empty() ? "svg" : element_of_value(tag, value.attribute));
  text_.add_value(value_builder_, tag.substr(value.begin, value.end - value.begin), {value.place, {}});
  lock_without_words(value_builder_, value.attribute);
  text_.has_words(had_words);
  return value_builder_.finish();
}

void PageExtraction::write_outside(const Item& item) {
  write_tag_outside(bytes_of(item), item.first_value, item.value_count);
}

void PageExtraction::write_tag_outside(std::string_view tag, std::size_t first_value, std::size_t value_count) {
  std::size_t at = 0;
  for (std::size_t i = first_value; i < first_value + value_count; ++i) {
    Value value = values_[i];
    if (!has_text(value, tag)) continue;
    if (value.begin < at) continue;  // an attribute that both declares the coding and is read by people
    outside(tag.substr(at, value.begin - at));
    const std::string_view bytes = tag.substr(value.begin, value.end - value.begin);
    if (value.computed != 0) {
      sink_.computed(value.computed, input_.original(bytes));
    } else {
      sink_.segment(segment_of(value, tag));
    }
    advance(bytes);
    at = value.end;
  }
  outside(tag.substr(at));
}

TextPlace PageExtraction::place_of_text(std::string_view bytes) const {
  TextPlace place{place_, {}};
  if (!is_in_text_area_ && preformatted_depth_ == 0) return place;
  const std::size_t line_end = bytes.find_first_of("\r\n");
  if (line_end == std::string_view::npos || bytes[line_end] == '\n')
    place.line_end = "\n";
  else
    place.line_end = bytes.substr(line_end).starts_with("\r\n") ? "\r\n" : "\r";
  return place;
}

void PageExtraction::outside(std::string_view bytes) {
  if (bytes.empty()) return;
  sink_.skeleton(input_.original(bytes));
  advance(bytes);
}

void PageExtraction::raw_text(std::string_view bytes) {
  if (is_ascii(bytes)) {
    outside(bytes);
    return;
  }
  sink_.computed(kRawText, input_.original(bytes));
  advance(bytes);
}

void PageExtraction::advance(std::string_view bytes) {
  position_.advance(bytes, [this](std::string_view part) { return input_.original_size(part); });
}

}  // namespace kavo::html
