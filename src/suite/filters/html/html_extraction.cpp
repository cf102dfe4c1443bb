#include "suite/filters/html/html_extraction.h"

#include <algorithm>

#include "common/byte_scan.h"
#include "formats/html/charset.h"
#include "formats/html/entities.h"
#include "formats/script/language.h"
#include "platform/trimmed.h"
#include "platform/unicode.h"
#include "platform/wildcard.h"
#include "suite/filters/document_facts.h"

namespace kavo::html {
namespace {

// A paragraph that is too long is cut after the last blank, if that is so near to its end.
constexpr std::size_t kCutReach = 4096;  // bytes

// Nobody reads a longer comment as a note.
constexpr std::size_t kLongestNote = 1024;  // bytes

// Elements of a drawing whose text people read.
constexpr std::string_view kForeignTexts[] = {"text", "tspan", "textpath", "title", "desc"};

bool breaks_text(const Element& element) {
  return element.kind != ElementKind::kInline && element.kind != ElementKind::kForeign;
}

// True when an end tag follows.
bool has_content(const PageToken& tag, const Element& element) {
  return !element.is_void && !(element.kind == ElementKind::kForeign && tag.bytes.ends_with("/>"));
}

}  // namespace

PageExtraction::PageExtraction(BlockReader& document, unsigned code_page, const ConversionSettings& settings,
                               ExtractionSink& sink)
    : document_(document),
      input_(document, code_page),
      coding_(code_page),
      window_coding_(coding_.is_utf16() ? kUtf8CodePage : code_page),
      patterns_(option_items(settings.options, "html.code-patterns")),
      scanner_(input_, window_coding_),
      scripts_(settings, window_coding_),
      text_(input_, window_coding_, scripts_, patterns_),
      sink_(sink),
      builder_(coding_),
      value_builder_(coding_),
      attributes_(settings.options),
      embedded_(settings, window_coding_),
      author_lines_(fact(settings.options, kAuthorLines)),
      elements_(settings.options),
      opens_codes_(is_on(settings.options, "html.open-codes")) {
  for (const std::string& pattern : option_items(settings.options, "html.note-comments"))
    note_comments_.push_back(to_utf16(pattern));
}

void PageExtraction::run(ProgressEvent& progress) {
  std::uint64_t reported = 0;
  for (PageToken token; scanner_.next(token);) {
    if (document_.bytes_read() != reported) {
      reported = document_.bytes_read();
      progress.report(document_.percent());
    }
    token_scripts_ = scripts_.reached();
    if (items_.empty()) scripts_.forget(token_scripts_);
    if (!unended_php_.empty()) {
      rest_of_php(token);
      continue;
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
          if (token.kind == TokenKind::kText && in_foreign_text_)
            foreign_text(token.bytes);
          else
            protected_bytes(token.bytes);
        } else if (token.kind == TokenKind::kText) {
          add_split(ItemKind::kText, token.bytes);
        } else if (token.kind == TokenKind::kRawText) {
          raw_text(token.bytes);
        } else if (token.kind == TokenKind::kServerCode) {
          server_code(token.bytes);
        } else if (const auto charset = charset_in_xml(token.bytes)) {
          flush();
          values_.push_back({charset->begin, charset->end, PlaceKind::kDouble, kCharset, ""});
          write_tag_outside(token.bytes, 0, 1);
          values_.clear();
        } else {
          comment(token);
        }
    }
  }
  flush();
  sink_.skeleton(input_.odd_byte());
  progress.report(100);
}

void PageExtraction::comment(const PageToken& token) {
  add_item(ItemKind::kCode, token.bytes).type = "x-comment";
  const std::string text = text_.decoded(token.bytes.substr(0, kLongestNote));
  if (becomes_note(text)) surroundings_.comment(text);
}

// `comment` in UTF-8, with its "<!--" and "-->".
bool PageExtraction::becomes_note(std::string_view comment) const {
  constexpr std::string_view kOpen = "<!--", kClose = "-->", kBlanks = " \t\r\n";
  if (note_comments_.empty()) return true;
  if (comment.size() < kOpen.size() + kClose.size()) return false;
  comment.remove_prefix(kOpen.size());
  comment.remove_suffix(kClose.size());
  const std::u16string text = to_utf16(kavo::trimmed(comment, kBlanks));
  return std::ranges::any_of(note_comments_, [&](const auto& pattern) { return matches_wildcard(text, pattern); });
}

void PageExtraction::start_tag(const PageToken& token) {
  const Element& element = elements_.find(token.name);
  const StartTag tag = start_tag_of(token, element);
  if (protection_.is_active && suspends_protection(tag)) {
    suspended_.push_back({protection_, std::string(token.name), 0});
    protection_.is_active = false;
  }
  if (protection_.is_active) {
    in_foreign_text_ = protection_.is_foreign && !token.bytes.ends_with("/>") &&
                       std::ranges::any_of(kForeignTexts, [&](auto row) { return equal_name(row, token.name); });
    if (!ends_protection(element)) {
      if (equal_name(token.name, protection_.name) && has_content(token, element)) ++protection_.depth;
      protected_bytes(token.bytes);
      if (!protection_.is_foreign) enter_element(element);
      return;
    }
    protection_.is_active = false;
  }
  const bool holds_content = has_content(token, element);
  if (holds_content && (element.kind == ElementKind::kForeign || elements_.is_left_alone(tag))) {
    protect(token, element);
    return;
  }
  if (!suspended_.empty() && holds_content && equal_name(token.name, suspended_.back().name)) ++suspended_.back().depth;
  if (breaks_text(element))
    break_tag(token, element, true);
  else
    inline_tag(token, element, true);
}

