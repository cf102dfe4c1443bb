#include "suite/document/word_count.h"

#include <algorithm>

#include "formats/text/text_coding.h"
#include "suite/document/word_characters.h"

namespace kavo {

std::uint64_t word_count(std::string_view text) {
  std::uint64_t words = 0;
  bool counted = false;  // the run being read
  while (!text.empty()) {
    const std::size_t length = std::max<std::size_t>(utf8_character_length(text), 1);
    const char32_t c = length == 1 ? static_cast<unsigned char>(text.front()) : utf8_code_point(text.substr(0, length));
    text.remove_prefix(length);
    if (is_word_space(c)) {
      counted = false;
    } else if (is_word_of_its_own(c)) {
      ++words;
      counted = false;
    } else if (!counted && is_letter_or_digit(c)) {
      ++words;
      counted = true;
    }
  }
  return words;
}

}  // namespace kavo
