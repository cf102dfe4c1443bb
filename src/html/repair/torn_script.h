// A block of PHP that script protection ends too early.
//
// By contract a block ends at the first "?>". PHP itself goes on behind one in a literal or in a comment between "/*"
// and "*/": what follows is still its code, though it looks like page.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "formats/script/token.h"

namespace kavo {

// Where in the script file, in bytes from 0, the "?>" of the first such block stands; nothing when there is none.
// `server` is the language of the page's server blocks until it declares another one. Throws `failure` when the file
// cannot be read.
std::optional<std::uint64_t> find_torn_script(std::u16string_view script_file, script::Language server);

}  // namespace kavo
