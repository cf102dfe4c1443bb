// Measures how much two texts have in common, as translators count it: the share of words that need not be changed.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace kavo {

// What is compared: words, or characters in a language that writes without spaces between words.
enum class TextUnits { kWords, kCharacters };
TextUnits text_units_of(std::string_view language);  // the suite's code: "EN-US", "JA"

// One word, number, code or sign of a text: two are equal when the two compare equal. The case of the letters A to Z
// does not matter. All numbers are equal, and so are all codes, because their values do not change how the rest is
// translated.
class TextToken {
 public:
  enum Kind : std::uint32_t { kWord = 0, kNumber = 1, kCode = 2, kSign = 3 };
  TextToken(Kind kind, std::uint64_t hash)
      : value_(static_cast<std::uint32_t>((hash ^ hash >> 32) << 2) | static_cast<std::uint32_t>(kind)) {}
  Kind kind() const { return static_cast<Kind>(value_ & 3); }
  // Codes and signs weigh a quarter of a word: a text with other codes or other punctuation is nearly the same text.
  std::uint32_t weight() const { return kind() <= kNumber ? 4 : 1; }
  std::uint32_t value() const { return value_; }
  bool operator==(const TextToken&) const = default;

 private:
  std::uint32_t value_;  // a hash: texts are compared whole before a translation is attached
};

// Appends the tokens of a coded text.
void append_tokens(std::vector<TextToken>& tokens, std::string_view coded, TextUnits units);

std::uint64_t weight_of(std::span<const TextToken> tokens);

inline constexpr int kLeastSimilarity = 75;  // percent; below it a translation takes longer to correct than to write

// The share of the heavier text that remains unchanged, in percent; 100 for equal tokens. Returns 0 below
// kLeastSimilarity, for texts without a word, and when comparing would take more than `budget` steps. Subtracts the
// steps taken from `budget`.
int similarity(std::span<const TextToken> a, std::span<const TextToken> b, std::uint64_t& budget);

}  // namespace kavo
