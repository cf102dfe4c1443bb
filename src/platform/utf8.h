// UTF-8, character by character (Unicode Standard, table 3-7).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kavo {

// The length of the well-formed character at the start of `bytes`. 0 when there is none, or when it is cut short.
std::size_t utf8_character_length(std::string_view bytes);
// The code point of a well-formed character.
char32_t utf8_code_point(std::string_view character);
// A surrogate gets its three-byte (generalised UTF-8) form.
void append_utf8(std::string& utf8, char32_t code_point);

}  // namespace kavo
