// File name patterns with the meaning that FindFirstFile gives them.
#pragma once

#include <string_view>

namespace kavo {

// True when the pattern fits the whole name; case does not matter. "*" stands for any characters; "?" for one other
// than ".", or for none before a "." and at the end of the name; "." before "*" or "?" also for the end of the name
// (so "*.*" fits a name without a dot); a pattern that ends in "*." fits names without a dot only.
bool matches_wildcard(std::u16string_view name, std::u16string_view pattern);

}  // namespace kavo
