#include "common/nearest.h"

#include <algorithm>
#include <numeric>

namespace kavo {
namespace {

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

std::size_t edit_distance(std::string_view a, std::string_view b) {
  // One row of the table at a time: row[j] is the distance from what was read of `a` to the first j letters of `b`.
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (const char letter : a) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (lower(letter) == lower(b[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j + 1] + 1, row[j] + 1});
    }
  }
  return row.back();
}

std::vector<std::string_view> nearest(std::string_view typed, std::vector<std::string_view> names, std::size_t count) {
  std::ranges::stable_sort(names, {}, [typed](std::string_view name) { return edit_distance(typed, name); });
  names.resize(std::min(names.size(), count));
  return names;
}

}  // namespace kavo
