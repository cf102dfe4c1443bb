// Updates one document whose source has changed: fills the new bilingual document with translations from the old one
// and from other documents.
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
  std::uint64_t fresh = 0;    // no similar text is known; locked ones do not count
  std::uint64_t removed = 0;  // texts of the old document that do not occur in the new one, not even in similar form
  UpdateCounts& operator+=(const UpdateCounts& other);
  bool operator==(const UpdateCounts&) const = default;
};

struct DocumentUpdate {
  UpdateCounts counts;
  std::vector<TmxUnit> removed;  // translations that the new document no longer contains
};

// True when an update of the new document, which was just made, would only give the old one again, because its source
// was taken apart in the same way, byte for byte. Throws `failure` when it cannot be read.
bool says_the_same(std::u16string_view tud, const OldDocument& old);

// Fills the new, untranslated document. A translation that rebuilding would refuse is taken over for review without its
// optional codes. If that is refused, too, it is only offered. `old` is nullptr when there was no document. Throws
// `failure`; the new document is then as it was.
DocumentUpdate update_document(std::u16string_view tud, const OldDocument* old, KnownTexts& known);

}  // namespace kavo
