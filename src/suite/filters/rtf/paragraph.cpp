#include "suite/filters/rtf/paragraph.h"

#include <algorithm>
#include <functional>

#include "formats/rtf/destinations.h"
#include "formats/rtf/text_reader.h"
#include "formats/rtf/token_scanner.h"
#include "suite/filters/rtf/segment_context.h"

namespace kavo::rtf {
namespace {

constexpr std::string_view kFormatting[] = {"bold", "italic", "underlined", "x-hidden", "x-font"};

std::string_view formatting_type(Property property) {
  switch (property) {
    case Property::kBold:
      return kFormatting[0];
    case Property::kItalic:
      return kFormatting[1];
    case Property::kUnderline:
      return kFormatting[2];
    case Property::kHidden:
      return kFormatting[3];
    default:
      return kFormatting[4];
  }
}

// A control word after text does not begin a destination, but it would begin one if the text were not there.
bool may_begin_destination(std::string_view token) {
  if (token.size() < 2 || token[0] != '\\') return false;
  const bool is_word = (token[1] >= 'a' && token[1] <= 'z') || (token[1] >= 'A' && token[1] <= 'Z');
  return token[1] == '*' || (is_word && destination_of(word_at(token).name));
}

std::string in_hexadecimal(std::string_view bytes) { return "[" + std::string(bytes) + "]"; }

// Extends a core to the ends of the groups that begin in it, if nothing else comes before those ends.
void include_ends(const Paragraph& paragraph, std::size_t last, Core& core) {
  std::size_t open = 0;
  for (std::size_t i = core.first; i <= core.last; ++i) {
    const Item& item = paragraph.items[i];
    if (item.kind != ItemKind::kHidden) continue;
    const std::string_view bytes = paragraph.bytes_of(item);
    if (bytes == "{") ++open;
    if (bytes == "}" && open != 0) --open;
  }
  for (std::size_t i = core.last + 1; i < last && open != 0; ++i) {
    if (paragraph.items[i].kind != ItemKind::kHidden || paragraph.bytes_of(paragraph.items[i]) != "}") return;
    core.last = i;
    --open;
  }
}

}  // namespace

void Paragraph::sort_inner() {
  std::vector<std::uint32_t> order(inner.size());
  for (std::uint32_t i = 0; i < order.size(); ++i) order[i] = i;
  std::ranges::stable_sort(order, {}, [&](std::uint32_t i) { return inner[i].end; });
  std::vector<std::uint32_t> place(order.size());
  std::vector<InnerSegment> sorted;
  sorted.reserve(order.size());
  for (std::uint32_t i = 0; i < order.size(); ++i) {
    place[order[i]] = i;
    sorted.push_back(std::move(inner[order[i]]));
  }
  for (InnerSegment& each : sorted)
    for (NestedPlace& nested : each.segment.nested) nested.segment = place[nested.segment];
  inner = std::move(sorted);
}

void Paragraph::clear() {
  bytes.clear();
  items.clear();
  looks.clear();
  inner.clear();
}

std::vector<Core> find_cores(Paragraph& paragraph, std::size_t first, std::size_t last) {
  std::vector<Item>& items = paragraph.items;
  std::vector<std::size_t> open;
  for (std::size_t i = first; i < last; ++i) {
    items[i].partner = kNoPartner;
    if (items[i].kind == ItemKind::kOpen) open.push_back(i);
    if (items[i].kind != ItemKind::kClose || open.empty()) continue;
    items[i].partner = open.back();
    items[open.back()].partner = i;
    open.pop_back();
  }
  std::vector<Core> cores;
  bool has_core = false;
  std::size_t begin = first;
  const auto finish = [&](std::size_t end) {
    if (!has_core) return;
    has_core = false;
    Core& core = cores.back();
    // A field around the text belongs to the core.
    std::size_t seen_first = core.first;
    std::size_t seen_last = core.first;
    while (seen_first > core.first || seen_last <= core.last) {
      const std::size_t i = seen_last <= core.last ? seen_last++ : --seen_first;
      const std::size_t partner = items[i].partner;
      if (partner == kNoPartner || partner < begin || partner >= end) continue;
      core.first = std::min(core.first, partner);
      core.last = std::max(core.last, partner);
    }
  };
  for (std::size_t i = first; i < last; ++i) {
    const Item& item = items[i];
    if ((item.kind == ItemKind::kOpen || item.kind == ItemKind::kClose) && item.partner == kNoPartner) {
      finish(i);
      begin = i + 1;
    } else if (item.is_visible) {
      if (!has_core) cores.push_back({i, i});
      has_core = true;
      cores.back().last = i;
    }
  }
  finish(last);
  for (Core& core : cores) include_ends(paragraph, last, core);
  return cores;
}

Segment* SegmentMaker::make(Paragraph& paragraph, const Core& core, bool is_plain) {
  paragraph_ = &paragraph;
  is_plain_ = is_plain;
  open_.clear();
  code_words_.clear();
  rest_.clear();
  open_groups_.clear();
  next_id_ = 1;
  const Item& first = paragraph.items[core.first];
  const auto inner = std::ranges::lower_bound(paragraph.inner, first.begin, std::less_equal(), &InnerSegment::end);
  next_inner_ = static_cast<std::size_t>(inner - paragraph.inner.begin());
  first_look_ = first.look;
  fallback_ = first.fallback;
  choose_text_look(core);
  builder_.start(first.line, first.column);
  for (std::size_t i = core.first; i <= core.last; ++i) {
    const Item& item = paragraph.items[i];
    switch (item.kind) {
      case ItemKind::kHidden:
        add_hidden(item);
        break;
      case ItemKind::kText:
        change_look(item.look);
        add_text(item);
        break;
      case ItemKind::kCode:
        add_code(item);
        break;
      case ItemKind::kOpen:
        close_other_looks(next_text_look(i, core.last));
        open_.push_back({open_.empty() ? text_look_ : open_.back().look, next_id_++, true, item.type, rest_.size(),
                         open_groups_.size()});
        builder_.begin_code(CodeKind::kOpen, item.type, {});
        add_bytes(item);
        builder_.end_code();
        break;
      case ItemKind::kClose:
        while (!open_.back().is_field) close_top();
        // What a field sets ends with it.
        rest_.resize(std::min(rest_.size(), open_.back().rest));
        open_groups_.resize(std::min(open_groups_.size(), open_.back().groups));
        open_.pop_back();
        builder_.begin_code(CodeKind::kClose, paragraph.items[item.partner].type, {});
        add_bytes(item);
        builder_.end_code();
        break;
    }
  }
  while (!open_.empty()) close_top();
  if (!builder_.has_text()) return nullptr;
  SegmentContext context;
  context.is_plain = is_plain;
  context.fallback = fallback_;
  context.font = paragraph.looks[first_look_].get(Property::kFont);
  context.colour = paragraph.looks[first_look_].get(Property::kColour);
  context.last_colour = paragraph.looks[paragraph.items[core.last].look].get(Property::kColour);
  context.text_words = words_for(text_look_);
  context.code_words = code_words_;
  context.rest = rest_;
  builder_.context(context.to_bytes());
  segment_ = builder_.finish();
  for (const NestedPlace& place : segment_.nested) paragraph.inner[place.segment].is_nested = true;
  return &segment_;
}

// The look of the first text does not count as formatting. A link at the beginning has a look of its own.
void SegmentMaker::choose_text_look(const Core& core) {
  text_look_ = next_text_look(core.first, core.last);
  std::size_t fields = 0;
  for (std::size_t i = core.first; i <= core.last; ++i) {
    const Item& item = paragraph_->items[i];
    if (item.kind == ItemKind::kOpen) ++fields;
    if (item.kind == ItemKind::kClose) --fields;
    if (item.kind != ItemKind::kText || fields != 0) continue;
    text_look_ = item.look;
    return;
  }
}

void SegmentMaker::add_hidden(const Item& item) {
  const std::string_view bytes = paragraph_->bytes_of(item);
  builder_.add_hidden(bytes);
  if (bytes.empty() || bytes.front() == '\r' || bytes.front() == '\n') return;
  if (bytes == "{") open_groups_.push_back(rest_.size());
  if (bytes == "}" && !open_groups_.empty()) {
    // What a group sets ends with it.
    rest_.resize(open_groups_.back());
    open_groups_.pop_back();
  } else if (!may_begin_destination(bytes)) {
    rest_ += bytes;
  }
}

void SegmentMaker::add_text(const Item& item) {
  TextReader reader(paragraph_->bytes_of(item), item.coding, item.fallback);
  unsigned fallback = item.fallback;
  for (TextUnit unit; reader.next(unit); fallback = reader.fallback()) {
    if (unit.kind == TextUnit::Kind::kNothing) {
      builder_.add_hidden(unit.bytes);
      continue;
    }
    // \u9 and \u10 are what \tab and \line are, and a translation is written with these.
    const bool is_tab = unit.text == "\t" || unit.bytes == "\t";
    const bool is_line = unit.text == "\n" || unit.text == "\r";
    if (!is_tab && !is_line && unit.kind != TextUnit::Kind::kInvalid) {
      builder_.add_text(unit.text, unit.bytes);
      continue;
    }
    // In another font, or with another number of bytes after \uN, these bytes might form a character.
    if (item.look != first_look_) code_words_[next_id_] = words_for(item.look);
    if (fallback != fallback_) code_words_[next_id_].append("\\uc").append(std::to_string(fallback));
    ++next_id_;
    if (is_tab || is_line)
      builder_.add_code(CodeKind::kStandalone, is_tab ? "x-tab" : "lb", {}, unit.bytes);
    else
      builder_.add_code(CodeKind::kStandalone, "x-byte", in_hexadecimal(unit.bytes), unit.bytes);
  }
  if (fallback != item.fallback) rest_.append("\\uc").append(std::to_string(fallback)).append(" ");
}

void SegmentMaker::add_code(const Item& item) {
  const std::size_t around = is_plain_ ? first_look_ : open_.empty() ? text_look_ : open_.back().look;
  if (item.has_look && !look_alike(item.look, around)) code_words_[next_id_] = words_for(item.look);
  if (item.has_look && item.fallback != fallback_)
    code_words_[next_id_].append("\\uc").append(std::to_string(item.fallback));
  ++next_id_;
  builder_.begin_code(CodeKind::kStandalone, item.type, item.shown, item.is_required);
  add_bytes(item);
  builder_.end_code();
}

// The bytes of a code, with the segments of the stories in it.
void SegmentMaker::add_bytes(const Item& item) {
  const std::string_view all = paragraph_->bytes;
  std::size_t at = item.begin;
  for (std::size_t i = next_inner_; i < paragraph_->inner.size(); ++i) {
    const InnerSegment& inner = paragraph_->inner[i];
    if (inner.begin >= item.end) break;
    next_inner_ = i + 1;
    if (inner.is_nested || inner.begin < at) continue;
    builder_.code_bytes(all.substr(at, inner.begin - at));
    builder_.nested(static_cast<std::uint32_t>(i), all.substr(inner.begin, inner.end - inner.begin));
    at = inner.end;
  }
  builder_.code_bytes(all.substr(at, item.end - at));
}

void SegmentMaker::change_look(std::size_t look) {
  if (is_plain_) return;
  close_other_looks(look);
  const std::size_t around = open_.empty() ? text_look_ : open_.back().look;
  if (look_alike(around, look)) return;
  const std::string_view type = type_of_change(around, look);
  code_words_[next_id_] = words_for(look);
  open_.push_back({look, next_id_++, false, type});
  builder_.add_code(CodeKind::kOpen, type, {}, {});
}

// Closes the formatting that a text of this look does not have. Formatting around a field stays.
void SegmentMaker::close_other_looks(std::size_t look) {
  while (!open_.empty() && !open_.back().is_field && !fits_in(open_.back().look, look)) close_top();
}

void SegmentMaker::close_top() {
  if (!open_.back().is_field) builder_.add_code(CodeKind::kClose, open_.back().type, {}, {});
  open_.pop_back();
}

std::size_t SegmentMaker::next_text_look(std::size_t item, std::size_t last) const {
  for (; item <= last; ++item)
    if (paragraph_->items[item].kind == ItemKind::kText) return paragraph_->items[item].look;
  return text_look_;
}

bool SegmentMaker::look_alike(std::size_t first, std::size_t second) const {
  if (first == second) return true;
  Look one = paragraph_->looks[first];
  const Look& two = paragraph_->looks[second];
  if (!same_font_(fonts_, one.get(Property::kFont), two.get(Property::kFont))) return false;
  one.set(Property::kFont, two.get(Property::kFont));
  return one == two;
}

// True when `inner` has every property in which `outer` differs from the look of the text.
bool SegmentMaker::fits_in(std::size_t outer, std::size_t inner) const {
  const Look& base = paragraph_->looks[text_look_];
  const Look& one = paragraph_->looks[outer];
  const Look& two = paragraph_->looks[inner];
  for (std::size_t i = 0; i < kPropertyCount; ++i) {
    const auto property = static_cast<Property>(i);
    const auto alike = [&](const Look& a, const Look& b) {
      const std::int32_t x = a.get(property);
      const std::int32_t y = b.get(property);
      return x == y || (property == Property::kFont && same_font_(fonts_, x, y));
    };
    if (!alike(one, base) && !alike(one, two)) return false;
  }
  return true;
}

std::string_view SegmentMaker::type_of_change(std::size_t from, std::size_t to) const {
  const Look& one = paragraph_->looks[from];
  const Look& two = paragraph_->looks[to];
  std::string_view type;
  for (std::size_t i = 0; i < kPropertyCount; ++i) {
    const auto property = static_cast<Property>(i);
    if (one.get(property) == two.get(property)) continue;
    type = type.empty() ? formatting_type(property) : kFormatting[4];
  }
  return type.empty() ? kFormatting[4] : type;
}

std::string SegmentMaker::words_for(std::size_t look) const {
  std::string words;
  append_change(paragraph_->looks[first_look_], paragraph_->looks[look], words);
  return words;
}

}  // namespace kavo::rtf
