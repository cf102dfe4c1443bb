// Acts as a person at a dialog: another thread, which sees and uses only windows.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "forms/controls.h"
#include "forms/form.h"
#include "ui/win32/window_presenter.h"

namespace kavo::test {

// Waits until `condition` holds; false when it does not within five seconds.
bool wait_until(const std::function<bool()>& condition);

// An open dialog. Controls are found by their caption, or by their kind and their place among controls of that kind.
class Dialog {
 public:
  explicit Dialog(HWND window) : window_(window) {}

  HWND window() const { return window_; }
  std::u16string caption() const { return text(window_); }
  HWND control(const Control& control) const;
  HWND control(std::u16string_view caption) const;  // with its access key sign
  HWND control(std::wstring_view window_class, int index) const;

  static std::u16string text(HWND control);
  static bool checked(HWND control) { return SendMessageW(control, BM_GETCHECK, 0, 0) == BST_CHECKED; }
  static std::vector<std::u16string> items(HWND list_box);
  static std::u16string chosen(HWND combo_box);

  // Each returns when the form has dealt with it, or has put another dialog in front.
  void click(HWND button) const;
  void type(HWND box, std::u16string_view text) const;       // replaces the text in the box
  static void set_text(HWND box, std::u16string_view text);  // all at once, as pasted
  void choose(HWND list, int index) const;                   // in a list box or combo box
  void choose(HWND combo, std::u16string_view item) const;
  void close() const;                         // by the title bar
  void drop(std::u16string_view path) const;  // a file, by the mouse; it must take files
  // To the control that has the focus; returns at once.
  void press(WORD key) const;
  void press_access_key(wchar_t key) const;
  HWND focused() const;

  // The dialog that this one has opened.
  Dialog next() const;
  bool gone() const;  // waits for it

 private:
  HWND window_;
};

// The shift key is down for the dialog's thread as long as this lives, on the thread of the person.
class ShiftHeld {
 public:
  explicit ShiftHeld(const Dialog& dialog);
  ~ShiftHeld();
  ShiftHeld(const ShiftHeld&) = delete;
  ShiftHeld& operator=(const ShiftHeld&) = delete;

 private:
  void hold(bool down) const;
  DWORD thread_;
};

// The dialog of the calling thread that can be worked now.
Dialog open_dialog();

// Forms of the calling thread are shown as windows drawn for `dpi`, as long as it lives.
class WindowsScope {
 public:
  explicit WindowsScope(UINT dpi = 96) : presenter_(dpi), before_(form_presenter()) { form_presenter(&presenter_); }
  ~WindowsScope() { form_presenter(before_); }
  WindowsScope(const WindowsScope&) = delete;
  WindowsScope& operator=(const WindowsScope&) = delete;

 private:
  WindowPresenter presenter_;
  FormPresenter* before_;
};

// Shows dialogs on the calling thread by `show` while `person` works the first of them on another thread. Fails the
// test when no dialog comes, and when one is left open, which it then closes.
void work(const std::function<void()>& show, const std::function<void(Dialog)>& person);
// The same for one form, drawn for `dpi`.
void work(Form& form, const std::function<void(Dialog)>& person, UINT dpi = 96);

}  // namespace kavo::test
