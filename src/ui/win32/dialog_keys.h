// The dialog keyboard for windows that are open while the program runs on.
#pragma once

#include <windows.h>

namespace kavo {

// From now on tab, arrows, Enter, Escape and access keys work in this dialog of the calling thread, whoever takes its
// messages from the queue. Throws `failure` when the system refuses.
void add_dialog_keys(HWND dialog);
void remove_dialog_keys(HWND dialog) noexcept;

}  // namespace kavo
