// Shows forms as the system's own dialogs.
#pragma once

#include <windows.h>

#include "forms/form.h"

namespace kavo {

class WindowPresenter final : public FormPresenter {
 public:
  // `dpi` is the resolution for all dialogs, in dots per inch; 0 takes that of the screen that a dialog is on.
  explicit WindowPresenter(UINT dpi = 0) : dpi_(dpi) {}

  // Modal to every window of the calling thread and to the host's foreground window. An exception of one of the form's
  // handlers hides the form and is thrown from here. On WM_QUIT the form is closed as by its title bar, and the message
  // is posted again for the host's own loop.
  void show(Form& form) override;
  // The window ends when the form is hidden. An exception of one of the form's handlers hides it and is then dropped,
  // because there is no caller that could catch it.
  bool open(Form& form) override;

 private:
  UINT dpi_;
};

}  // namespace kavo
