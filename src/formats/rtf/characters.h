// Characters that RTF writes as control words and symbols.
#pragma once

#include <string_view>

#include "formats/rtf/token_scanner.h"

namespace kavo::rtf {

// The character that a control word or symbol stands for, in UTF-8. "" for any other token, also for a tab and a line
// break, which are more than text.
std::string_view character_of(const Token& token);

// The control word or symbol that a character must be written as; "" for most characters. Special blanks and hyphens
// have one, because they look like ordinary ones, and so do the characters of the syntax.
std::string_view written_form(std::string_view character);

}  // namespace kavo::rtf
