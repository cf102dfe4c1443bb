#include "platform/utf8.h"

namespace kavo {

std::size_t utf8_character_length(std::string_view bytes) {
  if (bytes.empty()) return 0;
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const auto trail = [&](std::size_t i, unsigned low = 0x80, unsigned high = 0xBF) {
    return i < bytes.size() && byte(i) >= low && byte(i) <= high;
  };
  const unsigned lead = byte(0);
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return trail(1) ? 2 : 0;
  if (lead >= 0xE0 && lead <= 0xEF)
    return trail(1, lead == 0xE0 ? 0xA0 : 0x80, lead == 0xED ? 0x9F : 0xBF) && trail(2) ? 3 : 0;
  if (lead >= 0xF0 && lead <= 0xF4)
    return trail(1, lead == 0xF0 ? 0x90 : 0x80, lead == 0xF4 ? 0x8F : 0xBF) && trail(2) && trail(3) ? 4 : 0;
  return 0;
}

char32_t utf8_code_point(std::string_view character) {
  const auto bits = [&](std::size_t i, unsigned mask) {
    return static_cast<char32_t>(static_cast<unsigned char>(character[i]) & mask);
  };
  switch (character.size()) {
    case 1:
      return bits(0, 0x7F);
    case 2:
      return bits(0, 0x1F) << 6 | bits(1, 0x3F);
    case 3:
      return bits(0, 0x0F) << 12 | bits(1, 0x3F) << 6 | bits(2, 0x3F);
    default:
      return bits(0, 0x07) << 18 | bits(1, 0x3F) << 12 | bits(2, 0x3F) << 6 | bits(3, 0x3F);
  }
}

void append_utf8(std::string& utf8, char32_t code_point) {
  const auto put = [&](char32_t byte) { utf8 += static_cast<char>(static_cast<unsigned char>(byte)); };
  if (code_point < 0x80) {
    put(code_point);
  } else if (code_point < 0x800) {
    put(0xC0 | code_point >> 6);
    put(0x80 | (code_point & 0x3F));
  } else if (code_point < 0x10000) {
    put(0xE0 | code_point >> 12);
    put(0x80 | (code_point >> 6 & 0x3F));
    put(0x80 | (code_point & 0x3F));
  } else {
    put(0xF0 | code_point >> 18);
    put(0x80 | (code_point >> 12 & 0x3F));
    put(0x80 | (code_point >> 6 & 0x3F));
    put(0x80 | (code_point & 0x3F));
  }
}

}  // namespace kavo
