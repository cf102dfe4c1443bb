// Knows where the lines of a file begin, and turns byte positions into line and column and back.
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

// Turns a byte position in a file (0-based) into the place in the document from which the file was made.
using PlaceOrigin = std::function<LinePlace(std::uint64_t position)>;

class LineIndex {
 public:
  // Reads the file; lines end with CR LF, CR or LF. Takes 8 bytes of memory a line. Throws `failure`.
  explicit LineIndex(std::u16string_view path);

  // The place of the byte at a 0-based position.
  LinePlace place_of(std::uint64_t position) const;
  // The 0-based position of a place. A line beyond the last one counts as the last one.
  std::uint64_t position_of(const LinePlace& place) const;

 private:
  std::vector<std::uint64_t> starts_{0};
};

}  // namespace kavo
