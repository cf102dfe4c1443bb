#include "suite/document/base64.h"

namespace kavo {
namespace {

constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

int digit_of(char c) {
  if (c >= 'A' && c <= 'Z') return c - 'A';
  if (c >= 'a' && c <= 'z') return c - 'a' + 26;
  if (c >= '0' && c <= '9') return c - '0' + 52;
  return c == '+' ? 62 : c == '/' ? 63 : -1;
}

void append_digits(std::string& text, std::uint32_t bits, int count) {
  for (int i = 0; i < count; ++i) text += kDigits[bits >> (18 - 6 * i) & 63];
}

}  // namespace

void Base64Encoder::encode(std::string_view bytes, std::string& text) {
  for (const char byte : bytes) {
    bits_ = bits_ << 8 | static_cast<unsigned char>(byte);
    if (++count_ < 3) continue;
    append_digits(text, bits_, 4);
    bits_ = 0;
    count_ = 0;
  }
}

void Base64Encoder::finish(std::string& text) {
  if (count_ == 0) return;
  append_digits(text, bits_ << (8 * (3 - count_)), count_ + 1);
  text.append(static_cast<std::size_t>(3 - count_), '=');
  count_ = 0;
}

void Base64Decoder::decode(std::string_view text, std::string& bytes) {
  for (const char c : text) {
    const int digit = digit_of(c);
    if (digit < 0) continue;
    bits_ = (bits_ << 6 | static_cast<std::uint32_t>(digit)) & 0xFFFFFF;
    count_ += 6;
    if (count_ < 8) continue;
    count_ -= 8;
    bytes += static_cast<char>(bits_ >> count_ & 0xFF);
  }
}

}  // namespace kavo
