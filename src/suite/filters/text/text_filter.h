// The plain text filter ("K19TXT"): one segment for each line that holds text.
//
// The script files of server pages (".scr") have the same tag, which is fixed, and a filter of their own
// (script_filter.h), to which this one hands them.
#pragma once

#include <memory>

#include "suite/filters/filter.h"

namespace kavo {

std::unique_ptr<Filter> make_text_filter();

}  // namespace kavo
