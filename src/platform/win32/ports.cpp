// The ports of each thread begin as the system's adapters.
#include "platform/ports.h"

#include "platform/win32/adapters.h"

namespace kavo {

Ports& ports() {
  thread_local Ports current{&system_files(), &system_code_page(), &system_registry(), &system_profile_files(),
                             &system_shell(), &system_desktop(),   &system_clock(),    &system_automation()};
  return current;
}

}  // namespace kavo
