// What a translator sees of a statement among the texts of a MIF document.
#pragma once

#include <string>
#include <string_view>

#include "formats/mif/string_coding.h"

namespace kavo::mif {

// For example "Page Count" for a variable, "Marker: Index, lexical parsing", "ATbl 5", in UTF-8. `statement` must be
// complete.
std::string shown_of_code(std::string_view statement, bool is_variable, const StringCoding& coding);
// The statement's first string that is not empty, "" when there is none: the name of a variable or of the format of a
// cross-reference, the index entry of a marker.
std::string name_in(std::string_view statement, const StringCoding& coding);

}  // namespace kavo::mif
