// Character references of HTML: "&eacute;", "&#233;", "&#xE9;".
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kavo::html {

struct Reference {
  // The reference's length in bytes; 0 when the "&" does not begin one.
  std::size_t length = 0;
  // The one or two characters that it means, UTF-8. "" when it looks like a reference but has no meaning here: a name
  // that only the document type declares, or the number of no character.
  std::string text;
};

// No valid reference is longer, so no more bytes after "&" are looked at.
inline constexpr std::size_t kLongestReference = 40;  // in bytes

// Reads the reference at the start of `bytes`, which begins with "&". By the HTML Standard some names need no
// semicolon. In an attribute such a name is text when a letter, a digit or "=" follows ("?a=1&copy=2").
Reference read_reference(std::string_view bytes, bool in_attribute);

}  // namespace kavo::html
