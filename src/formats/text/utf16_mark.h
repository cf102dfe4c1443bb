// Recognises UTF-16 text, which the converters of this room do not read: they work on bytes in which every token is
// one ASCII byte a character.
#pragma once

#include <string_view>

#include "common/block_reader.h"

namespace kavo {

// The byte order mark of UTF-16, either order.
inline bool starts_as_utf16(std::string_view bytes) {
  return bytes.substr(0, 2) == "\xFF\xFE" || bytes.substr(0, 2) == "\xFE\xFF";
}

// The same for a file from which nothing has been consumed. Throws `failure`.
inline bool starts_as_utf16(BlockReader& reader) {
  while (reader.window().size() < 2 && reader.more()) {
  }
  return starts_as_utf16(reader.window());
}

}  // namespace kavo
