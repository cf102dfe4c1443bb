// Reads a text file line by line, as bytes, in bounded memory.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "common/block_reader.h"
#include "common/byte_scan.h"
#include "common/progress_event.h"
#include "formats/text/text_coding.h"

namespace kavo {

// Looks for ASCII characters in bytes of any coding. Places are offsets in bytes. In an 8-bit coding these bytes are
// never part of another character, since trail bytes begin at 0x40.
class UnitScan {
 public:
  explicit UnitScan(const TextCoding& coding)
      : width_(coding.is_utf16() ? 2 : 1), low_(coding.number() == kUtf16BigEndian ? 1 : 0) {}

  std::size_t width() const { return width_; }

  // The unit at a place when it is ASCII, else 0.
  char at(std::string_view bytes, std::size_t place) const {
    if (width_ == 1) return bytes[place];
    if (place + 2 > bytes.size() || bytes[place + 1 - low_] != 0) return 0;
    return bytes[place + low_];
  }

  // The first LF or CR from `from` on, the size of `bytes` when there is none.
  std::size_t line_end(std::string_view bytes, std::size_t from) const {
    if (width_ == 1) {
      const char* const end = bytes.data() + bytes.size();
      return static_cast<std::size_t>(find_any<'\n', '\r'>(bytes.data() + from, end) - bytes.data());
    }
    for (; from + 2 <= bytes.size(); from += 2)
      if (at(bytes, from) == '\n' || at(bytes, from) == '\r') return from;
    return bytes.size();
  }

  bool is_blank(std::string_view bytes, std::size_t place) const {
    const char c = at(bytes, place);
    return c == ' ' || c == '\t';
  }
  // How many bytes of blanks a line begins with, and where those at its end begin.
  std::size_t leading_blanks(std::string_view bytes) const {
    std::size_t begin = 0;
    while (begin < bytes.size() && is_blank(bytes, begin)) begin += width_;
    return std::min(begin, bytes.size());
  }
  std::size_t end_of_text(std::string_view bytes, std::size_t begin) const {
    std::size_t end = bytes.size();
    while (end >= begin + width_ && is_blank(bytes, end - width_)) end -= width_;
    return end;
  }

 private:
  std::size_t width_;
  std::size_t low_;  // the place of the low byte in a unit
};

class TextLines {
 public:
  // A longer line is handed out in pieces: no paragraph is longer, and a file without line ends must not become one
  // segment that fills the memory.
  static constexpr std::size_t kLongestLine = 256 * 1024;  // bytes

  // Views are valid until the next line is asked for.
  struct Line {
    std::string_view text;
    std::string_view end;  // its line end; in the file's last line the rest of an incomplete unit
    bool is_whole = true;  // false for a piece of a longer line
  };

  // All must outlive the object. Reads from the document's current place.
  TextLines(BlockReader& document, const TextCoding& coding, ProgressEvent& progress)
      : document_(document), coding_(coding), scan_(coding), progress_(progress) {}

  const UnitScan& scan() const { return scan_; }
  // False at the end of the file.
  bool next(Line& line);

 private:
  BlockReader& document_;
  const TextCoding& coding_;
  UnitScan scan_;
  ProgressEvent& progress_;
  std::size_t handed_out_ = 0;  // bytes of the window that the last line took
};

}  // namespace kavo
