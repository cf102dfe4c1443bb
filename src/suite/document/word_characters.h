// Says which characters form words when texts are counted or compared.
#pragma once

namespace kavo {

inline bool is_word_space(char32_t c) { return c <= ' ' || c == 0xA0 || (c >= 0x2000 && c <= 0x200B) || c == 0x3000; }

// Ideographs, Hiragana, Katakana.
inline bool is_word_of_its_own(char32_t c) {
  return (c >= 0x3040 && c <= 0x30FF) || (c >= 0x3400 && c <= 0x9FFF) || (c >= 0xF900 && c <= 0xFAFF) ||
         (c >= 0x20000 && c <= 0x3FFFF);
}

inline bool is_word_digit(char32_t c) { return c >= '0' && c <= '9'; }

inline bool is_letter_or_digit(char32_t c) {
  if (c < 0x80) return is_word_digit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
  const bool is_sign =
      c < 0xC0 || c == 0xD7 || c == 0xF7 || (c >= 0x2010 && c <= 0x2BFF) || (c >= 0x3001 && c <= 0x303F);
  return !is_sign;
}

}  // namespace kavo
