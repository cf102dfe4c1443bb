// The fonts that a user wants in translated documents instead of the source's: a text file with one font a line,
//
//   Arial = Arial Unicode MS, 128
//
// source font, "=", target font and, where a translation needs one, a character set (\fcharset). Blank lines and lines
// that begin with ";" or "#" count for nothing, nor do lines that are none of this. UTF-8, with or without a mark.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kavo::rtf {

struct MappedFont {
  std::string source;
  std::string target;
  std::int32_t charset = -1;  // -1: as it is
};

class FontMap {
 public:
  FontMap() = default;
  explicit FontMap(std::string_view file);
  // Null for a font that stays. Letter case does not count.
  const MappedFont* find(std::string_view font) const;
  bool empty() const { return fonts_.empty(); }

  // The map that the user's settings name, when they allow it; an empty one when they do not, or there is no such file.
  // Throws `failure` when a map that is there cannot be read.
  static FontMap from_settings();

 private:
  std::vector<MappedFont> fonts_;
};

}  // namespace kavo::rtf