void PageExtraction::end_tag(const PageToken& token) {
  const Element& element = elements_.find(token.name);
  in_foreign_text_ = false;
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
  return_to_protection(token);
}

void PageExtraction::break_tag(const PageToken& token, const Element& element, bool is_start) {
  flush(is_start ? nullptr : &element);
  if (is_start) {
    const StartTag tag = start_tag_of(token, element);
    surroundings_.start(element, text_.decoded(tag.value("id")));
    find_values(tag);
  } else {
    surroundings_.end(element);
  }
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
  // This comes first, since it may end the paragraph and with it the values that belong to the paragraph.
  Item& item = add_item(!is_start         ? ItemKind::kClose
                        : element.is_void ? ItemKind::kCode
                                          : ItemKind::kOpen,
                        token.bytes);
  item.element = &element;
  item.type = element.type;
  item.name_size = token.name.size();
  item.is_server_code = token.bytes.find('<', 1) != std::string_view::npos;
  item.first_value = values_.size();
  if (!is_start) return;
  const StartTag tag = start_tag_of(token, element);
  find_values(tag);
  item.value_count = values_.size() - item.first_value;
  if (const AttributeSpan* const id = tag.find("id")) item.id = {id->value, id->value_end};
  if (element.type != "link") return;
  if (const AttributeSpan* const address = tag.find("href")) item.link = {address->value, address->value_end};
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

// An inline element whose end tag is missing ends with its paragraph. A drawing ends at the first element that only a
// page can have.
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

// True for an element inside an untranslated one that the page or the user declares translated.
bool PageExtraction::suspends_protection(const StartTag& tag) const {
  constexpr std::size_t kMostSuspended = 64;
  return !protection_.is_foreign && has_content(tag.token, tag.element) && elements_.is_translated(tag) &&
         suspended_.size() < kMostSuspended;
}

// Resumes the protection when the element that was translated in spite of it ends.
void PageExtraction::return_to_protection(const PageToken& token) {
  if (suspended_.empty() || !equal_name(token.name, suspended_.back().name)) return;
  if (--suspended_.back().depth != 0) return;
  if (!suspended_.back().protection.is_inline) flush();
  protection_ = std::move(suspended_.back().protection);
  suspended_.pop_back();
}

// A text in a drawing is inside the drawing's code, as an attribute's value is inside a tag.
void PageExtraction::foreign_text(std::string_view bytes) {
  const bool fits = paragraph_.size() + bytes.size() <= kLongestParagraph;
  protected_bytes(bytes);
  if (!fits || !protection_.is_inline || items_.empty()) return;
  Item& item = items_.back();
  const std::size_t end = item.end - item.begin;
  const std::size_t begin = end - bytes.size();
  // The text may come in several pieces.
  if (item.value_count != 0 && values_.back().end == begin) {
    values_.back().end = end;
    return;
  }
  if (item.value_count == 0) item.first_value = values_.size();
  values_.push_back({begin, end, PlaceKind::kContent, 0, {}});
  ++item.value_count;
}

void PageExtraction::find_values(const StartTag& tag) {
  if (elements_.is_left_alone(tag)) return;
  const PageToken& token = tag.token;
  const std::string_view element = tag.element.name;
  const bool is_basic = script::language_of_name(tag.value("language")) == script::Language::kVbScript;
  for (const AttributeSpan& attribute : tag.attributes) {
    const std::string_view name = token.bytes.substr(attribute.name, attribute.name_end - attribute.name);
    const Span span = trimmed(token.bytes, attribute.value, attribute.value_end);
    Value value;
    value.begin = span.begin;
    value.end = span.end;
    value.place = attribute.quote == '"'    ? PlaceKind::kDouble
                  : attribute.quote == '\'' ? PlaceKind::kSingle
                                            : PlaceKind::kUnquoted;
    value.attribute = attributes_.read_name(tag, attribute);
    // A value that a script writes is left to the script.
    const std::string_view bytes = token.bytes.substr(value.begin, value.end - value.begin);
    const bool is_language =
        (element == "meta" && equal_name(name, "content") && equal_name(tag.value("http-equiv"), "content-language")) ||
        (element == "html" && (equal_name(name, "lang") || equal_name(name, "xml:lang")));
    if (is_language && bytes.find('<') == std::string_view::npos) value.computed = kLanguage;
    const bool is_text = !value.attribute.empty() && text_.is_visible_value(bytes);
    if (is_text || value.computed != 0)
      values_.push_back(value);
    else
      add_embedded(embedded_.of_attribute(token.bytes, attribute, is_basic));
  }
  if (element != "meta") return;
  const auto charset = charset_in_meta(token, tag.attributes);
  if (charset && token.bytes.substr(charset->begin, charset->end - charset->begin).find('<') == std::string_view::npos)
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

// Joins pieces of the same kind into one item. So the paragraph is cut where its length requires it, not where a piece
// ends.
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

}  // namespace kavo::html
