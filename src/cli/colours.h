// The colours of highlighting as people write them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "driver/status_colours.h"

namespace kavo {

// What `kavo rebuild --highlight` uses for statuses that have no stored colour: dark enough to be read on white, and
// different even for people who cannot distinguish red and green.
inline constexpr StatusColours kUsualStatusColours{0x0000C0, 0x0060C0, 0xC00000, 0x007000};

// The colour (0x00BBGGRR) for a name, in capital or small letters, or for "#RRGGBB". Nothing for any other text.
std::optional<std::int32_t> colour_of(std::string_view text);
// The colour's name, or "#RRGGBB" when it has none.
std::string colour_text(std::int32_t colour);

}  // namespace kavo
