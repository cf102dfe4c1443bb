// Turns places of a document into line and column. CR LF, LF CR, CR and LF each end a line, as for the line reader;
// columns count bytes. Line ends are found a block at a time, because a validator asks at every tag.
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

  // Takes the next bytes of the document.
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

  // The place of the byte at `position`, which must be neither beyond fed() nor before a position that was asked for
  // earlier.
  PagePlace at(std::uint64_t position) {
    for (; next_ != starts_.size() && starts_[next_] <= position; ++next_) {
      line_begin_ = starts_[next_];
      ++line_;
    }
    return {line_, static_cast<std::int64_t>(position - line_begin_) + 1, position};
  }

 private:
  std::vector<std::uint64_t> starts_;  // where lines begin, in order; at() has passed those before next_
  std::size_t next_ = 0;
  std::uint64_t fed_ = 0;
  std::uint64_t last_start_ = 0;
  std::uint64_t line_begin_ = 0;
  std::int64_t line_ = 1;
  char first_of_pair_ = 0;
};

}  // namespace kavo
