#include "platform/formatted.h"

namespace kavo {
namespace {

template <class Unit>
std::basic_string<Unit> fill(std::basic_string_view<Unit> pattern, std::span<const std::basic_string<Unit>> pieces) {
  constexpr Unit kHole[] = {'{', '}', 0};
  std::basic_string<Unit> text;
  for (const std::basic_string<Unit>& piece : pieces) {
    const std::size_t hole = pattern.find(kHole);
    text += pattern.substr(0, hole);
    text += piece;
    pattern.remove_prefix(hole + 2);
  }
  return text += pattern;
}

}  // namespace

std::string filled(std::string_view pattern, std::span<const std::string> pieces) { return fill(pattern, pieces); }
std::u16string filled(std::u16string_view pattern, std::span<const std::u16string> pieces) {
  return fill(pattern, pieces);
}

}  // namespace kavo
