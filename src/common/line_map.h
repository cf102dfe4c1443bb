// Maps the lines of a made file (a page without its scripts, a script file) to the lines of the author's file. The
// library hands it to a suite as text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/copy_trail.h"
#include "common/line_index.h"

namespace kavo {

class LineMap {
 public:
  LineMap() = default;
  // Reads what text() wrote. Skips anything else.
  explicit LineMap(std::string_view text);
  // Maps the lines of the file `made`; `trail` says which bytes of `source` its own are, in order. Throws `failure`
  // when a file cannot be read.
  LineMap(const std::u16string& made, const CopyTrail& trail, const std::u16string& source);

  // The author's line at a place; 0 before the first entry.
  std::int64_t line_of(const LinePlace& place) const;
  // "1:1=1 7:19=9" says that line 9 begins at line 7, column 19, and that the following lines continue from there.
  std::string text() const;

 private:
  struct Entry {
    LinePlace place;
    std::int64_t author_line = 0;
  };
  void add(const Entry& entry);

  std::vector<Entry> entries_;  // places ascend
};

// The trail of two steps in succession, from the input of the first to the output of the second.
CopyTrail trail_of_both(const CopyTrail& first, const CopyTrail& second);

}  // namespace kavo
