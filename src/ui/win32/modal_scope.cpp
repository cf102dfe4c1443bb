#include "ui/win32/modal_scope.h"

namespace kavo {
namespace {

bool answers(HWND window) { return IsWindowVisible(window) && IsWindowEnabled(window); }

bool of_this_process(HWND window) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  return process == GetCurrentProcessId();
}

BOOL CALLBACK collect(HWND window, LPARAM windows) {
  if (answers(window)) reinterpret_cast<std::vector<HWND>*>(windows)->push_back(window);
  return TRUE;
}

}  // namespace

HWND dialog_owner() {
  HWND owner = GetActiveWindow();
  if (owner == nullptr || !IsWindowVisible(owner)) owner = GetForegroundWindow();
  if (owner == nullptr || !of_this_process(owner)) return nullptr;
  return GetAncestor(owner, GA_ROOT);
}

ModalScope::ModalScope(HWND owner, HWND dialog) {
  EnumThreadWindows(GetCurrentThreadId(), collect, reinterpret_cast<LPARAM>(&disabled_));
  std::erase(disabled_, dialog);
  for (const HWND window : disabled_) EnableWindow(window, FALSE);
  // The host's window may belong to another thread.
  if (owner != nullptr && answers(owner)) {
    EnableWindow(owner, FALSE);
    disabled_.push_back(owner);
  }
}

ModalScope::~ModalScope() {
  for (const HWND window : disabled_) EnableWindow(window, TRUE);
}

}  // namespace kavo
