#include "ui/win32/dialog_keys.h"

#include <vector>

#include "platform/win32/owners.h"
#include "platform/win32/system_error.h"

namespace kavo {
namespace {

using unique_hook = unique_owner<HandleTraits<HHOOK, UnhookWindowsHookEx>>;

struct ThreadDialogs {
  std::vector<HWND> dialogs;
  unique_hook hook;
};
thread_local ThreadDialogs of_thread;

// Sees every message that leaves the queue, whichever loop takes it. A key that a dialog uses becomes WM_NULL, so that
// the loop ignores it.
LRESULT CALLBACK look_at(int code, WPARAM removal, LPARAM parameter) {
  auto& message = *reinterpret_cast<MSG*>(parameter);
  const bool key = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
  if (code == HC_ACTION && removal == PM_REMOVE && key) {
    // A copy, because a key may end its dialog.
    const std::vector<HWND> dialogs = of_thread.dialogs;
    for (const HWND dialog : dialogs) {
      if (!IsDialogMessageW(dialog, &message)) continue;
      message.message = WM_NULL;
      break;
    }
  }
  return CallNextHookEx(nullptr, code, removal, parameter);
}

}  // namespace

void add_dialog_keys(HWND dialog) {
  if (!of_thread.hook) {
    of_thread.hook.reset(SetWindowsHookExW(WH_GETMESSAGE, look_at, nullptr, GetCurrentThreadId()));
    if (!of_thread.hook) throw_last_error();
  }
  of_thread.dialogs.push_back(dialog);
}

void remove_dialog_keys(HWND dialog) noexcept {
  std::erase(of_thread.dialogs, dialog);
  if (of_thread.dialogs.empty()) of_thread.hook.reset();
}

}  // namespace kavo
