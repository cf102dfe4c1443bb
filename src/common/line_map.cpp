#include "common/line_map.h"

#include <algorithm>
#include <charconv>
#include <tuple>

namespace kavo {

CopyTrail trail_of_both(const CopyTrail& first, const CopyTrail& second) {
  CopyTrail both;
  for (const CopyTrail::Run& run : second.runs()) {
    auto from = std::ranges::upper_bound(first.runs(), run.input, {}, &CopyTrail::Run::output_end);
    for (; from != first.runs().end() && from->output < run.input_end(); ++from) {
      const std::uint64_t begin = std::max(from->output, run.input);
      const std::uint64_t end = std::min(from->output_end(), run.input_end());
      both.copied(from->input + (begin - from->output), run.output + (begin - run.input), end - begin);
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

LineMap::LineMap(const std::u16string& made, const CopyTrail& trail, const LineIndex& source) {
  const LineIndex lines(made);
  for (const CopyTrail::Run& run : trail.runs()) add({lines.place_of(run.output), source.place_of(run.input).line});
}

// What the last entry says already takes no room.
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
