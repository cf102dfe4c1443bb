// The filter of script files (".scr"), which hold the scripts of a page between markers: the texts that people read are
// segments, everything else stays in the skeleton.
//
// It reads a file twice and therefore keeps all of it in memory, because a variable may get its text in one block and
// be written into the page in a much later one.
#pragma once

#include <memory>
#include <string_view>

#include "suite/filters/filter.h"

namespace kavo {

// What DocumentFacts::data begins with for such a document. In documents of earlier versions it is empty; their
// segments are lines.
inline constexpr std::string_view kScriptFacts = "script 1";

std::unique_ptr<Filter> make_script_filter();

}  // namespace kavo
