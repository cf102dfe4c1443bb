// Checks Office documents for `verify`. What an Office program writes of one document differs from time to time (dates,
// the order of fonts), so what goes back to the program is compared with what came from it.
#pragma once

#include <optional>
#include <string>

#include "common/file_comparison.h"

namespace kavo {

// Rebuilds a bilingual document that was made of an Office document, whose form lies beside it. Returns where the form
// that went back to the Office program differs from that. Throws `failure` when the document cannot be rebuilt.
std::optional<FileDifference> form_difference(const std::u16string& document, const std::u16string& bilingual_document);

}  // namespace kavo
