// Whether two names mean one file: through links, other letters, "..", short names.
#pragma once

#include <string_view>

namespace kavo {

// Compares identities where both names exist; else the identities of their folders, and the names without case. Throws
// `failure` when the files cannot be looked at, or for a name that cannot be.
bool is_same_file(std::u16string_view a, std::u16string_view b);

}  // namespace kavo
