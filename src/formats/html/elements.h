// The elements of HTML as translation sees them: which end a text, which are inside a text, which contain text.
#pragma once

#include <string_view>

namespace kavo::html {

enum class ElementKind : char {
  kInline,  // is part of a text, as a code
  kBreak,   // ends the text before it
  kPreformatted,
  kPlainText,   // a break; contains text without tags
  kTitle,       // the same, and a "<" in it is text
  kTextArea,    // the same, preformatted
  kScript,      // a break; nothing to translate up to its end tag
  kRestOfPage,  // a break; nothing to translate in the rest of the page
  kForeign,     // inline; contains markup of another language, which is left alone
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
