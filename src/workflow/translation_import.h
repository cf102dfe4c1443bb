// Takes over the translations in a file that an editor wrote into a bilingual document, text by text.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "common/messages.h"
#include "common/progress_event.h"
#include "suite/document/bilingual_document.h"

namespace kavo {

class TranslationImport {
 public:
  // The document that takes the translations. Throws `failure` when it cannot be read, or holds a unit twice.
  explicit TranslationImport(std::u16string_view tud);

  const BilingualDocument& document() const { return document_; }
  // "" when a document with this header has the same source document and languages, otherwise the difference. Facts
  // that it does not state are not compared.
  std::string difference(const TudHeader& given) const;

  struct Counts {
    std::uint64_t taken = 0;    // texts and statuses that changed
    std::uint64_t refused = 0;  // units, each with a message
  };
  // Takes over the translations of an XLIFF document and saves. A unit that does not match is named in a message and
  // left alone: one that does not exist, is missing, appears twice, has another source text, or cannot be rebuilt.
  // Throws `failure` for a document that cannot be read, or that has another source or other languages; then nothing is
  // changed.
  Counts take(std::u16string_view xliff, MessageList& messages, ProgressEvent* progress = nullptr);

 private:
  struct OwnUnit {
    std::size_t index = 0;
    XliffDetails details;
  };
  class OwnReader;
  class GivenIds;
  class GivenUnits;
  class SkeletonFile;

  BilingualDocument document_;
  std::map<std::string, OwnUnit, std::less<>> units_;  // by id
};

}  // namespace kavo
