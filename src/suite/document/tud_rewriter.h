// Changes inside a bilingual document that any editor may have written: all bytes but the changed places stay.
#pragma once

#include <optional>
#include <string_view>

#include "suite/document/bilingual_document.h"

namespace kavo {

// What shall become of a document's units, asked for in the order of the file.
class TudChanges {
 public:
  virtual ~TudChanges() = default;
  // Before the first unit.
  virtual void header(const TudHeader& header) { static_cast<void>(header); }
  // The unit (index from 0) as it shall be, nothing to leave it; its views must be valid until the next call.
  virtual std::optional<BilingualSegment> change(std::size_t index, const TudUnit& unit) = 0;
  // Of a unit that changes: what XLIFF shall say beside that, null for what the status asks for. Valid until the end.
  virtual const XliffDetails* details(std::size_t index) {
    static_cast<void>(index);
    return nullptr;
  }
};

// Writes the document anew and puts it in the place of the old one. Throws `failure` (5 when a unit's source text is
// not the given one: somebody else has changed the file); the file is then as it was.
void rewrite_tud(std::u16string_view path, TudChanges& changes, ProgressEvent* progress = nullptr);

}  // namespace kavo
