// Finds the first difference between two files.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kavo {

struct FileDifference {
  // The place of the first byte that differs, or of the shorter file's end. 1-based; the column counts bytes.
  std::int64_t line = 1;
  std::int64_t column = 1;
  std::uint64_t position = 0;  // the same place, 0-based in bytes
  // The bytes of each file around the place, at most to the ends of the line.
  std::string first;
  std::string second;
};

// Nothing when both files have the same bytes. Throws `failure` when one cannot be read.
std::optional<FileDifference> first_difference(std::u16string_view first, std::u16string_view second);

}  // namespace kavo
