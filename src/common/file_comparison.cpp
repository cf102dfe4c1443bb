#include "common/file_comparison.h"

#include <algorithm>

#include "common/block_reader.h"

namespace kavo {
namespace {

constexpr std::size_t kBefore = 24;  // bytes shown before the place
constexpr std::size_t kBehind = 48;

// Reads on until `count` bytes are there or the file ends.
std::string_view at_least(BlockReader& reader, std::size_t count) {
  while (reader.window().size() < count && reader.more()) {
  }
  return reader.window();
}

std::string rest_of_line(BlockReader& reader) {
  const std::string_view bytes = at_least(reader, kBehind).substr(0, kBehind);
  return std::string(bytes.substr(0, bytes.find_first_of("\r\n")));
}

}  // namespace

std::optional<FileDifference> first_difference(std::u16string_view first, std::u16string_view second) {
  BlockReader one(first);
  BlockReader two(second);
  FileDifference place;
  std::string before;  // the last equal bytes of this line
  for (;;) {
    const std::string_view a = at_least(one, 1);
    const std::string_view b = at_least(two, 1);
    if (a.empty() && b.empty()) return std::nullopt;
    const std::size_t length = std::min(a.size(), b.size());
    const auto same = static_cast<std::size_t>(
        std::mismatch(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(length), b.begin()).first - a.begin());
    const std::string_view equal = a.substr(0, same);
    if (const std::size_t line_end = equal.rfind('\n'); line_end != std::string_view::npos) {
      place.line += std::count(equal.begin(), equal.end(), '\n');
      place.column = static_cast<std::int64_t>(same - line_end);
      before = equal.substr(line_end + 1);
    } else {
      place.column += static_cast<std::int64_t>(same);
      before += equal;
    }
    place.position += same;
    if (before.size() > kBefore) before.erase(0, before.size() - kBefore);
    one.consume(same);
    two.consume(same);
    if (same == length && length != 0) continue;
    place.first = before + rest_of_line(one);
    place.second = before + rest_of_line(two);
    return place;
  }
}

}  // namespace kavo
