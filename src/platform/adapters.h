// The system's adapters, one for each port. Each is made at its first use, lives until the process ends and holds no
// state that belongs to a thread.
#pragma once

#include "platform/ports.h"

namespace kavo {

FileSystem& system_files();
const CodePage& system_code_page();
Registry& system_registry();
ProfileFiles& system_profile_files();
Shell& system_shell();
Desktop& system_desktop();
Clock& system_clock();
Automation& system_automation();

}  // namespace kavo
