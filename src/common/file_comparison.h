// Where two files differ.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kavo {

struct FileDifference {
  std::int64_t line = 1;  // 1-based place of the first byte that differs, or of the shorter file's end
  std::int64_t column = 1;
  std::uint64_t position = 0;  // the same, 0-based in bytes
  // What each file holds there, from a little before the place to a little behind it, at most one line.
  std::string first;
  std::string second;
};

// Nothing when both hold the same bytes. Throws `failure`.
std::optional<FileDifference> first_difference(std::u16string_view first, std::u16string_view second);

}  // namespace kavo
