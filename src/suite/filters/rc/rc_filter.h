// The filter of resource scripts ("K19GCP"): a segment for each string, caption, control, menu item and version value.
//
// The texts in the source language become those of the target language: the LANGUAGE statement in front of them and the
// code page that they are in change with them; blocks in other languages stay. Identifiers are the names of segments.
// Line ends, tabs and printf markers are codes. What is no text stays: accelerators, toolbars, data, message tables.
//
// A changed text is one literal in the place of those that it was, in the target's code page, with numbers for
// characters that it lacks.
#pragma once

#include <memory>

#include "suite/filters/filter.h"

namespace kavo {

std::unique_ptr<Filter> make_rc_filter();

}  // namespace kavo
