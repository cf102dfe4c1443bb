#include "ui/win32/form_window.h"

#include <algorithm>
#include <utility>

#include "common/clsCommon.h"
#include "platform/win32/system_error.h"
#include "platform/win32/text.h"
#include "ui/win32/dialog_keys.h"
#include "ui/win32/dpi.h"

#ifndef WM_DPICHANGED
#define WM_DPICHANGED 0x02E0
#endif

namespace kavo {
namespace {

constexpr int kFirstControlId = 100;

// A dialog template without controls: the class, its keyboard and its colours are the dialog manager's.
HWND make_dialog(HWND owner, DLGPROC procedure, LPARAM parameter) {
  struct alignas(DWORD) {
    DLGTEMPLATE head;
    WORD menu;
    WORD window_class;
    WORD title;
  } const dialog{{WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_3DLOOK, 0, 0, 0, 0, 0, 0}, 0, 0, 0};
  const HWND window = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), &dialog.head, owner, procedure, parameter);
  if (window == nullptr) throw_last_error();
  return window;
}

RECT window_rect(HWND window) {
  RECT rect{};
  GetWindowRect(window, &rect);
  return rect;
}

// The part that windows may cover of the screen that shows most of the window.
RECT work_area(HWND window) {
  MONITORINFO info{};
  info.cbSize = sizeof info;
  GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &info);
  return info.rcWork;
}

bool takes_focus(const Control& control) {
  return control.Visible() && control.Enabled() && control.kind() != ControlKind::kLabel &&
         control.kind() != ControlKind::kFrame && control.kind() != ControlKind::kGauge;
}

std::wstring dropped_path(HDROP drop) {
  std::wstring path(static_cast<std::size_t>(DragQueryFileW(drop, 0, nullptr, 0)) + 1, L'\0');
  path.resize(DragQueryFileW(drop, 0, path.data(), static_cast<UINT>(path.size())));
  return path;
}

}  // namespace

int control_id(const Control& control) {
  const Form& form = control.form();
  if (&control == form.default_button) return IDOK;
  if (&control == form.cancel_button) return IDCANCEL;
  return kFirstControlId + static_cast<int>(std::ranges::find(form.controls(), &control) - form.controls().begin());
}

FormWindow::FormWindow(Form& form, UINT dpi) : form_(form), fixed_dpi_(dpi), owner_(dialog_owner()) {
  // This applies only to the windows made here. What the form's handlers open is drawn as its own program wants.
  const ScalingScope scaling;
  window_ = make_dialog(owner_, dialog_procedure, reinterpret_cast<LPARAM>(this));
  try {
    fonts_ = std::make_unique<DialogFonts>(fixed_dpi_ != 0 ? fixed_dpi_ : dpi_of(window_));
    controls_.reserve(form_.controls().size());
    for (Control* control : form_.controls()) controls_.emplace_back(*control, window_, control_id(*control));
    lay_out();
    if (form_.default_button != nullptr) SendMessageW(window_, DM_SETDEFID, IDOK, 0);
    DragAcceptFiles(window_, form_.on_drop != nullptr);
  } catch (...) {
    DestroyWindow(window_);
    throw;
  }
  form_.view(this);
  clsCommon().CentreForm(form_);
}

FormWindow::~FormWindow() {
  form_.view(nullptr);
  SetWindowLongPtrW(window_, DWLP_USER, 0);
  vanish();
  DestroyWindow(window_);
}

void FormWindow::run() {
  appear();
  pump();
  vanish();
  if (error_) std::rethrow_exception(std::exchange(error_, nullptr));
}

void FormWindow::open(std::unique_ptr<FormWindow> window) {
  window->appear();
  add_dialog_keys(window->window_);
  window->keeps_itself_ = true;
  static_cast<void>(window.release());  // deleted by close(), or after the message that led to it
}

void FormWindow::appear() {
  modal_.emplace(owner_, window_);
  focus_first();
  ShowWindow(window_, SW_SHOW);
  SetForegroundWindow(window_);
}

// Enables the owner before the window disappears; otherwise another program would get the focus.
void FormWindow::vanish() {
  modal_.reset();
  ShowWindow(window_, SW_HIDE);
}

