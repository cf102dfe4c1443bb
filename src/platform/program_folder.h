// The folder of the running library, and the user's own folder.
#pragma once

#include <string>

namespace kavo {

// The folder, without "\" at its end, of the module that this code is part of: the DLL on Windows when it was loaded
// into a host, else the program itself. Rests on GetModuleFileName and on /proc/self/exe. Throws `failure`.
std::u16string program_folder();

// The user's own folder, without "\" at its end, as the environment names it (HOME, USERPROFILE); "" when it does not.
std::u16string home_folder();

}  // namespace kavo
