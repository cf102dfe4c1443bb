#include "cli/colours.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iterator>

#include "platform/unicode.h"

namespace kavo {
namespace {

struct NamedColour {
  std::string_view name;
  std::int32_t colour;
};

// The sixteen colours of HTML, and orange.
constexpr NamedColour kColours[] = {
    {"black", 0x000000},  {"silver", 0xC0C0C0}, {"gray", 0x808080},  {"white", 0xFFFFFF}, {"maroon", 0x000080},
    {"red", 0x0000FF},    {"purple", 0x800080}, {"fuchsia", 0xFF00FF}, {"green", 0x008000}, {"lime", 0x00FF00},
    {"olive", 0x008080},  {"yellow", 0x00FFFF}, {"navy", 0x800000},  {"blue", 0xFF0000},  {"teal", 0x808000},
    {"aqua", 0xFFFF00},   {"orange", 0x00A5FF},
};

// Red and blue change places between "#RRGGBB" and the stored form.
constexpr std::int32_t exchanged(std::int32_t colour) {
  return (colour & 0xFF) << 16 | (colour & 0xFF00) | (colour >> 16 & 0xFF);
}

}  // namespace

std::optional<std::int32_t> colour_of(std::string_view text) {
  const auto* const named =
      std::ranges::find_if(kColours, [wanted = to_utf16(text)](const NamedColour& colour) {
        return equal_ignoring_ascii_case(to_utf16(colour.name), wanted);
      });
  if (named != std::end(kColours)) return named->colour;
  if (text.size() != 7 || text[0] != '#') return std::nullopt;
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), number, 16);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return exchanged(static_cast<std::int32_t>(number));
}

std::string colour_text(std::int32_t colour) {
  const auto* const named = std::ranges::find(kColours, colour, &NamedColour::colour);
  if (named != std::end(kColours)) return std::string(named->name);
  char text[8];
  std::snprintf(text, sizeof text, "#%06X", static_cast<unsigned>(exchanged(colour & 0xFFFFFF)));
  return text;
}

}  // namespace kavo
