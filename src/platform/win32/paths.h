// Paths for the W calls.
#pragma once

#include <string>
#include <string_view>

namespace kavo {

// The form in which a path is given to the system: as it is, or made absolute with the prefix "\\?\" when it is longer
// than the 247 characters that every call takes (a folder's limit: 260 less an 8.3 name). Throws `failure` 75 for a
// path with a zero character, at which the system would silently cut it.
std::wstring system_path(std::u16string_view path);
// GetFullPathName, for a path of any length.
std::wstring full_path(const std::wstring& path);

}  // namespace kavo
