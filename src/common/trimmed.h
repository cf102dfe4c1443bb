// Text without the blanks around it.
#pragma once

#include <string_view>

namespace kavo {

constexpr std::u16string_view trimmed(std::u16string_view text) {
  const std::size_t begin = text.find_first_not_of(u' ');
  return begin == std::u16string_view::npos ? u"" : text.substr(begin, text.find_last_not_of(u' ') + 1 - begin);
}

}  // namespace kavo
