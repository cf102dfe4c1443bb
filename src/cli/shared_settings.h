// Says whether other programs read what a run leaves in the registry, such as the font map of the last document.
#pragma once

namespace kavo {

// True on Windows, where filters that users start themselves find the font map there. Natively the registry is a file
// of this program's own.
bool settings_are_shared();

}  // namespace kavo
