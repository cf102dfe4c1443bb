// A new bilingual document, filled with what an old one and other documents have: the update of one document whose
// source has changed.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "suite/memory/old_document.h"
#include "suite/memory/tmx_file.h"
#include "suite/memory/unit_update.h"

namespace kavo {

struct UpdateCounts {
  std::uint64_t kept = 0;     // the same text in the same place
  std::uint64_t moved = 0;    // the same text elsewhere
  std::uint64_t similar = 0;  // from a similar text, to be reviewed
  std::uint64_t fresh = 0;    // nothing like it is known; locked ones do not count
  std::uint64_t removed = 0;  // texts of the old document that neither it nor a similar one holds now
  UpdateCounts& operator+=(const UpdateCounts& other);
  bool operator==(const UpdateCounts&) const = default;
};

struct DocumentUpdate {
  UpdateCounts counts;
  std::vector<TmxUnit> removed;  // translations that the new document does not hold any more
};

// Whether the new document, which was just made, would say after its update what the old one says: its source was taken
// apart in the same way, byte for byte. Throws `failure` when it cannot be read.
bool says_the_same(std::u16string_view tud, const OldDocument& old);

// Writes into the new document, untranslated as it is. A translation that rebuilding the document
// would refuse is taken for review, without its optional codes; where that is refused, too, it is only offered. `old`
// is nullptr where there was no document. Throws `failure`: the new document is then as it was.
DocumentUpdate update_document(std::u16string_view tud, const OldDocument* old, KnownTexts& known);

}  // namespace kavo
