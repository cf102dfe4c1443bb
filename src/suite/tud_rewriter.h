// Changes inside a bilingual document that any editor may have written: all bytes but the changed places stay.
#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "suite/bilingual_document.h"

namespace kavo {

// Asked for each unit in the order of the file (index from 0): the segment as it shall be, nothing to leave it.
using ChangedSegment = std::function<std::optional<BilingualSegment>(std::size_t index)>;

// Writes the document anew and puts it in the place of the old one. Throws `failure` (5 when a unit's source text is
// not the given one: somebody else has changed the file); the file is then as it was.
void rewrite_tud(std::u16string_view path, const ChangedSegment& changed);

}  // namespace kavo
