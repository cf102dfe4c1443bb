#include "formats/text/columns.h"

#include <algorithm>
#include <iterator>

#include "formats/text/text_coding.h"

namespace kavo {
namespace {

constexpr std::size_t kTabStop = 8;

struct Range {
  char32_t first;
  char32_t last;
};

// Combining marks of the scripts that code pages cover, marks without a width, variation selectors.
constexpr Range kNarrowest[] = {{0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x064B, 0x065F},
                                {0x0E31, 0x0E31}, {0x0E34, 0x0E3A}, {0x0E47, 0x0E4E}, {0x1DC0, 0x1DFF},
                                {0x200B, 0x200F}, {0x20D0, 0x20FF}, {0x302A, 0x302D}, {0x3099, 0x309A},
                                {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF}};
constexpr Range kWide[] = {{0x1100, 0x115F}, {0x2E80, 0x303E},   {0x3041, 0x33FF},   {0x3400, 0x4DBF},
                           {0x4E00, 0x9FFF}, {0xA000, 0xA4CF},   {0xA960, 0xA97F},   {0xAC00, 0xD7A3},
                           {0xF900, 0xFAFF}, {0xFE10, 0xFE19},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},
                           {0xFFE0, 0xFFE6}, {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};
constexpr Range kUnspaced[] = {{0x2E80, 0x312F}, {0x3190, 0x31FF}, {0x3300, 0x9FFF},
                               {0xF900, 0xFAFF}, {0xFF00, 0xFF9F}, {0x20000, 0x3FFFD}};

constexpr std::u32string_view kClosing =
    U"\u3001\u3002\uFF0C\uFF0E\uFF1A\uFF1B\uFF1F\uFF01\uFF09\u300D\u300F\u3011"
    U"\u3009\u300B\u3015\u30FC\u3005\u309D\u309E\u30FB";
constexpr std::u32string_view kOpening = U"\uFF08\u300C\u300E\u3010\u3008\u300A\u3014";

template <std::size_t kSize>
bool is_in(const Range (&ranges)[kSize], char32_t code_point) {
  const auto* const found = std::upper_bound(std::begin(ranges), std::end(ranges), code_point,
                                             [](char32_t value, const Range& range) { return value < range.first; });
  return found != std::begin(ranges) && code_point <= found[-1].last;
}

}  // namespace

std::size_t columns_of(char32_t code_point) {
  if (code_point < 0x300) return 1;
  return is_in(kNarrowest, code_point) ? 0 : is_in(kWide, code_point) ? 2 : 1;
}

std::size_t columns_of(std::string_view utf8, std::size_t column) {
  const std::size_t begin = column;
  while (!utf8.empty()) {
    if (utf8.front() == '\t') {
      column += kTabStop - column % kTabStop;
      utf8.remove_prefix(1);
      continue;
    }
    const std::size_t length = utf8_character_length(utf8);
    column += length == 0 ? 1 : columns_of(utf8_code_point(utf8.substr(0, length)));
    utf8.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return column - begin;
}

bool is_unspaced(char32_t code_point) { return code_point >= 0x2E80 && is_in(kUnspaced, code_point); }
bool is_closing(char32_t code_point) { return kClosing.find(code_point) != kClosing.npos; }
bool is_opening(char32_t code_point) { return kOpening.find(code_point) != kOpening.npos; }

}  // namespace kavo
