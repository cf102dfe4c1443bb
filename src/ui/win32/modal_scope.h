// Finds the window that a modal dialog belongs to, and disables other windows while the dialog is shown.
#pragma once

#include <windows.h>

#include <vector>

namespace kavo {

// The window that a dialog of the calling thread belongs to: the thread's active one, else the foreground window when
// it is one of this process; null when the host has no window.
HWND dialog_owner();

// Disables `owner` and every top-level window of the calling thread except `dialog`; at its end it enables them again.
// It must end before the dialog's window does: with the owner still disabled, the system would activate another
// program.
class ModalScope {
 public:
  ModalScope(HWND owner, HWND dialog);
  ~ModalScope();
  ModalScope(const ModalScope&) = delete;
  ModalScope& operator=(const ModalScope&) = delete;

 private:
  std::vector<HWND> disabled_;
};

}  // namespace kavo
