// What the filter knows about the elements and attributes of HTML.
#pragma once

#include <string_view>

namespace kavo::html {

enum class ElementKind : char {
  kInline,  // stands in a text, as a code
  kBreak,   // ends the text before it
  kPreformatted,
  kPlainText,   // a break; holds text without tags, which no other markup may enter
  kTitle,       // the same, and a "<" is text there
  kTextArea,    // the same, preformatted
  kScript,      // a break; holds nothing to translate, up to its end tag
  kRestOfPage,  // the same, up to the end of the page
  kForeign,     // inline; holds another language of markup, which is left alone
};

struct Element {
  std::string_view name;  // small letters
  ElementKind kind;
  bool is_void;           // has no end tag
  std::string_view type;  // XLIFF ctype of an inline element's codes
};

// By name in any case; an unknown element is inline, as browsers take it.
const Element& find_element(std::string_view name);

// Equal when ASCII letters are compared without case.
bool equal_name(std::string_view a, std::string_view b);

inline bool is_html_space(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r' || c == '\f'; }

}  // namespace kavo::html
