// The registry entries by which automation finds the library's classes.
#pragma once

namespace kavo {

enum class RegistrationScope {
  kMachine,  // HKEY_LOCAL_MACHINE\Software\Classes
  kUser,     // HKEY_CURRENT_USER\Software\Classes
};

// Writes the entries of every class and of the type library. When it throws `failure` nothing is left registered.
void register_library(RegistrationScope scope);

// Removes the entries again without a trace; missing entries are not an error. An identifier that another library has
// taken over since then stays. Throws `failure` for entries that cannot be removed.
void unregister_library(RegistrationScope scope);

}  // namespace kavo
