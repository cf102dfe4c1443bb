// Finds placeholders for values, and addresses, which a translation must keep.
#pragma once

#include <cstddef>
#include <string_view>

namespace kavo::script {

// The length of the placeholder or address at the start of `text`: "{{name}}", "{0}", "${name}", "%s", "%1$d",
// "http://..."; 0 for anything else.
std::size_t placeholder_length(std::string_view text);

}  // namespace kavo::script
