// The ports of each thread begin as the adapters of the system that this is built for.
#include "platform/ports.h"

#include "platform/adapters.h"

namespace kavo {

Ports& ports() {
  thread_local Ports current{&system_files(), &system_code_page(), &system_registry(), &system_profile_files(),
                             &system_shell(), &system_desktop(),   &system_clock(),    &system_automation()};
  return current;
}

}  // namespace kavo
