// Whether a person can read everything that a dialog shows.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace kavo::test {

// One line for each thing wrong with the visible controls of a dialog drawn for `dpi`: one that reaches out of the
// dialog, two that overlap, a text that does not fit. Measured on the windows' rectangles and the extents of their
// texts in their fonts.
std::vector<std::string> layout_faults(HWND dialog, UINT dpi);

}  // namespace kavo::test
