#include "common/line_map.h"

#include <algorithm>
#include <charconv>
#include <tuple>

#include "common/block_reader.h"

namespace kavo {
namespace {

// Finds the same places as LineIndex, but in order only, and without keeping the lines in memory.
class LineWalk {
 public:
  explicit LineWalk(const std::u16string& path) : file_(path) {}

  LinePlace place_of(std::uint64_t position) {
    while (file_.position() < position) {
      if (file_.window().empty() && !file_.more()) break;
      const std::string_view window = file_.window();
      const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(window.size(), position - file_.position()));
      for (std::size_t at = 0; at < size; ++at) pass(window[at], file_.position() + at);
      file_.consume(size);
    }
    const bool is_pair = after_return_ && (!file_.window().empty() || file_.more()) && file_.window().front() == '\n';
    if (after_return_ && !is_pair) return {line_ + 1, 1};
    return {line_, static_cast<std::int64_t>(position - line_begin_) + 1};
  }

 private:
  void pass(char c, std::uint64_t position) {
    if (after_return_) begin_line(c == '\n' ? position + 1 : position);
    if (c == '\n' && !after_return_) begin_line(position + 1);
    after_return_ = c == '\r';
  }
  void begin_line(std::uint64_t position) {
    ++line_;
    line_begin_ = position;
  }

  BlockReader file_;
  std::int64_t line_ = 1;
  std::uint64_t line_begin_ = 0;
  bool after_return_ = false;
};

}  // namespace

CopyTrail trail_of_both(const CopyTrail& first, const CopyTrail& second) {
  CopyTrail both;
  CopyTrail::Reader outer(second);
  CopyTrail::Reader inner(first);
  CopyTrail::Run from;
  bool has_from = inner.next(from);
  for (CopyTrail::Run run; outer.next(run);) {
    if (!has_from || run.input < from.output) {
      inner.go_near(run.input);
      has_from = inner.next(from);
    }
    while (has_from && from.output_end() <= run.input) has_from = inner.next(from);
    while (has_from && from.output < run.input_end()) {
      const std::uint64_t begin = std::max(from.output, run.input);
      const std::uint64_t end = std::min(from.output_end(), run.input_end());
      both.copied(from.input + (begin - from.output), run.output + (begin - run.input), end - begin);
      if (from.output_end() > run.input_end()) break;
      has_from = inner.next(from);
    }
  }
  return both;
}

LineMap::LineMap(std::string_view text) {
  const char* at = text.data();
  const char* const end = at + text.size();
  const auto number = [&](std::int64_t& value, char behind) {
    const auto read = std::from_chars(at, end, value);
    at = read.ptr;
    if (read.ec != std::errc() || (behind != 0 && (at == end || *at++ != behind))) return false;
    return true;
  };
  for (Entry entry; number(entry.place.line, ':') && number(entry.place.column, '=') && number(entry.author_line, 0);) {
    add(entry);
    if (at != end) ++at;
  }
}

LineMap::LineMap(const std::u16string& made, const CopyTrail& trail, const std::u16string& source) {
  LineWalk lines(made);
  LineWalk source_lines(source);
  CopyTrail::Reader reader(trail);
  for (CopyTrail::Run run; reader.next(run);) add({lines.place_of(run.output), source_lines.place_of(run.input).line});
}

// An entry that follows from the last one is not stored.
void LineMap::add(const Entry& entry) {
  const auto shift = [](const Entry& of) { return of.author_line - of.place.line; };
  if (entries_.empty() || shift(entry) != shift(entries_.back())) entries_.push_back(entry);
}

std::int64_t LineMap::line_of(const LinePlace& place) const {
  const auto behind =
      std::ranges::upper_bound(entries_, std::tie(place.line, place.column), {},
                               [](const Entry& entry) { return std::tie(entry.place.line, entry.place.column); });
  if (behind == entries_.begin()) return 0;
  const Entry& entry = *(behind - 1);
  return entry.author_line + place.line - entry.place.line;
}

std::string LineMap::text() const {
  std::string text;
  for (const Entry& entry : entries_) {
    if (!text.empty()) text += ' ';
    text += std::to_string(entry.place.line) + ':' + std::to_string(entry.place.column) + '=' +
            std::to_string(entry.author_line);
  }
  return text;
}

}  // namespace kavo
