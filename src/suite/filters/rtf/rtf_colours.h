// The colours of highlighting in RTF: entries of the document's colour table, set for the characters of a text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "suite/document/translation_status.h"

namespace kavo::rtf {

// Writes the content of a colour table and adds the four colours (0x00BBGGRR). For "" writes a whole table. Returns the
// number of the first added colour.
std::int32_t append_colours(std::string_view original, const SegmentColours& colours, std::string& bytes);

// Writes the bytes of a segment in colour `colour`, and restores the source's colour after them. Texts in codes (notes,
// text boxes) have colours of their own.
void append_coloured(std::string_view segment, std::int32_t colour, std::int32_t last_colour, std::string& bytes);

}  // namespace kavo::rtf
