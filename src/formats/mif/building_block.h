// Building blocks: what formats of numbers, references and variables, and the texts of markers, hold among their words
// for the layout program to fill in or to act on: `<$pagenum>`, `<n+>`, `< =0>`, `<Bold>`, `<Default Para Font>`.
//
// In a string the end is escaped: `<$pagenum\>`. A "<" that means itself has an escaped backslash in front (`\\<`),
// which the caller looks for. The format: the MIF Reference, a public document.
#pragma once

#include <cstddef>
#include <string_view>

namespace kavo::mif {

// The bytes of the building block that begins a part of a string's value, up to and with its ">"; 0 when none does: a
// sign of comparison, an end that is missing or too far away.
std::size_t building_block_length(std::string_view value);

}  // namespace kavo::mif
