#include "common/line_index.h"

#include <algorithm>

#include "common/block_reader.h"
#include "common/byte_scan.h"

namespace kavo {

LineIndex::LineIndex(std::u16string_view path) {
  BlockReader reader(path);
  bool after_return = false;
  while (reader.more()) {
    const std::string_view window = reader.window();
    const char* const end = window.data() + window.size();
    for (const char* p = window.data(); p != end; ++p) {
      // A line feed directly after a return belongs to it.
      if (after_return && *p == '\n') {
        ++starts_.back();
        after_return = false;
        continue;
      }
      after_return = false;
      p = find_any<'\n', '\r'>(p, end);
      if (p == end) break;
      after_return = *p == '\r';
      starts_.push_back(reader.position() + static_cast<std::uint64_t>(p - window.data()) + 1);
    }
    reader.consume(window.size());
  }
}

LinePlace LineIndex::place_of(std::uint64_t position) const {
  const auto behind = std::ranges::upper_bound(starts_, position);
  return {behind - starts_.begin(), static_cast<std::int64_t>(position - *(behind - 1)) + 1};
}

std::uint64_t LineIndex::position_of(const LinePlace& place) const {
  const auto line = std::clamp<std::size_t>(static_cast<std::size_t>(place.line), 1, starts_.size());
  return starts_[line - 1] + static_cast<std::uint64_t>(place.column - 1);
}

}  // namespace kavo
