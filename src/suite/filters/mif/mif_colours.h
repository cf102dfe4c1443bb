// The colours of highlighting in MIF: named colours of the document's catalogue, set by the fonts of a text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kavo::mif {

// Writes the opening of a catalogue (or of another statement) with the definitions of all four colours (0x00BBGGRR)
// behind it (or, in a catalogue of their own, before it).
void append_colour_definitions(std::string_view opening, const std::uint32_t (&colours)[4], std::string& bytes);

// Writes the statements of a segment in the colour of that number (0 to 3): every font among them gets it, one before
// them sets it, one behind them sets `font` (a statement, "" for the paragraph's own) or the last one of theirs again.
// `separator` goes between statements.
void append_coloured(std::string_view segment, std::size_t colour, std::string_view font, std::string_view separator,
                     std::string& bytes);

}  // namespace kavo::mif
