// A bilingual document that carries its skeleton: one file to send away, and to rebuild from.
#pragma once

#include <string_view>

#include "suite/bilingual_document.h"

namespace kavo {

// Writes the document, as its file stands, with its skeleton inside; a file of the target's name is replaced. Throws
// `failure` (53 when the document has no skeleton): the target is then as it was.
void copy_with_skeleton(const BilingualDocument& document, std::u16string_view target);

}  // namespace kavo
