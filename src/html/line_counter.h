// Turns places of a document into line and column: lines end in CR LF, LF CR, CR or LF, as the line reader counts them;
// columns count bytes.
#pragma once

#include <cstdint>
#include <string_view>

#include "common/byte_scan.h"

namespace kavo {

class LineCounter {
 public:
  std::uint64_t position() const { return position_; }  // bytes counted
  std::int64_t line() const { return line_; }
  // Of the next byte.
  std::int64_t column() const { return static_cast<std::int64_t>(position_ - line_begin_) + 1; }

  void feed(std::string_view bytes) {
    const char* const begin = bytes.data();
    const char* const end = begin + bytes.size();
    for (const char* p = begin; (p = find_any<'\n', '\r'>(p, end)) != end; ++p) {
      const std::uint64_t here = position_ + static_cast<std::uint64_t>(p - begin);
      if (first_of_pair_ != 0 && first_of_pair_ != *p && here == line_begin_) {
        first_of_pair_ = 0;
      } else {
        ++line_;
        first_of_pair_ = *p;
      }
      line_begin_ = here + 1;
    }
    position_ += bytes.size();
  }

 private:
  std::uint64_t position_ = 0;
  std::uint64_t line_begin_ = 0;
  std::int64_t line_ = 1;
  char first_of_pair_ = 0;
};

}  // namespace kavo
