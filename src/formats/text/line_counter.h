// Turns places of a document into line and column: lines end in CR LF, LF CR, CR or LF, as the line reader counts them;
// columns count bytes. Line ends are found a block at a time, since a validator asks at every tag.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "common/byte_scan.h"

namespace kavo {

struct PagePlace {
  std::int64_t line = 0;
  std::int64_t column = 0;
  std::uint64_t position = 0;  // 0-based, in bytes
};

class LineCounter {
 public:
  std::uint64_t fed() const { return fed_; }  // bytes of the document seen so far

  // The bytes that follow in the document.
  void feed(std::string_view bytes) {
    starts_.erase(starts_.begin(), starts_.begin() + static_cast<std::ptrdiff_t>(next_));
    next_ = 0;
    const char* const begin = bytes.data();
    const char* const end = begin + bytes.size();
    for (const char* p = begin; (p = find_any<'\n', '\r'>(p, end)) != end; ++p) {
      const std::uint64_t behind = fed_ + static_cast<std::uint64_t>(p - begin) + 1;
      if (first_of_pair_ != 0 && first_of_pair_ != *p && behind == last_start_ + 1) {
        first_of_pair_ = 0;
        (starts_.empty() ? line_begin_ : starts_.back()) = behind;
      } else {
        first_of_pair_ = *p;
        starts_.push_back(behind);
      }
      last_start_ = behind;
    }
    fed_ += bytes.size();
  }

  // Of the byte at `position`, which is not beyond fed() and not before any asked for earlier.
  PagePlace at(std::uint64_t position) {
    for (; next_ != starts_.size() && starts_[next_] <= position; ++next_) {
      line_begin_ = starts_[next_];
      ++line_;
    }
    return {line_, static_cast<std::int64_t>(position - line_begin_) + 1, position};
  }

 private:
  std::vector<std::uint64_t> starts_;  // of lines, in order; those before next_ are behind the last place asked for
  std::size_t next_ = 0;
  std::uint64_t fed_ = 0;
  std::uint64_t last_start_ = 0;
  std::uint64_t line_begin_ = 0;
  std::int64_t line_ = 1;
  char first_of_pair_ = 0;
};

}  // namespace kavo
