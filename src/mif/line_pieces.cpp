#include "mif/line_pieces.h"

#include <algorithm>

#include "common/byte_scan.h"

namespace kavo {
namespace {

std::size_t terminator_length(const char* p, const char* end) {
  return end - p >= 2 && is_line_end(p[1]) && p[1] != *p ? 2 : 1;
}

}  // namespace

bool LinePieces::next(LinePiece& piece) {
  reader_.consume(handed_out_);
  handed_out_ = 0;
  piece = {};
  piece.begins = !in_line_;
  std::size_t plain = 0;  // bytes at the front of the window that hold no line end
  for (;;) {
    const std::string_view window = reader_.window();
    const char* const end = window.data() + window.size();
    const char* const stop = find_any<'\r', '\n'>(window.data() + plain, end);
    plain = static_cast<std::size_t>(stop - window.data());
    if (stop != end) {
      if (end - stop < 2 && !reader_.exhausted()) {  // the other half of the terminator may follow
        more();
        continue;
      }
      piece.text = window.substr(0, plain);
      piece.terminator = window.substr(plain, terminator_length(stop, end));
      piece.ends = true;
      break;
    }
    if (reader_.exhausted()) {
      if (window.empty() && !in_line_) return false;
      piece.text = window;
      piece.ends = true;
      break;
    }
    if (plain >= kWholeLine) {
      const std::size_t mark = window.find('<', plain - kUncut);
      piece.text = window.substr(0, std::min(mark, plain));
      break;
    }
    more();
  }
  in_line_ = !piece.ends;
  handed_out_ = piece.text.size() + piece.terminator.size();
  return true;
}

void LinePieces::seek(std::uint64_t line_start) {
  reader_.seek(line_start);
  handed_out_ = 0;
  in_line_ = false;
}

void LinePieces::more() {
  if (reader_.more() && progress_ != nullptr) progress_->report(reader_.percent());
}

std::int64_t write_lines(PendingFile& file, std::string_view lines) {
  const auto between = [](const char* p, const char* stop) {
    return std::string_view(p, static_cast<std::size_t>(stop - p));
  };
  const char* const end = lines.data() + lines.size();
  const char* kept = lines.data();  // from here on everything is written unchanged
  std::int64_t count = 0;
  for (const char* p = kept; p != end; ++count) {
    const char* const stop = find_any<'\r', '\n'>(p, end);
    const std::size_t length = terminator_length(stop, end);
    p = stop + length;
    if (length == 2 && *stop == '\r') continue;
    file.write(between(kept, stop));
    file.write("\r\n");
    kept = p;
  }
  file.write(between(kept, end));
  return count;
}

}  // namespace kavo
