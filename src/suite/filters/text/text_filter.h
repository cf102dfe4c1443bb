// The plain text filter ("K19TXT"): one segment for each line that holds text.
//
// In the script files of server pages (".scr") the segment of a line shows its code as inline codes that must stay, and
// the texts in quotes as text: a translator cannot break the code, and a line without quoted text holds none.
#pragma once

#include <memory>

#include "suite/filters/filter.h"

namespace kavo {

std::unique_ptr<Filter> make_text_filter();

}  // namespace kavo
