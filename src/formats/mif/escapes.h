// The escapes of MIF strings that stand for one byte: `\xNN ` with the blank at its end.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kavo::mif {

struct ByteEscape {
  unsigned char byte = 0;
  std::size_t length = 0;  // in bytes; 0 when the text does not begin with an escape
};
ByteEscape byte_escape(std::string_view text);
void append_byte_escape(unsigned char byte, std::string& value);

}  // namespace kavo::mif
