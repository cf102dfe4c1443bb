// A form as a dialog window: makes the windows of its controls, runs the dialog, and carries every change from one side
// to the other.
#pragma once

#include <windows.h>
// windows.h first.
#include <shellapi.h>

#include <exception>
#include <memory>
#include <optional>
#include <vector>

#include "forms/form.h"
#include "ui/win32/control_window.h"
#include "ui/win32/dialog_fonts.h"
#include "ui/win32/modal_scope.h"

namespace kavo {

// The identifier of a control's window in its dialog: IDOK for the default button and IDCANCEL for the cancel button,
// as the keyboard wants them, for any other control 100 and its place in the tab order.
int control_id(const Control& control);

class FormWindow final : public FormView {
 public:
  // Makes the window, hidden, in the middle of its screen. `dpi` as in WindowPresenter. Throws `failure` when the
  // system makes no window.
  FormWindow(Form& form, UINT dpi);
  ~FormWindow() override;
  FormWindow(const FormWindow&) = delete;
  FormWindow& operator=(const FormWindow&) = delete;

  // Shows it and returns when the form is hidden; throws what one of the form's handlers threw.
  void run();
  // Shows the window, which then owns itself: it is deleted when the form is hidden. It works while the thread's
  // messages are processed.
  static void open(std::unique_ptr<FormWindow> window);

  void control_changed(Control& control) override;
  void form_changed() override;
  void focus(Control& control) override;
  void select_text(TextBox& box, std::int32_t start, std::int32_t length) override;
  void close() override;
  Extent extent() const override;
  // The extent of the owner's window when there is one; move() counts from it, too. So a form that centres itself on
  // its "screen" appears over the window that the person is looking at. It stays completely on the real screen.
  Extent screen_extent() const override;
  void move(std::int32_t left, std::int32_t top) override;

 private:
  static INT_PTR CALLBACK dialog_procedure(HWND window, UINT message, WPARAM wide, LPARAM length);
  bool handle(UINT message, WPARAM wide, LPARAM length);
  void handle_command(int id, WORD notification);
  void handle_drop(HDROP drop);
  void handle_new_dpi(UINT dpi, const RECT& suggested);
  // Runs what may call the form's handlers. An exception hides the form and is kept until the end of run().
  template <typename Action>
  void guarded(Action&& action) noexcept;

  ControlWindow* window_of(const Control& control);
  RECT around() const;
  void lay_out();
  void appear();
  void vanish();
  void focus_first();
  void pump();

  Form& form_;
  UINT fixed_dpi_;
  HWND owner_;
  HWND window_ = nullptr;
  std::unique_ptr<DialogFonts> fonts_;
  std::vector<ControlWindow> controls_;  // in tab order
  std::optional<ModalScope> modal_;      // while the window is shown
  std::exception_ptr error_;
  bool keeps_itself_ = false;  // made by open(): owns itself
  int messages_ = 0;           // how many are being handled, one inside the other
};

}  // namespace kavo
