// Reads a file line by line, as bytes and in bounded memory. A line longer than kWholeLine comes in pieces, any other
// as a whole. CR LF, LF CR, CR and LF each end a line, wherever a block ends. Most lines need no closer look:
// lines_before() hands out many of them at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "common/block_reader.h"
#include "common/pending_file.h"
#include "common/progress_event.h"
#include "formats/text/ascii.h"

namespace kavo {

// Valid until the next call of next() or seek().
struct LinePiece {
  std::string_view text;        // without the line's terminator
  std::string_view terminator;  // empty when the piece does not end its line, or the last line has none
  bool begins = false;          // the piece begins a line, and holds kUncut bytes of it when it has as many
  bool ends = false;
};

class LinePieces {
 public:
  static constexpr std::size_t kWholeLine = 64 * 1024;
  // A text that begins with "<" and has at most this many bytes is never cut in two, even in a long line.
  static constexpr std::size_t kUncut = 64;

  // Opens the file. The constructor and next() throw `failure` when the file cannot be opened or read. `progress` is
  // borrowed and may be nullptr.
  LinePieces(std::u16string_view path, ProgressEvent* progress) : reader_(path), progress_(progress) {}

  // Fetches the next line or piece; false at the end of the file.
  bool next(LinePiece& piece);
  // Hands out the whole lines of the window, with their terminators, up to the place that `find_stop(begin, end)`
  // returns (`end` when there is none). Empty when there are none, or in the middle of a line; next() then continues.
  template <class FindStop>
  std::string_view lines_before(FindStop find_stop);
  // The position of the first byte that was not handed out.
  std::uint64_t position() const { return reader_.position() + handed_out_; }
  void seek(std::uint64_t line_start);

 private:
  void more();

  BlockReader reader_;
  ProgressEvent* progress_;
  std::size_t handed_out_ = 0;  // bytes of the last piece, at the front of the window
  bool in_line_ = false;        // the last piece did not end its line
};

// Writes whole lines with CR LF as their terminators. Returns how many lines they are. Throws `failure`.
std::int64_t write_lines(PendingFile& file, std::string_view lines);

template <class FindStop>
std::string_view LinePieces::lines_before(FindStop find_stop) {
  if (in_line_) return {};
  reader_.consume(handed_out_);
  handed_out_ = 0;
  const std::string_view window = reader_.window();
  if (window.empty()) return {};
  const char* const begin = window.data();
  const char* const end = begin + window.size();
  const char* stop = find_stop(begin, end);
  // The other half of a terminator at the very end may follow.
  if (stop == end && !reader_.exhausted()) --stop;
  while (stop != begin && (!is_line_end(stop[-1]) || (stop != end && is_line_end(*stop)))) --stop;
  handed_out_ = static_cast<std::size_t>(stop - begin);
  return window.substr(0, handed_out_);
}

}  // namespace kavo
