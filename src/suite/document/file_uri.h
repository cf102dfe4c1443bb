// Writes and reads file names in attributes of XLIFF, which are URIs or are read like URIs.
#pragma once

#include <string>
#include <string_view>

namespace kavo {

// The URI of a file beside the document.
std::string uri_of(std::string_view file_name);
// A file name that people read. Only characters that XML lacks, and a "%" that would look like an escape, are escaped
// as in a URI.
std::string readable_name(std::string_view file_name);
// Reads either form. Decodes "%20" and the like. A "%" without two hexadecimal digits stays.
std::string from_uri(std::string_view uri);

}  // namespace kavo
