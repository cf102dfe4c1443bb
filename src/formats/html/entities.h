// Character references of HTML: "&eacute;", "&#233;", "&#xE9;".
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kavo::html {

struct Reference {
  // Bytes of the reference; 0 when the "&" is just that.
  std::size_t length = 0;
  // The one or two characters that it means, UTF-8. "" for one that looks like a reference and means nothing here: a name of the
  // document type's own, a number that no character has.
  std::string text;
};

// No reference that means something is longer. What comes after "&" is looked at no further.
inline constexpr std::size_t kLongestReference = 40;  // bytes

// Reads the reference at the start of `bytes`, which begins with "&". By the HTML Standard some names need no
// semicolon, but in an attribute such a name is text when it goes on ("?a=1&copy=2").
Reference read_reference(std::string_view bytes, bool in_attribute);

}  // namespace kavo::html
