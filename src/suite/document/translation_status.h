// How far the translation of a segment is. The numbers are what hosts read and write.
#pragma once

#include <cstdint>

namespace kavo {

enum class TranslationStatus : std::uint8_t {
  kUntranslated = 0,
  kLocked = 1,  // needs no translation
  kTranslated = 2,
  kFuzzy = 3,  // from a similar text, to be reviewed
  kExact = 4,  // from a translation of exactly this text
  kApproved = 5,
};

}  // namespace kavo
