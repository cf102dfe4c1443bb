// The escapes of MIF strings that stand for a byte: `\xNN`, with the blank behind it, which is a part of it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kavo::mif {

struct ByteEscape {
  unsigned char byte = 0;
  std::size_t length = 0;  // in bytes; 0: the text begins with something else
};
ByteEscape byte_escape(std::string_view text);
void append_byte_escape(unsigned char byte, std::string& value);

}  // namespace kavo::mif
