#include "automation_server/module.h"

#include <atomic>

#include "platform/win32/dispatch.h"
#include "platform/win32/system_error.h"

// The linker's name for the first byte of the module: its address is the module's handle.
extern "C" IMAGE_DOS_HEADER __ImageBase;  // NOLINT(bugprone-reserved-identifier)

namespace kavo {
namespace {

std::atomic<long> references{0};

}  // namespace

std::wstring module_path() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetModuleFileNameW(reinterpret_cast<HMODULE>(&__ImageBase), path.data(), static_cast<DWORD>(path.size()));
    if (length == 0) throw_last_error();
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

void add_module_reference() noexcept { ++references; }
void release_module_reference() noexcept { --references; }
bool module_in_use() noexcept { return references > 0 || live_dispatch_objects() > 0; }

}  // namespace kavo
