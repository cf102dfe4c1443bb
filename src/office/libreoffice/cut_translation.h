// Cuts the translation of a text with links and fields, which stay where they are in the document.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "office/libreoffice/office_xml.h"

namespace kavo {

// The runs of text between two links or fields, and the pieces of the translation for them. Positions count in the text
// that is replaced, in UTF-16 units.
struct Stretch {
  std::size_t begin, end;
  std::vector<std::size_t> runs;
  std::vector<TextPiece> pieces;
};

// A translation, cut at its links and fields. There is one stretch more than links and fields.
struct CutTranslation {
  std::vector<Stretch> stretches;
  std::vector<std::size_t> fixed;  // the runs that are links and fields
  std::vector<std::u16string> fixed_texts;
};

// Throws office_failure() when the links and fields of the translation are not those of the text, in its order. `place`
// is named in the message.
CutTranslation cut_at_fixed_runs(const TranslatedText& translation, std::string_view place);
[[noreturn]] void refuse_fixed_runs(std::string_view place);

}  // namespace kavo
