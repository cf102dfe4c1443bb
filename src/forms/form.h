// A form: its controls in tab order, and how it is shown. Its rules need no screen: whoever shows it (a window, a
// terminal, a test) operates the models and is notified of their changes.
#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "common/form_frame.h"
#include "forms/control.h"
#include "forms/controls.h"

namespace kavo {

// What shows a form at the moment. Called on the thread of the form.
class FormView {
 public:
  virtual ~FormView() = default;
  virtual void control_changed(Control& control) = 0;  // anything it shows: text, items, selection, place, state
  virtual void form_changed() = 0;                     // caption or size
  virtual void focus(Control& control) = 0;
  virtual void select_text(TextBox& box, std::int32_t start, std::int32_t length) = 0;
  virtual void close() = 0;  // show() returns soon
  virtual Extent extent() const = 0;
  virtual Extent screen_extent() const = 0;
  virtual void move(std::int32_t left, std::int32_t top) = 0;
};

class Form : public FormFrame {
 public:
  explicit Form(std::u16string name);
  ~Form() override;

  const std::u16string& Caption() const { return caption_; }
  void Caption(std::u16string_view text);
  // The inner size, in the units of `Place`; only width and height count.
  const Place& size() const { return size_; }
  void size(std::int32_t width, std::int32_t height);
  void size(const Place& size) { this->size(size.width, size.height); }

  const std::vector<Control*>& controls() const { return controls_; }  // in tab order; not owned
  Control* find_control(std::u16string_view name) const;               // null when there is none
  // Changes the tab order, which is otherwise the order of construction: these controls first, then the others. For
  // forms that hold their controls in arrays. Call it before the form is shown.
  void tab_order(std::initializer_list<Control*> controls);

  // Not owned.
  Button* default_button = nullptr;  // pressed by Enter
  Button* cancel_button = nullptr;   // pressed by Escape and the title bar
  Control* first_focus = nullptr;    // null: the first control that can have the focus

  // A file was dropped onto the form: its path. A form without a handler takes no files.
  std::function<void(std::u16string_view path)> on_drop;

  // Shows the form with the presenter in use and returns when it is hidden. It stays loaded. Throws what the presenter
  // throws.
  void show();
  // Shows the form while the program runs on, and returns at once. With a presenter that cannot do this it stays
  // hidden.
  void show_beside();
  void hide();
  bool shown() const { return shown_; }
  // What the close box of the title bar does: presses the cancel button, then hides the form in any case.
  void close_box();

  FormView* view() const { return view_; }
  void view(FormView* view) { view_ = view; }  // set by whoever shows it; not owned

  // These refer to the window that shows the form, in pixels. Without a window, extents are 0 and move() does nothing.
  Extent extent() const override;
  Extent screen_extent() const override;
  void move(std::int32_t left, std::int32_t top) override;

 private:
  friend class Control;
  std::u16string caption_;
  Place size_;
  std::vector<Control*> controls_;
  FormView* view_ = nullptr;
  bool shown_ = false;
};

// Port: shows forms. One for windows, one for terminals, and what a test puts in their place.
class FormPresenter {
 public:
  virtual ~FormPresenter() = default;
  // Shows the form and returns when form.shown() is false. Throws `failure` when it cannot be shown.
  virtual void show(Form& form) = 0;
  // Shows the form while the program runs on, and returns at once: its events come while the program processes
  // messages, the thread's other windows take no input, and FormView::close() ends it. False when this presenter cannot
  // do this.
  virtual bool open(Form& form) {
    static_cast<void>(form);
    return false;
  }
};

// The presenter of the calling thread; null at first: forms are then closed at once, as if by their title bar.
FormPresenter* form_presenter();
void form_presenter(FormPresenter* presenter);  // not owned

}  // namespace kavo
