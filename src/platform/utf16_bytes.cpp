#include "platform/utf16_bytes.h"

#include <cstddef>

namespace kavo {

void append_utf16_bytes(std::string& bytes, std::u16string_view text) {
  for (const char16_t unit : text) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
}

std::u16string from_utf16_bytes(std::string_view bytes) {
  std::u16string text;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
    text += static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) | static_cast<unsigned char>(bytes[i + 1]) << 8);
  return text;
}

}  // namespace kavo
