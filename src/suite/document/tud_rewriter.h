// Changes places inside a bilingual document that any editor may have written. All other bytes stay.
#pragma once

#include <optional>
#include <string_view>

#include "suite/document/bilingual_document.h"

namespace kavo {

// Says what must become of a document's units. It is asked in the order of the file.
class TudChanges {
 public:
  virtual ~TudChanges() = default;
  // Called before the first unit.
  virtual void header(const TudHeader& header) { static_cast<void>(header); }
  // The unit (index from 0) as it must become, or nothing to leave it. Its views must be valid until the next call.
  virtual std::optional<BilingualSegment> change(std::size_t index, const TudUnit& unit) = 0;
  // For a unit that changes: what else XLIFF must say, or null for what the status implies. Valid until the end.
  virtual const XliffDetails* details(std::size_t index) {
    static_cast<void>(index);
    return nullptr;
  }
};

// Writes the changed document and puts it in the place of the old one. Throws `failure` (5 when a unit's source text is
// not the given one, because somebody else has changed the file). The file is then as it was.
void rewrite_tud(std::u16string_view path, TudChanges& changes, ProgressEvent* progress = nullptr);

}  // namespace kavo
