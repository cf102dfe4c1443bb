#include "suite/document/word_count.h"

#include <algorithm>

#include "formats/text/text_coding.h"

namespace kavo {
namespace {

bool is_space(char32_t c) { return c <= ' ' || c == 0xA0 || (c >= 0x2000 && c <= 0x200B) || c == 0x3000; }

bool is_word_of_its_own(char32_t c) {
  return (c >= 0x3040 && c <= 0x30FF) || (c >= 0x3400 && c <= 0x9FFF) || (c >= 0xF900 && c <= 0xFAFF) ||
         (c >= 0x20000 && c <= 0x3FFFF);
}

bool is_letter_or_digit(char32_t c) {
  if (c < 0x80) return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
  const bool is_sign =
      c < 0xC0 || c == 0xD7 || c == 0xF7 || (c >= 0x2010 && c <= 0x2BFF) || (c >= 0x3001 && c <= 0x303F);
  return !is_sign;
}

}  // namespace

std::uint64_t word_count(std::string_view text) {
  std::uint64_t words = 0;
  bool counted = false;  // the run being read
  while (!text.empty()) {
    const std::size_t length = std::max<std::size_t>(utf8_character_length(text), 1);
    const char32_t c = length == 1 ? static_cast<unsigned char>(text.front()) : utf8_code_point(text.substr(0, length));
    text.remove_prefix(length);
    if (is_space(c)) {
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
