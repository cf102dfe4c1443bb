// Shows forms as the system's own dialogs.
#pragma once

#include <windows.h>

#include "forms/form.h"

namespace kavo {

class WindowPresenter final : public FormPresenter {
 public:
  // With 0 a dialog is drawn for the screen it is on, in dots per inch; another number draws all of them for that.
  explicit WindowPresenter(UINT dpi = 0) : dpi_(dpi) {}

  // Modal to every window of the calling thread and to the host's foreground window. An exception of one of the form's
  // handlers hides the form and comes out of here once the window is gone. When the host's message loop is told to
  // quit, the form is closed as by its title bar and the host's loop is told again.
  void show(Form& form) override;
  // The window ends when the form is hidden. An exception of one of its handlers hides it, and no more comes of it:
  // there is no call that it could come out of.
  bool open(Form& form) override;

 private:
  UINT dpi_;
};

}  // namespace kavo
