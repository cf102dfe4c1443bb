// Compares names as Windows compares those of files and registry keys: unit by unit, in upper case.
#pragma once

#include <string>
#include <string_view>

namespace kavo {

// The upper case of one UTF-16 unit, for Latin, Greek, Cyrillic, Armenian and full-width letters whose upper case is
// one unit, too. Every other unit is returned as it is. Independent of the locale.
char16_t upper_case(char16_t unit) noexcept;
std::u16string upper_case(std::u16string_view text);

bool equal_ignoring_case(std::u16string_view a, std::u16string_view b) noexcept;

// Order for maps whose keys ignore case.
struct LessIgnoringCase {
  using is_transparent = void;
  bool operator()(std::u16string_view a, std::u16string_view b) const noexcept;
};

}  // namespace kavo
