// Finds a block of PHP that script protection ends too early.
//
// By contract a block ends at the first "?>". PHP itself continues after one inside a literal or a comment between "/*"
// and "*/": what follows is still code, although it looks like page text.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "formats/script/token.h"

namespace kavo {

// Where the "?>" of the first such block is in the script file, in bytes from 0. Nothing when there is no such block.
// `server` is the language of the page's server blocks until it declares another one. Throws `failure` when the file
// cannot be read.
std::optional<std::uint64_t> find_torn_script(std::u16string_view script_file, script::Language server);

}  // namespace kavo
