// Compares two sequences of texts that should be equal, and reports the differences as a person would.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace kavo {

enum class TextChange {
  kLost,         // expected, but missing
  kDoubled,      // found once more than expected
  kAdded,        // found, but expected nowhere
  kChanged,      // another text in its place
  kBrokenCodes,  // the text is right, its inline codes are not
};

struct TextFinding {
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  TextChange change = TextChange::kChanged;
  std::size_t expected = kNone;  // index; kNone for a surplus text
  std::size_t found = kNone;     // index; kNone for a lost text
  // The place among the expected texts: the index of the text itself, or of the one before a surplus text; kNone at the
  // start.
  std::size_t place = kNone;
  bool operator==(const TextFinding&) const = default;
};

// Compares coded texts in order; empty when they are equal. A text too long for one segment is the same text wherever
// it was cut. Linear in time: where the sequences differ they are brought together again at the nearest equal texts
// within a window of a few dozen, so a long missing piece is reported text by text, perhaps as changed texts.
std::vector<TextFinding> compare_texts(std::span<const std::string_view> expected,
                                       std::span<const std::string_view> found);

}  // namespace kavo
