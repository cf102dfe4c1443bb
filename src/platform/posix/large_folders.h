// Which names the large folders of this host hold when case does not count, and those that are asked again and again.
//
// Nothing but a look at every name says that no spelling of a name exists, and a run asks that a hundred times for each
// document, half of the times in the run's own scratch folder. So the names of such a folder are kept, and the system's
// own notes (inotify(7)) keep them current: a note is there before the call that changed the folder returns, whichever
// process made it. A folder on a volume that other machines change without such notes is not kept.
#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kavo {

// Folders with fewer names are listed as fast as they are kept, once.
inline constexpr std::size_t kLargeFolder = 64;

// The names of the folder that are `name` when case does not count, in the order of bytes; nothing for a folder that is
// not kept. The folder's status is asked for unless the caller has it. Never throws.
std::optional<std::vector<std::string>> spellings_in_large_folder(
    const std::string& folder, const std::string& name, const std::optional<struct stat>& status = {}) noexcept;

// Says that a folder with so many names was listed: when it is worth it, the names are kept from now on, where that can
// be done. Never throws.
void note_listing(const std::string& folder, std::size_t names) noexcept;

}  // namespace kavo
