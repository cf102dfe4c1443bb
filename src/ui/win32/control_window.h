// One control of a form as a window of the dialog.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "forms/controls.h"
#include "ui/win32/dialog_fonts.h"

namespace kavo {

// Its windows belong to the dialog and end with it. The control must outlive this object.
class ControlWindow {
 public:
  // Throws `failure` when the system makes no window.
  ControlWindow(Control& control, HWND dialog, int id);

  Control& control() const { return control_; }
  HWND window() const { return window_; }

  // Shows the model's state. Changes only what differs, so that the caret, the scroll position and what a person is
  // typing stay, and no change is reported back to the model.
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
  HWND name_ = nullptr;          // hidden label before a box, from which a screen reader takes its name
  std::vector<ListItem> items_;  // as last shown
};

}  // namespace kavo
