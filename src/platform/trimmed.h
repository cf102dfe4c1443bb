// A text without the blanks at its ends. What counts as a blank depends on the format, so the caller names it.
#pragma once

#include <string_view>

namespace kavo {

template <class Unit>
constexpr std::basic_string_view<Unit> without_ends(std::basic_string_view<Unit> text,
                                                    std::basic_string_view<Unit> blanks) {
  const std::size_t begin = text.find_first_not_of(blanks);
  return begin == text.npos ? text.substr(0, 0) : text.substr(begin, text.find_last_not_of(blanks) + 1 - begin);
}
constexpr std::u16string_view trimmed(std::u16string_view text, std::u16string_view blanks = u" ") {
  return without_ends(text, blanks);
}
constexpr std::string_view trimmed(std::string_view text, std::string_view blanks) {
  return without_ends(text, blanks);
}

}  // namespace kavo
