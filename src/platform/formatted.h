// Puts messages together: formatted(u"{}, line {}", path, line). Arguments are texts in UTF-16 or UTF-8 and whole
// numbers.
//
// The standard library of g++ 12 has no std::format. A header-only formatting library costs four seconds of compilation
// in each file that includes it, and a hundred files put messages together. This one costs almost nothing.
#pragma once

#include <concepts>
#include <cstddef>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

#include "platform/unicode.h"

namespace kavo {

// A text with one "{}" for each argument, which is checked at compile time. Any other brace stands for itself.
template <class Unit, class... Arguments>
class TextPattern {
 public:
  template <std::convertible_to<std::basic_string_view<Unit>> Text>
  consteval TextPattern(const Text& text) : text_(text) {
    std::size_t holes = 0;
    for (std::size_t i = 0; i + 1 < text_.size(); ++i)
      if (text_[i] == '{' && text_[i + 1] == '}') ++holes;
    if (holes != sizeof...(Arguments)) throw std::invalid_argument("a text needs one {} for each argument");
  }
  std::basic_string_view<Unit> text() const { return text_; }

 private:
  std::basic_string_view<Unit> text_;
};

std::string filled(std::string_view pattern, std::span<const std::string> pieces);
std::u16string filled(std::u16string_view pattern, std::span<const std::u16string> pieces);

template <class Unit, class Argument>
std::basic_string<Unit> text_piece(const Argument& argument) {
  static_assert(!std::same_as<Argument, bool> && !std::same_as<Argument, char16_t> && !std::same_as<Argument, char>);
  constexpr bool is_wide = std::same_as<Unit, char16_t>;
  if constexpr (std::is_convertible_v<const Argument&, std::basic_string_view<Unit>>) {
    return std::basic_string<Unit>(std::basic_string_view<Unit>(argument));
  } else if constexpr (std::integral<Argument>) {
    if constexpr (is_wide)
      return to_utf16(std::to_string(argument));
    else
      return std::to_string(argument);
  } else {
    if constexpr (is_wide)
      return to_utf16(argument);
    else
      return to_utf8(argument);
  }
}

template <class... Arguments>
std::string formatted(TextPattern<char, std::type_identity_t<Arguments>...> pattern, const Arguments&... arguments) {
  const std::string pieces[] = {text_piece<char>(arguments)...};
  return filled(pattern.text(), pieces);
}
template <class... Arguments>
std::u16string formatted(TextPattern<char16_t, std::type_identity_t<Arguments>...> pattern,
                         const Arguments&... arguments) {
  const std::u16string pieces[] = {text_piece<char16_t>(arguments)...};
  return filled(pattern.text(), pieces);
}

}  // namespace kavo
