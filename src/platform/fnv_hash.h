// FNV-1a with 64 bits, for look-up keys and checksums. It notices accidents (a change of one unit always changes the
// value), not deliberate forgery.
#pragma once

#include <cstdint>
#include <string_view>

namespace kavo {

constexpr std::uint64_t kFnvSeed = 0xCBF29CE484222325;

// The hash with one more unit: a byte, or a character of a wider text.
constexpr std::uint64_t fnv_add(std::uint64_t hash, std::uint32_t unit) noexcept {
  return (hash ^ unit) * 0x100000001B3;
}

constexpr std::uint64_t fnv_add(std::uint64_t hash, std::string_view bytes) noexcept {
  for (const char byte : bytes) hash = fnv_add(hash, static_cast<unsigned char>(byte));
  return hash;
}

constexpr std::uint64_t fnv_hash(std::string_view bytes) noexcept { return fnv_add(kFnvSeed, bytes); }

}  // namespace kavo
