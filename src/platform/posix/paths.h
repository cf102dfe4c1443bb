// The core's paths on this host.
#pragma once

#include <string>
#include <string_view>

namespace kavo {

// The host path that a core path means: the name as it is where an entry of that name exists, else, component by
// component, the entry whose name differs in case only; components that do not exist are taken as written, so that a
// new file gets its name from the caller and its folder from the disk. Throws `failure` 75 for a path that holds a
// zero character, which the system would silently cut.
std::string resolve(std::u16string_view path);

// Splits a host path behind its last "/": "a/b" to "a/" and "b".
struct SplitPath {
  std::string folder;
  std::string name;
};
SplitPath split_host_path(const std::string& path);

}  // namespace kavo
