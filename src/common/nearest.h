// Finds the known names that an unknown one may have meant.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace kavo {

// How many letters must be inserted, removed or replaced to turn one text into the other (Levenshtein distance). Counts
// bytes; the case of the letters A to Z does not matter.
std::size_t edit_distance(std::string_view a, std::string_view b);

// At most `count` of the names, the nearest first; equally near ones in their own order.
std::vector<std::string_view> nearest(std::string_view typed, std::vector<std::string_view> names,
                                      std::size_t count = 1);

}  // namespace kavo
