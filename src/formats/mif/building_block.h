// Finds building blocks: parts of formats and marker texts that the layout program fills in or acts on, such as
// `<$pagenum>`, `<n+>`, `< =0>`, `<Bold>`, `<Default Para Font>`.
//
// In a string the end is escaped: `<$pagenum\>`. A "<" that means itself follows an escaped backslash (`\\<`), for
// which the caller must look. The format: the MIF Reference, a public document.
#pragma once

#include <cstddef>
#include <string_view>

namespace kavo::mif {

// The length in bytes of the building block at the start of `value`, a part of a string's value, including its ">".
// Returns 0 when there is none: for a comparison sign, or when the end is missing or too far away.
std::size_t building_block_length(std::string_view value);

}  // namespace kavo::mif
