// How long an Office program may work on a document without a sign of life before it counts as hung and is ended: a
// per-user program setting ("KAVO", "Office", "TimeLimit"), in seconds, or by the size of the document. A program that
// goes from text to text may take as long as it needs.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace kavo {

inline constexpr std::int32_t kLongestTimeLimit = 86'400;  // seconds

// The limit that the user has stored: seconds from 1 to kLongestTimeLimit, or nothing for the default. Both throw
// `failure` when the registry refuses.
std::optional<std::int32_t> stored_time_limit();
void store_time_limit(std::optional<std::int32_t> seconds);

// The limit for one document, in seconds: what is stored, or else a minute plus half a minute for each megabyte.
double time_limit_for(std::u16string_view document);

}  // namespace kavo
