#include "office/rtf_text.h"

#include <charconv>

namespace kavo {

std::string marker_text(std::uint64_t number) {
  std::string text(kMarkerStart);
  text += std::to_string(number);
  text += kMarkerEnd;
  return text;
}

std::optional<Marker> read_marker(const char* p, const char* end) {
  constexpr std::ptrdiff_t kMostDigits = 10;
  if (!begins_with(p, end, kMarkerStart)) return std::nullopt;
  const char* const digits = p + kMarkerStart.size();
  std::uint64_t number = 0;
  const char* const digits_end = std::from_chars(digits, ahead(digits, kMostDigits, end), number).ptr;
  if (digits_end == digits || *digits == '0' || !begins_with(digits_end, end, kMarkerEnd)) return std::nullopt;
  return Marker{number, static_cast<std::size_t>(digits_end - p) + kMarkerEnd.size()};
}

bool is_rtf(BlockReader& document) {
  constexpr std::string_view signature = "{\\rtf";
  while (document.window().size() < signature.size() && document.more()) {
  }
  return document.window().starts_with(signature);
}

}  // namespace kavo
