// File names in attributes of XLIFF, which are URIs or are read like them.
#pragma once

#include <string>
#include <string_view>

namespace kavo {

// The URI of a file beside the document.
std::string uri_of(std::string_view file_name);
// A file name that people read: escaped as in a URI is only what XML lacks and a "%" that would be taken for an escape.
std::string readable_name(std::string_view file_name);
// The name of either. Decodes "%20" and the like; a "%" without two hexadecimal digits stays.
std::string from_uri(std::string_view uri);

}  // namespace kavo
