// The elements and attributes of HTML as a translator meets them: what breaks a text, what stands in it, what holds
// text.
#pragma once

#include <string_view>

namespace kavo::html {

enum class ElementKind : char {
  kInline,  // stands inside a text, where it becomes a code
  kBreak,   // ends the text before it
  kPreformatted,
  kPlainText,   // a break; holds text without tags, which no other markup may enter
  kTitle,       // the same, and a "<" is text there
  kTextArea,    // the same, preformatted
  kScript,      // a break; holds nothing to translate, up to its end tag
  kRestOfPage,  // a break; the rest of the page is nothing to translate
  kForeign,     // inline; holds another language of markup, which is left alone
};

struct Element {
  std::string_view name;  // small letters
  ElementKind kind;
  bool is_void;           // has no end tag
  std::string_view type;  // XLIFF ctype of an inline element's codes
};

// Finds a row by name, in letters of any case. Browsers treat an unknown element as inline, and so does this.
const Element& find_element(std::string_view name);

// True when the names are equal without regard to the case of ASCII letters.
bool equal_name(std::string_view a, std::string_view b);

inline bool is_html_space(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r' || c == '\f'; }

}  // namespace kavo::html
