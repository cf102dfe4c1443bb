// Which names the large folders of this host hold when case does not count.
//
// Nothing but a look at every name says that no spelling of a name exists, and a run asks that a hundred times for each
// document. So the names of a large folder are kept, and the system's own notes (inotify(7)) keep them current: a note
// is there before the call that changed the folder returns, whichever process made it. A folder on a volume that other
// machines change without such notes is not kept.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kavo {

// Folders with fewer names are listed as fast as they are kept.
inline constexpr std::size_t kLargeFolder = 64;

// The names of the folder that are `name` when case does not count, in the order of bytes; nothing for a folder that is
// not kept. Never throws.
std::optional<std::vector<std::string>> spellings_in_large_folder(const std::string& folder,
                                                                  const std::string& name) noexcept;

// Keeps the names of a folder from now on, where that can be done. Never throws.
void keep_large_folder(const std::string& folder) noexcept;

}  // namespace kavo
