// The colours that highlighting gives to texts by their status, as the editor stores them for the user.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace kavo {

// 0x00BBGGRR: untranslated, fuzzy, 100 % match, translated.
using StatusColours = std::array<std::int32_t, 4>;

// The colour of `status`, an index into StatusColours. Nothing when none is stored or the registry cannot be read.
std::optional<std::int32_t> stored_status_colour(std::size_t status);
// Stores a colour; without one removes it. Throws `failure` when the registry refuses.
void store_status_colour(std::size_t status, std::optional<std::int32_t> colour);
// All four; a status without a stored colour has that of `unset`.
StatusColours stored_status_colours(const StatusColours& unset);

}  // namespace kavo
