// Which windows a modal dialog belongs to, and that they answer nothing while it is there.
#pragma once

#include <windows.h>

#include <vector>

namespace kavo {

// The window that a dialog of the calling thread belongs to: the thread's active one, else the foreground window when
// it is one of this process; null when the host has no window.
HWND dialog_owner();

// Disables `owner` and every window on the desktop of the calling thread, but `dialog`; enables again what it disabled.
// It has to end before the dialog's window does: the system activates another program while the owner is disabled.
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
