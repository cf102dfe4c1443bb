#include "suite/filters/html/html_page_text.h"

#include <algorithm>

#include "formats/html/elements.h"
#include "formats/html/entities.h"
#include "formats/html/script_marker.h"
#include "formats/html/tokens.h"

namespace kavo::html {
namespace {

// How many bytes of a code are shown.
constexpr std::size_t kMostShown = 240;

bool is_space_text(std::string_view text) { return text.size() == 1 && is_html_space(text.front()); }

// Hands out the parts of a value in order: runs of text and server code.
template <class OnText, class OnCode>
void for_each_part(std::string_view value, OnText on_text, OnCode on_code) {
  std::size_t begin = 0;
  for (std::size_t at = value.find('<'); at != std::string_view::npos; at = value.find('<', at)) {
    const std::size_t length = server_code_length(value.substr(at));
    if (length == 0) {
      ++at;
      continue;
    }
    if (at > begin) on_text(value.substr(begin, at - begin));
    on_code(value.substr(at, length));
    begin = at += length;
  }
  if (begin < value.size()) on_text(value.substr(begin));
}

}  // namespace

std::size_t leading_space(std::string_view text, bool counts_references) {
  std::size_t at = 0;
  while (at < text.size()) {
    if (is_html_space(text[at])) {
      ++at;
      continue;
    }
    if (text[at] != '&' || !counts_references) break;
    const Reference reference = read_reference(text.substr(at), false);
    if (!is_space_text(reference.text)) break;
    at += reference.length;
  }
  return at;
}

std::size_t trailing_space(std::string_view text) {
  std::size_t end = text.size();
  while (end != 0) {
    if (is_html_space(text[end - 1])) {
      --end;
      continue;
    }
    const std::string_view near = text.substr(end - std::min(end, kLongestReference), std::min(end, kLongestReference));
    const std::size_t last = near.rfind('&');
    if (last == std::string_view::npos) break;
    const Reference reference = read_reference(near.substr(last), false);
    if (!is_space_text(reference.text) || last + reference.length != near.size()) break;
    end -= reference.length;
  }
  return text.size() - end;
}

void PageText::add(SegmentBuilder& builder, std::string_view bytes, const TextPlace& place) {
  std::size_t done = 0;
  for (std::size_t from = 0;;) {
    const PatternMatch next = patterns_.find(bytes, from);
    if (next.size == 0) break;
    from = next.begin + 1;
    // A byte that is the second one of a character does not begin a pattern.
    if (coding_.incomplete_tail(bytes.substr(done, next.begin - done)) != 0) continue;
    if (next.begin > done) add_plain(builder, bytes.substr(done, next.begin - done), place);
    from = done = next.begin + next.size;
    const std::string_view code = bytes.substr(next.begin, next.size);
    builder.add_code(CodeKind::kStandalone, next.type, shown(code), input_.original(code));
  }
  if (done < bytes.size()) add_plain(builder, bytes.substr(done), place);
}

void PageText::look_for_words(std::string_view bytes) {
  const auto is_letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  has_words_ = has_words_ || std::ranges::any_of(bytes, is_letter) || has_letter(decoded(bytes));
}

void PageText::add_plain(SegmentBuilder& builder, std::string_view bytes, const TextPlace& place) {
  std::size_t plain = 0;  // where the run begins that needs no change
  std::size_t at = 0;
  const auto flush = [&] {
    if (at == plain) return;
    look_for_words(bytes.substr(plain, at - plain));
    builder.add_text(input_.original(bytes.substr(plain, at - plain)));
  };
  while (at < bytes.size()) {
    const char c = bytes[at];
    if (static_cast<unsigned char>(c) > ' ' && c != '&') {
      ++at;
      continue;
    }
    Reference reference;
    if (c == '&') {
      reference = read_reference(bytes.substr(at), place.is_attribute());
      if (reference.length == 0) {
        ++at;
        continue;
      }
    }
    // In an attribute, a line end written as a reference is a real line end. Elsewhere it is white space like any
    // other.
    const bool is_space = is_html_space(c) || (is_space_text(reference.text) && !place.is_attribute());
    if (!is_space || place.keeps_space()) {
      const std::size_t length = c != '&' ? 1 : reference.length;
      if (c == '&') {
        flush();
        add_reference(builder, bytes.substr(at, length), reference.text);
        plain = at += length;
      } else if (c == '\r') {
        flush();
        const std::size_t line_end = at + 1 < bytes.size() && bytes[at + 1] == '\n' ? 2 : 1;
        builder.add_text("\n", input_.original(bytes.substr(at, line_end)));
        plain = at += line_end;
      } else {
        at += length;
      }
      continue;
    }
    const std::size_t end = at + leading_space(bytes.substr(at), !place.is_attribute());
    if (c == ' ' && end == at + 1) {
      at = end;
      continue;
    }
    flush();
    builder.add_text(" ", input_.original(bytes.substr(at, end - at)));
    plain = at = end;
  }
  flush();
}

void PageText::add_reference(SegmentBuilder& builder, std::string_view bytes, const std::string& text) {
  if (text.empty())
    builder.add_code(CodeKind::kStandalone, "x-entity", bytes, input_.original(bytes));
  else
    builder.add_text(text, input_.original(bytes));
  has_words_ = has_words_ || has_letter(text);
}

void PageText::add_value(SegmentBuilder& builder, std::string_view bytes, const TextPlace& place) {
  for_each_part(
      bytes, [&](std::string_view text) { add(builder, text, place); },
      [&](std::string_view code) { add_server_code(builder, code); });
}

void PageText::add_server_code(SegmentBuilder& builder, std::string_view bytes) {
  builder.add_code(CodeKind::kStandalone, "x-script", shown(bytes), input_.original(bytes), true);
  builder.equivalent(shown(scripts_.meaning(placeholder::unwrapped(bytes))));
}

std::string PageText::shown(std::string_view bytes) const { return decoded(bytes.substr(0, kMostShown)); }

std::string PageText::decoded(std::string_view bytes) const {
  std::string text;
  while (!bytes.empty()) {
    bytes.remove_prefix(coding_.decode_run(bytes, text));
    if (bytes.empty()) break;
    text += '?';
    bytes.remove_prefix(1);
  }
  return text;
}

std::string PageText::shown_value(std::string_view bytes) const {
  std::string text;
  for_each_part(
      bytes, [&](std::string_view part) { text += shown(part); },
      [&](std::string_view code) {
        const std::string meaning = scripts_.meaning(code);
        text += shown(meaning.empty() ? code : meaning);
      });
  return text;
}

bool PageText::is_visible(std::string_view bytes, bool is_attribute) const {
  constexpr std::string_view no_break_space = "\xC2\xA0";
  std::string character;
  for (std::size_t at = 0; at < bytes.size();) {
    const char c = bytes[at];
    std::size_t length = 1;
    bool is_valid = true;
    character.clear();
    if (c == '&') {
      Reference reference = read_reference(bytes.substr(at), is_attribute);
      if (reference.length == 0) return true;
      length = reference.length;
      character = std::move(reference.text);
      is_valid = !character.empty();
    } else {
      length = coding_.decode_one(bytes.substr(at), character, is_valid);
    }
    at += length;
    if (is_valid && is_xml_character(utf8_code_point(character)) && !is_space_text(character) &&
        character != no_break_space)
      return true;
  }
  return false;
}

bool PageText::is_visible_value(std::string_view bytes) const {
  bool is = false;
  for_each_part(
      bytes, [&](std::string_view text) { is = is || is_visible(text, true); }, [](std::string_view) {});
  return is;
}

}  // namespace kavo::html
