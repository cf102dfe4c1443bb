#include "suite/filters/html/html_extraction.h"

#include <algorithm>
#include <iterator>

#include "common/byte_scan.h"
#include "formats/html/charset.h"
#include "formats/html/entities.h"

namespace kavo::html {
namespace {

// The type of "br".
constexpr std::string_view kLineBreak = "lb";

// Where a paragraph that is too long is cut: behind the last blank that lies so near to its end.
constexpr std::size_t kCutReach = 4096;  // bytes

// Attributes that people read, and the element that they count in ("" for any).
struct ReadAttribute {
  std::string_view name;
  std::string_view element;
};
constexpr ReadAttribute kReadAttributes[] = {
    {"alt", ""},
    {"title", ""},
    {"placeholder", ""},
    {"aria-label", ""},
    {"aria-description", ""},
    {"aria-placeholder", ""},
    {"aria-roledescription", ""},
    {"aria-valuetext", ""},
    {"label", "option"},
    {"label", "optgroup"},
    {"label", "track"},
    {"label", "menu"},
    {"label", "menuitem"},
    {"summary", "table"},
    {"abbr", "th"},
    {"standby", "object"},
};
constexpr std::string_view kButtonTypes[] = {"submit", "button", "reset"};
// Values of "name" or "property" of a tag "meta" whose content people read.
constexpr std::string_view kReadMeta[] = {"description",    "keywords",      "og:title",
                                          "og:description", "twitter:title", "twitter:description"};

template <std::size_t kSize>
const std::string_view* find_name(const std::string_view (&names)[kSize], std::string_view name) {
  const auto* const found =
      std::find_if(std::begin(names), std::end(names), [&](std::string_view row) { return equal_name(row, name); });
  return found == std::end(names) ? nullptr : found;
}

bool has_line_end(std::string_view bytes) { return bytes.find_first_of("\r\n") != std::string_view::npos; }

bool breaks_text(const Element& element) {
  return element.kind != ElementKind::kInline && element.kind != ElementKind::kForeign;
}

// Whether an end tag follows.
bool has_content(const PageToken& tag, const Element& element) {
  return !element.is_void && !(element.kind == ElementKind::kForeign && tag.bytes.ends_with("/>"));
}

bool is_ascii(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

}  // namespace

PageExtraction::PageExtraction(BlockReader& document, unsigned code_page, ExtractionSink& sink)
    : document_(document),
      input_(document, code_page),
      coding_(code_page),
      window_coding_(coding_.is_utf16() ? kUtf8CodePage : code_page),
      scanner_(input_, window_coding_),
      text_(input_, window_coding_),
      sink_(sink),
      builder_(coding_),
      value_builder_(coding_) {}

void PageExtraction::run(ProgressEvent& progress) {
  std::uint64_t reported = 0;
  for (PageToken token; scanner_.next(token);) {
    if (document_.bytes_read() != reported) {
      reported = document_.bytes_read();
      progress.report(document_.percent());
    }
    switch (token.kind) {
      case TokenKind::kStartTag:
        start_tag(token);
        break;
      case TokenKind::kEndTag:
        end_tag(token);
        break;
      case TokenKind::kOverlong:
        flush();
        outside(token.bytes);
        break;
      default:
        if (protection_.is_active) {
          protected_bytes(token.bytes);
        } else if (token.kind == TokenKind::kText) {
          add_split(ItemKind::kText, token.bytes);
        } else if (token.kind == TokenKind::kRawText) {
          raw_text(token.bytes);
        } else if (token.kind == TokenKind::kServerCode) {
          add_item(ItemKind::kContent, token.bytes).is_server_code = true;
        } else if (const auto charset = charset_in_xml(token.bytes)) {
          flush();
          values_.push_back({charset->begin, charset->end, PlaceKind::kDouble, kCharset, ""});
          write_tag_outside(token.bytes, 0, 1);
          values_.clear();
        } else {
          add_item(ItemKind::kCode, token.bytes).type = "x-comment";
        }
    }
  }
  flush();
  sink_.skeleton(input_.odd_byte());
  progress.report(100);
}

void PageExtraction::start_tag(const PageToken& token) {
  const Element& element = find_element(token.name);
  if (protection_.is_active) {
    if (!ends_protection(element)) {
      if (equal_name(token.name, protection_.name) && has_content(token, element)) ++protection_.depth;
      protected_bytes(token.bytes);
      if (!protection_.is_foreign) enter_element(element);
      return;
    }
    protection_.is_active = false;
  }
  if (has_content(token, element) && (element.kind == ElementKind::kForeign || is_left_alone(token)))
    protect(token, element);
  else if (breaks_text(element))
    break_tag(token, element, true);
  else
    inline_tag(token, element, true);
}

void PageExtraction::end_tag(const PageToken& token) {
  const Element& element = find_element(token.name);
  if (protection_.is_active) {
    const bool is_its_own = equal_name(token.name, protection_.name);
    if (is_its_own || !ends_protection(element)) {
      protected_bytes(token.bytes);
      if (is_its_own && --protection_.depth == 0) protection_.is_active = false;
      return;
    }
    protection_.is_active = false;
  }
  if (breaks_text(element))
    break_tag(token, element, false);
  else
    inline_tag(token, element, false);
}

void PageExtraction::break_tag(const PageToken& token, const Element& element, bool is_start) {
  flush();
  if (is_start) find_values(token, element);
  write_tag_outside(token.bytes, 0, values_.size());
  values_.clear();
  is_in_text_area_ = is_start && element.kind == ElementKind::kTextArea;
  const bool holds_no_tags = element.kind == ElementKind::kPlainText || element.kind == ElementKind::kTitle;
  place_ = is_in_text_area_ || (is_start && holds_no_tags) ? PlaceKind::kContent : PlaceKind::kFlow;
  if (element.kind == ElementKind::kPreformatted) {
    if (is_start)
      ++preformatted_depth_;
    else if (preformatted_depth_ != 0)
      --preformatted_depth_;
  }
  if (is_start) enter_element(element);
}

void PageExtraction::enter_element(const Element& element) {
  if (element.kind == ElementKind::kTitle || element.kind == ElementKind::kTextArea)
    scanner_.enter_raw_text(element.name, true);
  if (element.kind == ElementKind::kScript) scanner_.enter_raw_text(element.name, false);
  if (element.kind == ElementKind::kRestOfPage) scanner_.enter_raw_text("", false);
}

void PageExtraction::inline_tag(const PageToken& token, const Element& element, bool is_start) {
  // First, since it may end the paragraph and with it the values that belong to it.
  Item& item = add_item(!is_start         ? ItemKind::kClose
                        : element.is_void ? ItemKind::kCode
                                          : ItemKind::kOpen,
                        token.bytes);
  item.element = &element;
  item.type = element.type;
  item.name_size = token.name.size();
  item.is_server_code = token.bytes.find('<', 1) != std::string_view::npos;
  item.first_value = values_.size();
  if (is_start) find_values(token, element);
  item.value_count = values_.size() - item.first_value;
  if (element.type != "link") return;
  const AttributeSpan* const address = attribute(token, "href");
  if (!is_start || !address) return;
  item.link = address->value;
  item.link_end = address->value_end;
}

void PageExtraction::protect(const PageToken& token, const Element& element) {
  if (breaks_text(element)) flush();
  protection_.is_active = true;
  protection_.is_inline = !breaks_text(element);
  protection_.is_foreign = element.kind == ElementKind::kForeign;
  protection_.name = token.name;
  protection_.depth = 1;
  protected_bytes(token.bytes);
  if (!protection_.is_foreign) enter_element(element);
}

// An inline element whose end tag is missing ends with its paragraph, as does a drawing at the first element that only
// a page can have.
bool PageExtraction::ends_protection(const Element& element) const {
  if (protection_.is_foreign) return element.kind == ElementKind::kBreak || element.kind == ElementKind::kPreformatted;
  return protection_.is_inline && breaks_text(element);
}

void PageExtraction::protected_bytes(std::string_view bytes) {
  if (protection_.is_inline)
    add_split(protection_.is_foreign ? ItemKind::kForeign : ItemKind::kContent, bytes);
  else
    outside(bytes);
}

bool PageExtraction::is_left_alone(const PageToken& token) const {
  return equal_name(attribute_value(token, "translate"), "no");
}

const AttributeSpan* PageExtraction::attribute(const PageToken& token, std::string_view name) const {
  for (const AttributeSpan& attribute : scanner_.attributes())
    if (equal_name(token.bytes.substr(attribute.name, attribute.name_end - attribute.name), name)) return &attribute;
  return nullptr;
}

std::string_view PageExtraction::attribute_value(const PageToken& token, std::string_view name) const {
  const AttributeSpan* const found = attribute(token, name);
  return found ? token.bytes.substr(found->value, found->value_end - found->value) : std::string_view();
}

void PageExtraction::find_values(const PageToken& token, const Element& element) {
  if (is_left_alone(token)) return;
  for (const AttributeSpan& attribute : scanner_.attributes()) {
    const std::string_view name = token.bytes.substr(attribute.name, attribute.name_end - attribute.name);
    const Span span = trimmed(token.bytes, attribute.value, attribute.value_end);
    Value value;
    value.begin = span.begin;
    value.end = span.end;
    value.place = attribute.quote == '"'    ? PlaceKind::kDouble
                  : attribute.quote == '\'' ? PlaceKind::kSingle
                                            : PlaceKind::kUnquoted;
    for (const ReadAttribute& row : kReadAttributes)
      if (equal_name(name, row.name) && (row.element.empty() || row.element == element.name))
        value.attribute = row.name;
    if (element.name == "input" && equal_name(name, "value") && find_name(kButtonTypes, attribute_value(token, "type")))
      value.attribute = "value";
    if (element.name == "meta" && equal_name(name, "content")) {
      if (find_name(kReadMeta, attribute_value(token, "name")) ||
          find_name(kReadMeta, attribute_value(token, "property")))
        value.attribute = "content";
      if (equal_name(attribute_value(token, "http-equiv"), "content-language")) value.computed = kLanguage;
    }
    if (element.name == "html" && (equal_name(name, "lang") || equal_name(name, "xml:lang")))
      value.computed = kLanguage;
    const bool is_text =
        !value.attribute.empty() && text_.is_visible_value(token.bytes.substr(value.begin, value.end - value.begin));
    if (is_text || value.computed != 0) values_.push_back(value);
  }
  if (element.name != "meta") return;
  if (const auto charset = charset_in_meta(token, scanner_.attributes()))
    values_.push_back({charset->begin, charset->end, PlaceKind::kDouble, kCharset, ""});
}

PageExtraction::Item& PageExtraction::add_item(ItemKind kind, std::string_view bytes) {
  if (paragraph_.size() + bytes.size() > kLongestParagraph) flush();
  Item& item = items_.emplace_back();
  item.kind = kind;
  item.begin = paragraph_.size();
  paragraph_ += bytes;
  item.end = paragraph_.size();
  return item;
}

// What may come in any pieces becomes one item, and the paragraph is cut where its length says, not where a piece ends.
void PageExtraction::add_split(ItemKind kind, std::string_view bytes) {
  while (!bytes.empty()) {
    const bool continues = !items_.empty() && items_.back().kind == kind && !items_.back().is_server_code;
    const std::string_view piece = bytes.substr(0, kLongestParagraph - paragraph_.size());
    bytes.remove_prefix(piece.size());
    if (continues) {
      paragraph_ += piece;
      items_.back().end = paragraph_.size();
    } else if (!piece.empty()) {
      add_item(kind, piece);
    }
    if (bytes.empty()) return;
    // Words, characters and references stay whole.
    std::string rest;
    if (!items_.empty() && items_.back().kind == kind) {
      Item& last = items_.back();
      const std::string_view text = bytes_of(last);
      std::size_t size = text.size() - window_coding_.incomplete_tail(text);
      if (kind == ItemKind::kText) {
        const std::string_view near = text.substr(text.size() - std::min(text.size(), kCutReach));
        const std::size_t blank = near.find_last_of(" \t\r\n");
        const std::size_t reference = text.rfind('&');
        if (blank != std::string_view::npos)
          size = text.size() - near.size() + blank + 1;
        else if (reference != std::string_view::npos && text.size() - reference <= kLongestReference)
          size = reference;
      }
      if (size != 0) {
        rest = text.substr(size);
        last.end = last.begin + size;
      }
    }
    flush();
    if (!rest.empty()) add_item(kind, rest);
  }
}

void PageExtraction::flush() {
  if (items_.empty()) return;
  pair_tags();
  std::size_t first = 0;
  std::size_t last = 0;
  const bool has_text = find_core(first, last);
  const std::size_t core = has_text ? first : items_.size();
  for (std::size_t i = 0; i < core; ++i) write_outside(items_[i]);
  if (has_text) {
    write_segment(first, last);
    for (std::size_t i = last + 1; i < items_.size(); ++i) write_outside(items_[i]);
  }
  paragraph_.clear();
  items_.clear();
  values_.clear();
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

// The items of the segment; false when there is no text.
bool PageExtraction::find_core(std::size_t& first, std::size_t& last) const {
  const auto is_text = [&](const Item& item) {
    return item.kind == ItemKind::kText && text_.is_visible(bytes_of(item), false);
  };
  first = 0;
  while (first < items_.size() && !is_text(items_[first])) ++first;
  if (first == items_.size()) return false;
  last = items_.size() - 1;
  while (!is_text(items_[last])) --last;

  // Server code on the line of the text is a part of the sentence ("<%=n%> files"); on a line of its own it controls
  // what the page shows.
  const std::string_view first_text = bytes_of(items_[first]);
  if (!has_line_end(first_text.substr(0, leading_space(first_text)))) {
    for (std::size_t i = first; i-- > 0;) {
      if (has_line_end(bytes_of(items_[i])) || items_[i].type == kLineBreak) break;
      if (items_[i].kind == ItemKind::kContent) first = i;
    }
  }
  const std::string_view last_text = bytes_of(items_[last]);
  if (!has_line_end(last_text.substr(last_text.size() - trailing_space(last_text)))) {
    for (std::size_t i = last + 1; i < items_.size(); ++i) {
      if (has_line_end(bytes_of(items_[i])) || items_[i].type == kLineBreak) break;
      if (items_[i].kind == ItemKind::kContent) last = i;
    }
  }

  include_partners(items_, first, last);
  return true;
}

void PageExtraction::write_segment(std::size_t first, std::size_t last) {
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
  sink_.segment(builder_.finish());
  outside(all.substr(end, trailing));
}

void PageExtraction::write_code(const Item& item) {
  const std::string_view bytes = bytes_of(item);
  if (item.kind == ItemKind::kContent && item.is_server_code) {
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
  // XLIFF calls only a pair bold or a link.
  if (item.element && !item.element->is_void && kind == CodeKind::kStandalone) type = "x-html-tag";
  const std::string shown = kind == CodeKind::kStandalone ? text_.shown(bytes) : std::string();
  builder_.begin_code(kind, type, shown, is_content || item.is_server_code);
  if (kind == CodeKind::kOpen) builder_.equivalent(meaning_of(item));
  std::size_t at = 0;
  const auto code_bytes = [&](std::size_t end) {
    builder_.code_bytes(input_.original(bytes.substr(at, end - at)));
    advance(bytes.substr(at, end - at));
    at = end;
  };
  for (std::size_t i = 0; i < item.value_count; ++i) {
    const Value& value = values_[item.first_value + i];
    code_bytes(value.begin);
    const std::string_view text = bytes.substr(value.begin, value.end - value.begin);
    value_builder_.start(position_.line(), position_.column());
    value_builder_.context(to_context({value.place, {}}));
    value_builder_.note(value.attribute);
    text_.add_value(value_builder_, text, {value.place, {}});
    builder_.nested(sink_.nested_segment(value_builder_.finish()), input_.original(text));
    advance(text);
    at = value.end;
  }
  code_bytes(bytes.size());
  builder_.end_code();
}

// A link is its address, any other tag its name.
std::string PageExtraction::meaning_of(const Item& item) const {
  if (item.link_end != 0) return text_.shown(bytes_of(item).substr(item.link, item.link_end - item.link));
  return "<" + text_.shown(bytes_of(item).substr(1, item.name_size)) + ">";
}

void PageExtraction::write_outside(const Item& item) {
  write_tag_outside(bytes_of(item), item.first_value, item.value_count);
}

void PageExtraction::write_tag_outside(std::string_view tag, std::size_t first_value, std::size_t value_count) {
  std::size_t at = 0;
  for (std::size_t i = first_value; i < first_value + value_count; ++i) {
    const Value& value = values_[i];
    if (value.begin < at) continue;  // one attribute that declares the coding and is read, too
    outside(tag.substr(at, value.begin - at));
    const std::string_view bytes = tag.substr(value.begin, value.end - value.begin);
    if (value.computed != 0) {
      sink_.computed(value.computed, input_.original(bytes));
    } else {
      value_builder_.start(position_.line(), position_.column());
      value_builder_.context(to_context({value.place, {}}));
      value_builder_.note(value.attribute);
      text_.add_value(value_builder_, bytes, {value.place, {}});
      sink_.segment(value_builder_.finish());
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
