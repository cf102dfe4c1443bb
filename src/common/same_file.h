// Finds out whether two names mean the same file: through links, another case of letters, "..", short names.
#pragma once

#include <string_view>

namespace kavo {

// Compares identities when either file exists; otherwise the identities of the folders, and the names without case.
// Throws `failure` when the files cannot be looked up, or for an impossible name.
bool is_same_file(std::u16string_view a, std::u16string_view b);

}  // namespace kavo
