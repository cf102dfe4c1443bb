// Finds names without regard to case in large folders of this host, and in folders that are asked again and again.
//
// Only a look at every name shows that no spelling of a name exists, and a run asks for that a hundred times for each
// document, half of the times in its own scratch folder. So the names of such a folder are kept, and the system's notes
// (inotify(7)) keep them up to date: a note arrives before the call that changed the folder returns, in whichever
// process. A folder on a volume that other machines change without such notes is not kept.
//
// A program that has asked for notes waits for about 10 ms when it ends. So a folder is kept only when its listings have
// taken as long as that.
#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace kavo {

// The time that is worth a wait at the end, in names listed, and how many names to count for a listing itself.
inline constexpr std::size_t kNamesWorthKeeping = 50'000;
inline constexpr std::size_t kNamesOfOneListing = 50;

// The names of the folder that are `name` when case does not count, in the order of bytes; nothing for a folder that is
// not kept. The folder's status is asked for unless the caller has it. Never throws.
std::optional<std::vector<std::string>> spellings_in_large_folder(
    const std::string& folder, const std::string& name, const std::optional<struct stat>& status = {}) noexcept;

// Reports that a folder with this many names was listed. If it is worthwhile and possible, its names are kept from now
// on. Never throws.
void note_listing(const std::string& folder, std::size_t names) noexcept;

}  // namespace kavo
