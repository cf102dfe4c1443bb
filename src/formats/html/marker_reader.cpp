#include "formats/html/marker_reader.h"

#include <algorithm>
#include <charconv>

namespace kavo::html {

std::uint64_t placeholder_number(std::string_view marker) {
  if (!marker.starts_with(placeholder::kMarker)) return 0;
  marker.remove_prefix(placeholder::kMarker.size());
  if (marker.empty() || marker.front() != ' ') return 0;
  std::uint64_t number = 0;
  std::from_chars(marker.data() + 1, marker.data() + marker.size(), number);
  return number;
}

std::uint64_t MarkerReader::next(std::string* before) {
  constexpr std::size_t kMostDigits = 24;
  for (;;) {
    const std::string_view window = file_.window();
    const std::size_t place = window.find(placeholder::kMarker);
    const std::size_t needed = place + placeholder::kMarker.size() + kMostDigits;
    if (place == std::string_view::npos || (needed > window.size() && !file_.exhausted())) {
      const std::size_t kept = std::min(window.size(), placeholder::kMarker.size() - 1);
      consume(std::min(place, window.size() - kept), before);
      if (file_.more()) continue;
      if (place == std::string_view::npos) {
        consume(file_.window().size(), before);
        return 0;
      }
      continue;
    }
    const bool begins_line = placeholder::is_line_end(place == 0 ? last_ : window[place - 1]);
    const std::uint64_t number = is_script_file_ && !begins_line ? 0 : placeholder_number(window.substr(place));
    consume(place, before);
    if (number == 0) {
      consume(1, before);
      continue;
    }
    consume(placeholder::kMarker.size(), nullptr);
    return number;
  }
}

void MarkerReader::consume(std::size_t size, std::string* before) {
  if (size == 0) return;
  const std::string_view bytes = file_.window().substr(0, size);
  last_ = bytes.back();
  if (before && before->size() <= kLongestBlock) *before += bytes;
  file_.consume(size);
}

std::string_view text_of_block(std::string_view before) {
  // The rest of the placeholder's line comes before the block.
  before.remove_prefix(std::min(before.find_first_of("\r\n"), before.size()));
  while (!before.empty() && placeholder::is_line_end(before.front())) before.remove_prefix(1);
  while (!before.empty() && placeholder::is_line_end(before.back())) before.remove_suffix(1);
  return before;
}

}  // namespace kavo::html
