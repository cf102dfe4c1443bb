// The shell and other programs through the W calls.
#include "platform/shell.h"

#include <windows.h>
// windows.h first.
#include <shellapi.h>

#include "platform/adapters.h"
#include "platform/command_line.h"
#include "platform/failure.h"
#include "platform/win32/system_error.h"
#include "platform/win32/text.h"

namespace kavo {
namespace {

class WindowsShell final : public Shell {
 public:
  int open(std::u16string_view document) override { return execute(document, {}); }

  int open_as(std::u16string_view document, std::u16string_view extension) override {
    const std::wstring name = to_wide(document);
    const std::wstring file_class = to_wide(extension);
    SHELLEXECUTEINFOW request{};
    request.cbSize = sizeof request;
    // The caller reports a failure; without this flag the system would show a box as well.
    request.fMask = SEE_MASK_CLASSNAME | SEE_MASK_FLAG_NO_UI;
    request.lpVerb = L"open";
    request.lpFile = name.c_str();
    request.lpClass = file_class.c_str();
    request.nShow = SW_SHOWNORMAL;
    ShellExecuteExW(&request);
    return static_cast<int>(reinterpret_cast<INT_PTR>(request.hInstApp));
  }

  int run(std::u16string_view program, std::u16string_view parameters) override { return execute(program, parameters); }

  void start(std::u16string_view program, const std::vector<std::u16string>& arguments) override {
    std::wstring line = to_wide(joined_command_line(program, arguments));  // CreateProcess writes into it
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
      throw failure(FailureNumber::kFileNotFound, std::u16string(program) + u": " + system_text(GetLastError()));
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
  }

 private:
  static int execute(std::u16string_view file, std::u16string_view parameters) {
    const std::wstring wide_parameters = to_wide(parameters);
    const HINSTANCE result =
        ShellExecuteW(nullptr, L"open", to_wide(file).c_str(),
                      wide_parameters.empty() ? nullptr : wide_parameters.c_str(), nullptr, SW_SHOWNORMAL);
    return static_cast<int>(reinterpret_cast<INT_PTR>(result));
  }
};

}  // namespace

Shell& system_shell() {
  static WindowsShell shell;
  return shell;
}

}  // namespace kavo
