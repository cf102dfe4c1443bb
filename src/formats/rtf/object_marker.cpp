#include "formats/rtf/object_marker.h"

#include <algorithm>
#include <charconv>

namespace kavo::rtf {

std::string marker_text(std::uint64_t number) {
  std::string text(kMarkerStart);
  text += std::to_string(number);
  text += kMarkerEnd;
  return text;
}

std::optional<Marker> read_marker(const char* p, const char* end) {
  constexpr std::ptrdiff_t kMostDigits = 10;
  const auto begins_with = [end](const char* from, std::string_view text) {
    return std::string_view(from, static_cast<std::size_t>(end - from)).starts_with(text);
  };
  if (!begins_with(p, kMarkerStart)) return std::nullopt;
  const char* const digits = p + kMarkerStart.size();
  std::uint64_t number = 0;
  const char* const digits_end = std::from_chars(digits, digits + std::min(kMostDigits, end - digits), number).ptr;
  if (digits_end == digits || *digits == '0' || !begins_with(digits_end, kMarkerEnd)) return std::nullopt;
  return Marker{number, static_cast<std::size_t>(digits_end - p) + kMarkerEnd.size()};
}

}  // namespace kavo::rtf
