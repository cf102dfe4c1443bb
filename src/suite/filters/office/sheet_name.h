// The rules for names of sheets in a workbook: at most 31 UTF-16 units, none of []:\/?*, no apostrophe at either end
// (Microsoft Excel's rules).
#pragma once

#include <string>
#include <string_view>

namespace kavo::office {

// The nearest valid name, in UTF-8: invalid characters are replaced, and a name that is too long is cut. "Sheet" when
// nothing is left.
std::string valid_sheet_name(std::string_view name);

}  // namespace kavo::office
