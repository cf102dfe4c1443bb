// Where the lines of a file begin: turns places in bytes into line and column and back.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace kavo {

struct LinePlace {
  std::int64_t line = 1;    // 1-based
  std::int64_t column = 1;  // 1-based, in bytes
};

// Turns a place in bytes of a file into that of the document which the file was made of.
using PlaceOrigin = std::function<LinePlace(std::uint64_t position)>;

class LineIndex {
 public:
  // Reads the file; lines end with CR LF, CR or LF. Takes 8 bytes of memory a line. Throws `failure`.
  explicit LineIndex(std::u16string_view path);

  // Of the byte at `position`, 0-based.
  LinePlace place_of(std::uint64_t position) const;
  // The byte at a place, 0-based; of a line that the file does not have, that behind its last line's beginning.
  std::uint64_t position_of(const LinePlace& place) const;

 private:
  std::vector<std::uint64_t> starts_{0};
};

}  // namespace kavo
