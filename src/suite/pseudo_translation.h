// Texts that look translated and can still be read: a test of the whole road without a translator.
#pragma once

#include <string>
#include <string_view>

#include "suite/text_coding.h"

namespace kavo {

// The coded text in brackets, its letters with accents where the coding has them; codes stay.
std::string pseudo_translation(std::string_view coded, const TextCoding& coding);

}  // namespace kavo
