// One control of a form as a window of the dialog.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "forms/controls.h"
#include "ui/win32/dialog_fonts.h"

namespace kavo {

// Both windows belong to the dialog and end with it; the control must outlive this.
class ControlWindow {
 public:
  // Throws `failure` when the system makes no window.
  ControlWindow(Control& control, HWND dialog, int id);

  Control& control() const { return control_; }
  HWND window() const { return window_; }

  // Shows the model's state. Touches only what differs, so that a caret, a scroll position and what a person is typing
  // stay, and nothing is echoed back to the model.
  void update(DialogFonts& fonts);
  // Hands over what a person did, by the notification code of WM_COMMAND.
  void react(WORD notification);

 private:
  void update_frame(DialogFonts& fonts);
  void update_name();
  void update_text(const std::u16string& text);
  void update_items(const ItemControl& model);
  void update_option(const OptionButton& model);

  Control& control_;
  HWND window_;
  HWND name_ = nullptr;          // unseen label in front of a box: what a screen reader calls the box
  std::vector<ListItem> items_;  // as last shown
};

}  // namespace kavo
