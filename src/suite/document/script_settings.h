// What a user says about the texts of scripts.
#pragma once

#include <cstdint>
#include <string>

namespace kavo {

// Which texts of scripts are offered.
struct ScriptSettings {
  enum class Offer : std::uint8_t {
    kLikely,  // texts; doubtful ones locked
    kAll,     // doubtful ones open, too
    kNone,
  };
  Offer offer = Offer::kLikely;
  // Names of functions, separated by blanks: those whose arguments are texts, and those whose arguments never are.
  std::string texts;
  std::string never;
};

}  // namespace kavo
