// Says how the lines of a paragraph are joined, and where a translation may be broken so that joining its lines gives
// the same text again.
#pragma once

#include <string_view>

namespace kavo {

// True when a line that ends in `before` and one that begins with `after` (code points) join without a blank: Chinese
// and Japanese, and a word that was broken after its own hyphen.
bool joins_without_blank(char32_t before_last, char32_t last, char32_t after);

// The length of the bullet or number of a list entry, with the blanks after it ("- ", "12. ", "(b) "), in bytes of
// UTF-8; 0 for none.
std::size_t bullet_length(std::string_view text);

}  // namespace kavo
