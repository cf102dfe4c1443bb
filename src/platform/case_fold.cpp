// We keep our own table of letters because the C library's conversion depends on the locale of the process, and a file
// must be found under the same names in every locale.
#include "platform/case_fold.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace kavo {
namespace {

// Lower-case letters `first`, `first` + `step` ... `last`, and what to add for upper case.
struct LetterRange {
  char16_t first;
  char16_t last;
  char16_t step;
  int to_upper;
};

constexpr LetterRange kLetterRanges[] = {
    {0x0061, 0x007A, 1, -32}, {0x00E0, 0x00F6, 1, -32}, {0x00F8, 0x00FE, 1, -32}, {0x00FF, 0x00FF, 1, 121},
    {0x0101, 0x012F, 2, -1},  {0x0133, 0x0137, 2, -1},  {0x013A, 0x0148, 2, -1},  {0x014B, 0x0177, 2, -1},
    {0x017A, 0x017E, 2, -1},  {0x01CE, 0x01DC, 2, -1},  {0x01DF, 0x01EF, 2, -1},  {0x01F9, 0x021F, 2, -1},
    {0x0223, 0x0233, 2, -1},  {0x03AC, 0x03AC, 1, -38}, {0x03AD, 0x03AF, 1, -37}, {0x03B1, 0x03C1, 1, -32},
    {0x03C3, 0x03CB, 1, -32}, {0x03CC, 0x03CC, 1, -64}, {0x03CD, 0x03CE, 1, -63}, {0x0430, 0x044F, 1, -32},
    {0x0450, 0x045F, 1, -80}, {0x0461, 0x0481, 2, -1},  {0x048B, 0x04BF, 2, -1},  {0x04C2, 0x04CE, 2, -1},
    {0x04D1, 0x052F, 2, -1},  {0x0561, 0x0586, 1, -48}, {0x1E01, 0x1E95, 2, -1},  {0x1EA1, 0x1EFF, 2, -1},
    {0xFF41, 0xFF5A, 1, -32},
};

}  // namespace

char16_t upper_case(char16_t unit) noexcept {
  if (unit < 0x80) return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 32) : unit;
  const LetterRange* range =
      std::lower_bound(std::begin(kLetterRanges), std::end(kLetterRanges), unit,
                       [](const LetterRange& candidate, char16_t value) { return candidate.last < value; });
  if (range == std::end(kLetterRanges) || unit < range->first || (unit - range->first) % range->step != 0) return unit;
  return static_cast<char16_t>(unit + range->to_upper);
}

std::u16string upper_case(std::u16string_view text) {
  std::u16string out(text);
  for (char16_t& unit : out) unit = upper_case(unit);
  return out;
}

// Most names that are compared are spelled in the same way, so equal units are not folded.
bool equal_ignoring_case(std::u16string_view a, std::u16string_view b) noexcept {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char16_t x, char16_t y) { return x == y || upper_case(x) == upper_case(y); });
}

bool LessIgnoringCase::operator()(std::u16string_view a, std::u16string_view b) const noexcept {
  const std::size_t size = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < size; ++i) {
    if (a[i] == b[i]) continue;
    const char16_t x = upper_case(a[i]), y = upper_case(b[i]);
    if (x != y) return x < y;
  }
  return a.size() < b.size();
}

}  // namespace kavo
