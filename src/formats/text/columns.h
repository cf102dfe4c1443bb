// Measures a text in columns of a fixed-width font, and says where its lines may end.
#pragma once

#include <cstddef>
#include <string_view>

namespace kavo {

// The width of one character: 0 for a combining mark, 2 for an East Asian wide character (Unicode Standard Annex #11),
// otherwise 1. A tab counts as 1 here, because its width depends on its place.
std::size_t columns_of(char32_t code_point);
// The width of a UTF-8 text that begins at `column` (from 0). A tab reaches the next multiple of 8. An invalid byte
// counts as 1.
std::size_t columns_of(std::string_view utf8, std::size_t column = 0);

// True for scripts without blanks between words, which may break between any two characters: Chinese, Japanese.
bool is_unspaced(char32_t code_point);
// Punctuation that never begins a line in those scripts, and punctuation that never ends one.
bool is_closing(char32_t code_point);
bool is_opening(char32_t code_point);

}  // namespace kavo
