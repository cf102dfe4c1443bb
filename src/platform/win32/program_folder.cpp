#include "platform/program_folder.h"

#include <windows.h>

#include "platform/win32/system_error.h"
#include "platform/win32/text.h"

namespace kavo {
namespace {

[[noreturn]] void throw_unknown() {
  const failure reason = system_failure(GetLastError());
  throw failure(reason.number(), u"The folder of this program cannot be found: " + reason.description(),
                reason.source());
}

}  // namespace

std::u16string program_folder() {
  HMODULE module = nullptr;
  if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                          reinterpret_cast<LPCWSTR>(&program_folder), &module))
    throw_unknown();
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0) throw_unknown();
    if (length < path.size()) {
      path.resize(length);
      return from_wide(path.substr(0, path.rfind(L'\\')));
    }
    path.resize(path.size() * 2);
  }
}

std::u16string home_folder() {
  std::wstring folder(GetEnvironmentVariableW(L"USERPROFILE", nullptr, 0), L'\0');
  folder.resize(GetEnvironmentVariableW(L"USERPROFILE", folder.data(), static_cast<DWORD>(folder.size())));
  while (folder.ends_with(L'\\')) folder.pop_back();
  return from_wide(folder);
}

}  // namespace kavo
