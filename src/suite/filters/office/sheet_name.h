// What can be the name of a sheet in a workbook: at most 31 UTF-16 units, without []:\/?* and without an apostrophe at
// either end (Microsoft Excel's rules for sheet names).
#pragma once

#include <string>
#include <string_view>

namespace kavo::office {

// The nearest name that a sheet can have, UTF-8: other characters in the place of those it cannot have, cut when it is
// too long. "Sheet" for nothing.
std::string valid_sheet_name(std::string_view name);

}  // namespace kavo::office
