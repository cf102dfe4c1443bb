// The core's paths on this host.
#pragma once

#include <sys/stat.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kavo {

// The host path that a core path means. An existing path is taken as it is. Otherwise each component becomes the entry
// whose name differs in case only; components that do not exist stay as written, so that a new file gets its name from
// the caller and its folder from the disk. Throws `failure` when a component cannot be looked up, and 75 for a path
// with a zero character, at which the system would silently cut it.
std::string resolve(std::u16string_view path);

// The same together with the result of the look-up, so that nobody has to ask the system again.
struct FoundPath {
  std::string host;
  std::optional<struct stat> status;  // of the name itself, as lstat(2); nothing for a name that does not exist
  // What stat(2) says of it. Throws `failure` when that cannot be found out.
  std::optional<struct stat> target_status() const;
};
FoundPath look_up(std::u16string_view path);

// What lstat(2) or stat(2) says. Nothing when there is no such entry; throws `failure` when that cannot be found out.
std::optional<struct stat> status_of(const std::string& path, bool follow_links = true);

// Calls `visit` with the name of each entry of a folder ("." and ".." too), in the system's order. Does nothing when
// the folder does not exist. Throws `failure` when it cannot be read to its end.
void for_each_entry(const std::string& folder, const std::function<void(const char* name)>& visit);

// Splits a host path after its last "/": "a/b" into "a/" and "b".
struct SplitPath {
  std::string folder;
  std::string name;
};
SplitPath split_host_path(const std::string& path);

}  // namespace kavo
