// The colours that highlighting gives to texts by their status, as the editor stores them for the user.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace kavo {

// 0x00BBGGRR: untranslated, fuzzy, 100 % match, translated.
using StatusColours = std::array<std::int32_t, 4>;

// `status` is a place in StatusColours. Nothing for a colour that is not stored; a registry that cannot be read stores
// none.
std::optional<std::int32_t> stored_status_colour(std::size_t status);
// Stores a colour, or forgets it. Throws `failure`.
void store_status_colour(std::size_t status, std::optional<std::int32_t> colour);
// All four, with a colour of `unset` for each that is not stored.
StatusColours stored_status_colours(const StatusColours& unset);

}  // namespace kavo
