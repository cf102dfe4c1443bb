#include "suite/filters/text/text_lines.h"

namespace kavo {

bool TextLines::next(Line& line) {
  document_.consume(handed_out_);
  handed_out_ = 0;
  std::size_t searched = 0;
  for (;;) {
    const std::string_view window = document_.window();
    // Whole units only: a block may end in the middle of one.
    const std::string_view units = window.substr(0, window.size() - window.size() % scan_.width());
    const std::size_t end = scan_.line_end(units, searched);
    const bool may_be_pair = end + scan_.width() >= units.size() && !document_.exhausted();
    if (end < units.size() && !(may_be_pair && scan_.at(units, end) == '\r')) {
      std::size_t next = end + scan_.width();
      if (scan_.at(units, end) == '\r' && next < units.size() && scan_.at(units, next) == '\n') next += scan_.width();
      line = {units.substr(0, end), units.substr(end, next - end), true};
      handed_out_ = next;
      return true;
    }
    if (end >= kLongestLine) {
      std::string_view piece = units.substr(0, kLongestLine);
      piece.remove_suffix(coding_.incomplete_tail(piece));
      line = {piece, {}, false};
      handed_out_ = piece.size();
      return true;
    }
    searched = end;
    if (!document_.more()) {
      line = {units, window.substr(units.size()), true};
      handed_out_ = window.size();
      return !window.empty();
    }
    progress_.report(document_.percent());
  }
}

}  // namespace kavo
