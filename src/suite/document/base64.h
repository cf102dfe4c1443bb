// Base 64 (RFC 4648) as a stream.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kavo {

class Base64Encoder {
 public:
  void encode(std::string_view bytes, std::string& text);
  void finish(std::string& text);  // the last characters, padded

 private:
  std::uint32_t bits_ = 0;
  int count_ = 0;  // of bytes in bits_
};

// Skips line ends, padding and everything else that is not a digit.
class Base64Decoder {
 public:
  void decode(std::string_view text, std::string& bytes);

 private:
  std::uint32_t bits_ = 0;
  int count_ = 0;  // of bits in bits_
};

}  // namespace kavo
