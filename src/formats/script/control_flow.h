// Server blocks that decide which part of a page is sent: "If", "Else", "End If", loops, braces.
#pragma once

#include <string_view>

#include "formats/script/page_scripts.h"

namespace kavo::script {

// Whether a block opens, divides or ends a construct that reaches beyond it, so that the page behind it is not the
// continuation of the page before it. `text` is that of all blocks. False for a value, for declarations, for a client's
// script, and for a language that is not known.
bool divides_page(std::string_view text, const Piece& piece);

}  // namespace kavo::script
