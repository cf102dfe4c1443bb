// Recognises UTF-16 text. The page converters refuse it, because they look for ASCII bytes.
#pragma once

#include <string_view>

#include "common/block_reader.h"

namespace kavo {

// True when the bytes begin with a byte order mark of UTF-16, in either order.
inline bool starts_as_utf16(std::string_view bytes) {
  return bytes.substr(0, 2) == "\xFF\xFE" || bytes.substr(0, 2) == "\xFE\xFF";
}

// The same for a file from which nothing has been consumed. Throws `failure` when it cannot be read.
inline bool starts_as_utf16(BlockReader& reader) {
  while (reader.window().size() < 2 && reader.more()) {
  }
  return starts_as_utf16(reader.window());
}

}  // namespace kavo
