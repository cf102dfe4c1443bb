// Where the running library lies.
#pragma once

#include <string>

namespace kavo {

// The folder, without "\" at its end, of the module that this code is part of: the DLL on Windows when it was loaded
// into a host, else the program itself. Rests on GetModuleFileName and on /proc/self/exe. Throws `failure`.
std::u16string program_folder();

}  // namespace kavo
