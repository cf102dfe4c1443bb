#include "platform/console.h"

#include <windows.h>
// windows.h first.
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>
#include <stdio.h>

#include <memory>

#include "platform/desktop.h"
#include "platform/unicode.h"
#include "platform/win32/text.h"

namespace kavo {

std::vector<std::string> command_line(int, char**) {
  // The arguments of main() went through the ANSI code page; the system's own copy did not.
  int count = 0;
  const std::unique_ptr<LPWSTR, decltype(&LocalFree)> words(CommandLineToArgvW(GetCommandLineW(), &count), LocalFree);
  std::vector<std::string> arguments;
  for (int i = 1; i < count && words; ++i) arguments.push_back(to_utf8(from_wide(words.get()[i])));
  return arguments;
}

void prepare_console() {
  SetConsoleOutputCP(CP_UTF8);
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
}

bool error_output_is_terminal() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

int error_output_width() {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  if (GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &info) == 0) return 80;
  return info.srWindow.Right - info.srWindow.Left + 1;
}

namespace {

BOOL WINAPI on_control_event(DWORD event) {
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) return FALSE;
  request_interrupt();
  return TRUE;
}

}  // namespace

void interrupt_on_control_c() { SetConsoleCtrlHandler(on_control_event, TRUE); }

}  // namespace kavo
