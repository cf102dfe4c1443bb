// The patterns that select files of a folder tree.
#pragma once

#include <string_view>

namespace kavo {

// True when a pattern selects a file, given its path from the top of the tree. "*" stands for any characters of one
// name, "?" for one of them, "**" for any characters, also across folders; "**/" also for no folder. A pattern without
// "/" is compared with the name of the file and of each folder above it, one with "/" with the path and with each
// folder above. So a folder's name selects all that is in it. A "/" at the end means folders only. "\" is "/"; case
// does not matter.
bool selects(std::u16string_view pattern, std::u16string_view path);

}  // namespace kavo
