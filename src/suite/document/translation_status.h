// How far the translation of a segment is, and the colours that show it. The numbers are what hosts read and write.
#pragma once

#include <array>
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

// The colours of highlighting, 0x00BBGGRR: untranslated, fuzzy, 100 % match, translated.
using SegmentColours = std::array<std::uint32_t, 4>;

}  // namespace kavo
