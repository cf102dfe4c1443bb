// The plain text filter ("K19TXT"): one segment for each line that holds text.
//
// Script files of server pages (".scr") must have the same tag. They have a filter of their own (script_filter.h), and
// this one hands them over.
#pragma once

#include <memory>

#include "suite/filters/filter.h"

namespace kavo {

std::unique_ptr<Filter> make_text_filter();

}  // namespace kavo
