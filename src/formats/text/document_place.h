// Counts line and column while a document passes by in pieces.
#pragma once

#include <cstdint>
#include <string_view>

#include "common/byte_scan.h"

namespace kavo {

// A line ends with LF, CR or CR LF. A piece may end anywhere.
class DocumentPlace {
 public:
  std::int64_t line() const { return line_; }      // 1-based
  std::int64_t column() const { return column_; }  // 1-based, in bytes

  void advance(std::string_view bytes) {
    advance(bytes, [](std::string_view part) { return part.size(); });
  }
  // The same for decoded bytes. `size_of` returns how many bytes of the document a part of a line takes.
  template <class SizeOf>
  void advance(std::string_view bytes, SizeOf&& size_of) {
    if (bytes.empty()) return;
    const char* const end = bytes.data() + bytes.size();
    const char* line = bytes.data();
    for (const char* p = bytes.data(); p != end;) {
      // A line feed directly after a return belongs to the same line end.
      const bool joins = after_return_ && *p == '\n';
      after_return_ = false;
      if (!joins) {
        p = find_any<'\n', '\r'>(p, end);
        if (p == end) break;
        ++line_;
        after_return_ = *p == '\r';
      }
      line = ++p;
      column_ = 1;
    }
    column_ += static_cast<std::int64_t>(size_of({line, static_cast<std::size_t>(end - line)}));
  }

 private:
  std::int64_t line_ = 1;
  std::int64_t column_ = 1;
  bool after_return_ = false;
};

}  // namespace kavo
