// The colours of highlighting as people write them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "driver/status_colours.h"

namespace kavo {

// What `kavo rebuild --highlight` uses for statuses that have no stored colour: dark enough to be read on white, and
// apart for those who see red and green alike.
inline constexpr StatusColours kUsualStatusColours{0x0000C0, 0x0060C0, 0xC00000, 0x007000};

// A colour (0x00BBGGRR) of its name, in any case, or of "#RRGGBB"; nothing for any other text.
std::optional<std::int32_t> colour_of(std::string_view text);
// The name, else "#RRGGBB".
std::string colour_text(std::int32_t colour);

}  // namespace kavo
