// The fonts that a user wants in translated documents instead of the source's: a text file with one font a line,
//
//   Arial = Arial Unicode MS, 128
//
// source font, "=", target font and, where a translation needs one, a character set (\fcharset). All other lines are
// ignored, and so are lines that begin with ";" or "#". The file is in UTF-8, with or without a byte order mark.
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
  // Null for a font that stays. The case of letters does not matter.
  const MappedFont* find(std::string_view font) const;
  bool empty() const { return fonts_.empty(); }

  // The map that the user's settings name. Empty when the settings switch it off or the file does not exist. Throws
  // `failure` when an existing map cannot be read.
  static FontMap from_settings();

 private:
  std::vector<MappedFont> fonts_;
};

}  // namespace kavo::rtf
