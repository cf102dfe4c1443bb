// Remembers the names in large folders, to find a name whose case does not matter.
//
// Only a look at every name of a folder shows that no spelling of a name exists, and a run needs to know that a hundred
// times for each document. So the names of a large folder are kept as hashes. inotify(7) keeps them current: it reports
// a change before the call that changed the folder returns, whichever process made the call. Folders on volumes that
// other machines can change are not kept, because inotify does not report those changes.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace kavo {

// With fewer names, listing a folder is as fast as keeping it.
inline constexpr std::size_t kLargeFolder = 64;

// How many names in the folder are `name` or differ from it in case only; nothing for a folder that is not kept. Never
// throws.
std::optional<std::size_t> spellings_in_large_folder(const std::string& folder, const std::string& name) noexcept;

// Keeps the names of a folder from now on, if possible. Never throws.
void keep_large_folder(const std::string& folder) noexcept;

}  // namespace kavo
