// The registry and the profile files of the Wine prefix are the program's own already.
#include <windows.h>

#include "support/system.h"

namespace kavo::test {

TestProcess::TestProcess() { SetConsoleOutputCP(CP_UTF8); }
TestProcess::~TestProcess() = default;

}  // namespace kavo::test
