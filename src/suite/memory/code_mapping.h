// Moves a translation's codes from the text for which it was made to another one.
//
// The old and the new text may number their codes differently. In between, the codes of a text have the numbers 1, 2, 3
// in the order in which they begin in the source text ("plain numbers"), so that equal texts are equal byte for byte.
#pragma once

#include <string>
#include <string_view>

namespace kavo {

// A source text and its translation, both with plain numbers. A code of the translation that the source does not have
// is left out.
struct PlainPair {
  std::string source;
  std::string target;
};
PlainPair with_plain_numbers(std::string_view source, std::string_view target);

// Whether both have the same number and kinds of codes in the same order.
bool has_same_codes(std::string_view source, std::string_view other);

// A translation with plain numbers, with the codes of `source` in their place: the first for 1 and so on.
std::string with_codes_of(std::string_view source, std::string_view plain_target);

}  // namespace kavo
