// Numbers in stored texts.
#pragma once

#include <cstdint>
#include <string_view>

namespace kavo {

// The decimal number at the start of the text, which may have a "-". 0 when there is none, or when it does not fit.
constexpr std::int32_t leading_number(std::u16string_view text) {
  const bool negative = text.starts_with(u'-');
  if (negative) text.remove_prefix(1);
  std::int64_t number = 0;
  for (const char16_t digit : text) {
    if (digit < u'0' || digit > u'9') break;
    number = number * 10 + (digit - u'0');
    if (number > INT32_MAX) return 0;
  }
  return static_cast<std::int32_t>(negative ? -number : number);
}

}  // namespace kavo