void FormWindow::pump() {
  MSG message;
  while (form_.shown()) {
    if (GetMessageW(&message, nullptr, 0, 0) <= 0) {
      guarded([&] { form_.close_box(); });
      PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    if (IsDialogMessageW(window_, &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

void FormWindow::control_changed(Control& control) {
  for (ControlWindow& one : controls_) {
    const bool of_its_group =
        control.kind() == ControlKind::kOptionButton && one.control().kind() == ControlKind::kOptionButton;
    if (&one.control() == &control || of_its_group) one.update(*fonts_);
  }
}

void FormWindow::form_changed() { lay_out(); }

void FormWindow::focus(Control& control) {
  if (!takes_focus(control)) return;
  if (const ControlWindow* found = window_of(control))
    SendMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(found->window()), TRUE);
}

void FormWindow::select_text(TextBox& box, std::int32_t start, std::int32_t length) {
  if (const ControlWindow* found = window_of(box))
    SendMessageW(found->window(), EM_SETSEL, static_cast<WPARAM>(start), start + length);
}

void FormWindow::close() {
  if (!keeps_itself_) {
    // Wakes pump(): the form may be hidden during a sent message, which does not end the wait for a posted one.
    PostMessageW(window_, WM_NULL, 0, 0);
    return;
  }
  remove_dialog_keys(window_);
  form_.view(nullptr);
  ++messages_;  // the messages that vanish() causes must not delete this
  vanish();
  if (--messages_ == 0) delete this;
}

Extent FormWindow::extent() const {
  const RECT rect = window_rect(window_);
  return {rect.right - rect.left, rect.bottom - rect.top};
}

RECT FormWindow::around() const {
  return owner_ != nullptr && !IsIconic(owner_) ? window_rect(owner_) : work_area(window_);
}

Extent FormWindow::screen_extent() const {
  const RECT area = around();
  return {area.right - area.left, area.bottom - area.top};
}

void FormWindow::move(std::int32_t left, std::int32_t top) {
  const RECT from = around();
  const RECT screen = work_area(owner_ != nullptr ? owner_ : window_);
  const Extent size = extent();
  SetWindowPos(window_, nullptr,
               std::clamp(from.left + left, screen.left, std::max(screen.left, screen.right - size.width)),
               std::clamp(from.top + top, screen.top, std::max(screen.top, screen.bottom - size.height)), 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

INT_PTR CALLBACK FormWindow::dialog_procedure(HWND window, UINT message, WPARAM wide, LPARAM length) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(window, DWLP_USER, length);
    return FALSE;  // the focus is set when the controls are there
  }
  auto* self = reinterpret_cast<FormWindow*>(GetWindowLongPtrW(window, DWLP_USER));
  if (self == nullptr) return FALSE;
  ++self->messages_;
  const bool handled = self->handle(message, wide, length);
  --self->messages_;
  if (self->keeps_itself_ && self->messages_ == 0 && self->form_.view() != self) delete self;
  return handled ? TRUE : FALSE;
}

bool FormWindow::handle(UINT message, WPARAM wide, LPARAM length) {
  // Without this view in the form, the windows are still being made or already being destroyed.
  if (form_.view() != this) return false;
  switch (message) {
    case WM_COMMAND:
      guarded([&] { handle_command(LOWORD(wide), HIWORD(wide)); });
      return true;
    case WM_CLOSE:
      guarded([&] { form_.close_box(); });
      return true;
    case WM_DROPFILES:
      guarded([&] { handle_drop(reinterpret_cast<HDROP>(wide)); });
      return true;
    case WM_DPICHANGED:
      guarded([&] { handle_new_dpi(HIWORD(wide), *reinterpret_cast<const RECT*>(length)); });
      return true;
    default:
      return false;
  }
}

void FormWindow::handle_command(int id, WORD notification) {
  for (ControlWindow& one : controls_)
    if (GetDlgCtrlID(one.window()) == id) return one.react(notification);
  if (id == IDCANCEL) form_.close_box();  // Escape where no button answers it
}

void FormWindow::handle_drop(HDROP drop) {
  const std::wstring path = dropped_path(drop);
  DragFinish(drop);
  if (IsWindowEnabled(window_) && form_.on_drop) form_.on_drop(from_wide(path));
}

void FormWindow::handle_new_dpi(UINT dpi, const RECT& suggested) {
  if (fixed_dpi_ != 0) return;
  const std::unique_ptr<DialogFonts> old = std::exchange(fonts_, std::make_unique<DialogFonts>(dpi));
  lay_out();
  SetWindowPos(window_, nullptr, suggested.left, suggested.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

template <typename Action>
void FormWindow::guarded(Action&& action) noexcept {
  try {
    action();
  } catch (...) {
    if (!error_) error_ = std::current_exception();
    form_.hide();
  }
}

ControlWindow* FormWindow::window_of(const Control& control) {
  const auto found =
      std::ranges::find_if(controls_, [&](const ControlWindow& one) { return &one.control() == &control; });
  return found == controls_.end() ? nullptr : &*found;
}

void FormWindow::lay_out() {
  SetWindowTextW(window_, to_wide(form_.Caption()).c_str());
  const RECT inside = fonts_->pixels(form_.size());
  RECT client{};
  GetClientRect(window_, &client);
  const Extent now = extent();
  SetWindowPos(window_, nullptr, 0, 0, now.width - client.right + inside.right,
               now.height - client.bottom + inside.bottom, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  for (ControlWindow& one : controls_) one.update(*fonts_);
}

void FormWindow::focus_first() {
  if (form_.first_focus != nullptr && takes_focus(*form_.first_focus)) return focus(*form_.first_focus);
  const HWND first = GetNextDlgTabItem(window_, nullptr, FALSE);
  if (first != nullptr) SendMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(first), TRUE);
}

}  // namespace kavo
