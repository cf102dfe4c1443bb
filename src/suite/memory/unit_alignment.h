// Finds which unit of a new document is in the place of which old one.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace kavo {

struct PlacedText {
  std::string_view text;     // coded text
  std::string_view name;     // of the text in its document, "" for none
  std::string_view element;  // what it stands in ("table/tr/td"), "" when unknown
};

inline constexpr std::uint32_t kNoUnit = UINT32_MAX;

// For each new unit the old one with the same text in the same place, or kNoUnit; no old unit twice. A place is
// recognised, the surest sign first, by the text's name; by its element between the same neighbours (then the last step
// of its path is enough); by its element and one neighbour; by its element between units that have certainly stayed.
// Equal texts that cannot be distinguished by these are paired in order. Takes n log n steps for n units, equal ones or
// not.
//
// Documents of earlier versions do not know elements: those of both sides are ignored then.
std::vector<std::uint32_t> aligned_units(std::span<const PlacedText> old_units, std::span<const PlacedText> new_units);

}  // namespace kavo
