// Characters that RTF writes as control words and symbols.
#pragma once

#include <string_view>

#include "formats/rtf/token_scanner.h"

namespace kavo::rtf {

// The character that a control word or symbol stands for, UTF-8; "" for one that stands for none. A tab and a line
// break are none: they are more than text.
std::string_view character_of(const Token& token);

// How a character is always written, "" for one that has no form of its own: blanks and hyphens that would be lost
// among others, and what the syntax needs.
std::string_view written_form(std::string_view character);

}  // namespace kavo::rtf
