// The colours of highlighting in MIF: named colours of the document's catalogue, set by the fonts of a text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "suite/document/translation_status.h"

namespace kavo::mif {

// Writes the opening of a statement and the definitions of all four colours (0x00BBGGRR): after the opening if that
// begins a colour catalogue, otherwise before it in a catalogue of their own.
void append_colour_definitions(std::string_view opening, const SegmentColours& colours, std::string& bytes);

// Writes the statements of a segment in colour `colour` (0 to 3). A font before the statements and every font among
// them sets it. A font after them restores the last font of the segment or, if it has none, `font` (a statement, "" for
// the paragraph's own). `separator` goes between statements.
void append_coloured(std::string_view segment, std::size_t colour, std::string_view font, std::string_view separator,
                     std::string& bytes);

}  // namespace kavo::mif
