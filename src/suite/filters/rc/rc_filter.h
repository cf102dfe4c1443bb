// The filter of resource scripts ("K19GCP"): a segment for each string, caption, control, menu item and version value.
//
// The texts in the source language become those of the target language: their LANGUAGE statement and their code page
// change, too. Blocks in other languages stay. Identifiers are the names of segments. Line ends, tabs and printf
// markers are codes. Everything else stays: accelerators, toolbars, data, message tables.
//
// A changed text is written as one literal in the target's code page, with numbers for characters that the code page
// lacks.
#pragma once

#include <memory>

#include "suite/filters/filter.h"

namespace kavo {

std::unique_ptr<Filter> make_rc_filter();

}  // namespace kavo
