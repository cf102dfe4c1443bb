#include "office/libreoffice/cut_translation.h"

#include "office/libreoffice/office_listener.h"
#include "platform/unicode.h"

namespace kavo {

void refuse_fixed_runs(std::string_view place) {
  throw office_failure(to_utf16(place) +
                       u": the links and fields of the translation are not those of the document, in its order");
}

CutTranslation cut_at_fixed_runs(const TranslatedText& translation, std::string_view place) {
  const std::vector<TranslatedText::Run>& runs = translation.runs;
  CutTranslation cut;
  cut.stretches = {{0, 0, {}, {}}};
  std::size_t at = 0;
  for (std::size_t i = 0; i < runs.size(); ++i) {
    if (runs[i].kind != TextRun::Kind::kText) {
      cut.fixed.push_back(i);
      cut.stretches.push_back({at + 1, at + 1, {}, {}});
    } else {
      cut.stretches.back().runs.push_back(i);
      cut.stretches.back().end = at + runs[i].length;
    }
    at += runs[i].length;
  }
  for (const TextPiece& piece : translation.pieces) {
    const std::size_t done = cut.fixed_texts.size();
    if (runs[piece.run].kind == TextRun::Kind::kText) {
      cut.stretches[done].pieces.push_back(piece);
    } else {
      if (done == cut.fixed.size() || cut.fixed[done] != piece.run) refuse_fixed_runs(place);
      cut.fixed_texts.push_back(piece.text);
    }
  }
  if (cut.fixed_texts.size() != cut.fixed.size()) refuse_fixed_runs(place);
  return cut;
}

}  // namespace kavo
