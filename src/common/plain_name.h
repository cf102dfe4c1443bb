// Names that come from a document: each must be one plain file name wherever the document is opened.
#pragma once

#include <string_view>

namespace kavo {

// Why a name (UTF-8, invalid bytes allowed) is not one plain file name; "" when it is. The rules are the same on every
// system, so that a document is refused everywhere or nowhere: no separator of folders, no drive or stream, no ".." or
// anything that counts as "..", no name of a device, no control character, not empty.
std::string_view plain_name_problem(std::string_view name);

}  // namespace kavo
