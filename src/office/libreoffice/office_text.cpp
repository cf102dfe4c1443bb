#include "office/libreoffice/office_text.h"

#include <algorithm>
#include <cstdio>

namespace kavo {

std::size_t run_length(const TextRun& run) { return run.kind == TextRun::Kind::kText ? run.text.size() : 1; }

std::u16string joined_text(std::span<const TextRun> runs) {
  std::u16string text;
  for (const TextRun& run : runs) run.kind == TextRun::Kind::kField ? text += u'\uFFFC' : text += run.text;
  return text;
}

bool is_blank(std::span<const TextRun> runs) {
  return std::ranges::all_of(runs, [](const TextRun& run) {
    return run.text.find_first_not_of(u" \t\n\u00A0\u3000") == std::u16string::npos;
  });
}

std::string check_of(std::u16string_view text) {
  constexpr std::uint32_t prime = 65521;
  std::uint32_t low = 1, high = 0;
  for (const char16_t unit : text) {
    low = (low + unit) % prime;
    high = (high + low) % prime;
  }
  char digits[9];
  std::snprintf(digits, sizeof digits, "%04x%04x", high, low);
  return digits;
}

}  // namespace kavo
