// Writes numbers of things as people do.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kavo {

// "1 text", "2 texts"
inline std::string counted(std::uint64_t count, std::string_view noun) {
  return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

}  // namespace kavo
