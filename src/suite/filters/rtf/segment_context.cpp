#include "suite/filters/rtf/segment_context.h"

#include <algorithm>
#include <charconv>

namespace kavo::rtf {
namespace {

template <class Number>
Number taken(std::string_view& bytes, Number usual) {
  Number number = usual;
  const char* const end = bytes.data() + bytes.size();
  const auto [stop, error] = std::from_chars(bytes.data(), end, number);
  bytes.remove_prefix(static_cast<std::size_t>(stop - bytes.data()));
  if (!bytes.empty() && bytes.front() == ' ') bytes.remove_prefix(1);
  return error == std::errc() ? number : usual;
}

std::string_view taken_line(std::string_view& bytes) {
  const std::size_t end = std::min(bytes.find('\n'), bytes.size());
  const std::string_view line = bytes.substr(0, end);
  bytes.remove_prefix(std::min(end + 1, bytes.size()));
  return line;
}

}  // namespace

std::string SegmentContext::to_bytes() const {
  std::string bytes = is_plain ? "1" : "0";
  for (const std::int64_t number : {std::int64_t{fallback}, std::int64_t{font}, std::int64_t{colour},
                                    std::int64_t{last_colour}})
    bytes.append(" ").append(std::to_string(number));
  bytes.append("\n").append(text_words).append("\n");
  for (const auto& [id, words] : code_words) bytes.append(std::to_string(id)).append(" ").append(words).append("\n");
  return bytes.append("\n").append(rest);
}

SegmentContext SegmentContext::from_bytes(std::string_view bytes) {
  SegmentContext context;
  std::string_view numbers = taken_line(bytes);
  context.is_plain = taken(numbers, 0) != 0;
  context.fallback = taken(numbers, 1u);
  context.font = taken(numbers, 0);
  context.colour = taken(numbers, 0);
  context.last_colour = taken(numbers, 0);
  context.text_words = taken_line(bytes);
  while (!bytes.empty()) {
    std::string_view line = taken_line(bytes);
    if (line.empty()) break;
    const auto id = taken(line, std::uint32_t{0});
    if (id != 0) context.code_words[id] = line;
  }
  context.rest = bytes;
  return context;
}

}  // namespace kavo::rtf
