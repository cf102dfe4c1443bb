// The texts of presentations and workbooks as they are translated: cut into runs that share one formatting.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kavo {

// If a text has more than one run, each run is one inline code in the translation.
struct TextRun {
  enum class Kind {
    kText,
    kLink,   // a hyperlink that is one character of the document; its text can be translated
    kField,  // a page number, a date: stands for itself
  };
  Kind kind = Kind::kText;
  std::u16string text;  // "\n" is a line break; nothing for kField

  bool operator==(const TextRun&) const = default;
};

// A part of a translation: text for one run. `run` counts from 0.
struct TextPiece {
  std::size_t run = 0;
  std::u16string text;
};

// The length of a run in its document, in UTF-16 units.
std::size_t run_length(const TextRun& run);
// All texts of the runs, U+FFFC for each field.
std::u16string joined_text(std::span<const TextRun> runs);
// True when there is nothing to translate: only white space and fields.
bool is_blank(std::span<const TextRun> runs);

// Eight hexadecimal digits that change when a text does: two sums over its UTF-16 units, each modulo 65,521, the first
// from 1, the second of all states of the first (what RFC 1950 does with bytes). Simple enough for a macro.
std::string check_of(std::u16string_view text);

}  // namespace kavo
