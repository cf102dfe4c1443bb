#include "dialog_driver.h"

#include <gtest/gtest.h>
#include <shlobj.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

#include "platform/win32/text.h"
#include "ui/win32/form_window.h"

namespace kavo::test {
namespace {

constexpr wchar_t kDialogClass[] = L"#32770";

bool of_class(HWND window, std::wstring_view name) {
  wchar_t found[64];
  GetClassNameW(window, found, 64);
  return lstrcmpiW(found, std::wstring(name).c_str()) == 0;
}

// The dialog of a thread that a person can work now: the visible one that is not disabled by another.
HWND front_dialog(DWORD thread) {
  HWND found = nullptr;
  EnumThreadWindows(
      thread,
      [](HWND window, LPARAM result) {
        if (!of_class(window, kDialogClass) || !IsWindowVisible(window) || !IsWindowEnabled(window)) return TRUE;
        *reinterpret_cast<HWND*>(result) = window;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&found));
  return found;
}

// The windows among the dialog's children that `wanted` takes.
HWND find_child(HWND dialog, const std::function<bool(HWND)>& wanted) {
  for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT))
    if (wanted(child)) return child;
  return nullptr;
}

// Whatever was sent or notified before has been dealt with when this returns, or waits behind a newer dialog.
void settle(HWND window) { SendMessageW(window, WM_NULL, 0, 0); }

}  // namespace

bool wait_until(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    Sleep(2);
  }
  return true;
}

HWND Dialog::control(const Control& control) const { return GetDlgItem(window_, control_id(control)); }

HWND Dialog::control(std::u16string_view caption) const {
  const HWND found = find_child(window_, [&](HWND child) { return text(child) == caption; });
  EXPECT_NE(found, nullptr) << "no control with the caption " << testing::PrintToString(std::u16string(caption));
  return found;
}

HWND Dialog::control(std::wstring_view window_class, int index) const {
  const HWND found = find_child(window_, [&](HWND child) { return of_class(child, window_class) && index-- == 0; });
  EXPECT_NE(found, nullptr) << "not so many controls of this class";
  return found;
}

std::u16string Dialog::text(HWND control) {
  std::wstring text(static_cast<std::size_t>(SendMessageW(control, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
  text.resize(
      static_cast<std::size_t>(SendMessageW(control, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
  return from_wide(text);
}

std::vector<std::u16string> Dialog::items(HWND list_box) {
  std::vector<std::u16string> items;
  const auto count = static_cast<std::size_t>(SendMessageW(list_box, LB_GETCOUNT, 0, 0));
  for (std::size_t i = 0; i < count; ++i) {
    std::wstring text(static_cast<std::size_t>(SendMessageW(list_box, LB_GETTEXTLEN, i, 0)) + 1, L'\0');
    SendMessageW(list_box, LB_GETTEXT, i, reinterpret_cast<LPARAM>(text.data()));
    text.pop_back();
    items.push_back(from_wide(text));
  }
  return items;
}

std::u16string Dialog::chosen(HWND combo_box) { return text(combo_box); }

void Dialog::click(HWND button) const {
  SendNotifyMessageW(button, BM_CLICK, 0, 0);
  settle(window_);
}

void Dialog::type(HWND box, std::u16string_view text) const {
  SendMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(box), TRUE);
  SendMessageW(box, EM_SETSEL, 0, -1);
  if (text.empty()) SendNotifyMessageW(box, WM_CHAR, VK_BACK, 1);
  for (const char16_t unit : text) SendNotifyMessageW(box, WM_CHAR, unit, 1);
  settle(window_);
}

void Dialog::set_text(HWND box, std::u16string_view text) {
  SendMessageW(box, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(to_wide(text).c_str()));
}

void Dialog::choose(HWND list, int index) const {
  const bool combo = of_class(list, L"ComboBox");
  SendMessageW(list, combo ? CB_SETCURSEL : LB_SETCURSEL, static_cast<WPARAM>(index), 0);
  // Setting a selection does not notify the dialog, but a person's choice does.
  const WORD changed = combo ? CBN_SELCHANGE : LBN_SELCHANGE;
  SendNotifyMessageW(window_, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(list), changed), reinterpret_cast<LPARAM>(list));
  settle(window_);
}

void Dialog::choose(HWND combo, std::u16string_view item) const {
  const LRESULT index =
      SendMessageW(combo, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(to_wide(item).c_str()));
  EXPECT_NE(index, CB_ERR) << testing::PrintToString(std::u16string(item));
  choose(combo, static_cast<int>(index));
}

void Dialog::close() const {
  SendNotifyMessageW(window_, WM_SYSCOMMAND, SC_CLOSE, 0);
  settle(window_);
}

void Dialog::drop(std::u16string_view path) const {
  EXPECT_NE(GetWindowLongPtrW(window_, GWL_EXSTYLE) & WS_EX_ACCEPTFILES, 0);
  // As the file manager leaves it: the list of names ends with an empty one.
  const HGLOBAL memory = GlobalAlloc(GHND, sizeof(DROPFILES) + (path.size() + 2) * sizeof(wchar_t));
  auto* head = static_cast<DROPFILES*>(GlobalLock(memory));
  head->pFiles = sizeof(DROPFILES);
  head->fWide = TRUE;
  std::ranges::copy(path, reinterpret_cast<wchar_t*>(head + 1));
  GlobalUnlock(memory);
  SendMessageW(window_, WM_DROPFILES, reinterpret_cast<WPARAM>(memory), 0);
}

HWND Dialog::focused() const {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(GetWindowThreadProcessId(window_, nullptr), &info);
  return info.hwndFocus;
}

void Dialog::press(WORD key) const {
  const HWND focus = focused();
  PostMessageW(focus, WM_KEYDOWN, key, 1);
  PostMessageW(focus, WM_KEYUP, key, 1 | (1 << 30) | (1 << 31));
}

void Dialog::press_access_key(wchar_t key) const {
  constexpr LPARAM kWithAlt = 1 << 29;
  PostMessageW(focused(), WM_SYSCHAR, key, 1 | kWithAlt);
}

Dialog Dialog::next() const {
  const DWORD thread = GetWindowThreadProcessId(window_, nullptr);
  HWND found = nullptr;
  EXPECT_TRUE(wait_until([&] {
    found = front_dialog(thread);
    return found != nullptr && found != window_;
  })) << "no further dialog";
  return Dialog(found);
}

bool Dialog::gone() const {
  return wait_until([&] { return !IsWindow(window_); });
}

ShiftHeld::ShiftHeld(const Dialog& dialog) : thread_(GetWindowThreadProcessId(dialog.window(), nullptr)) {
  // Both threads then have one keyboard state.
  EXPECT_TRUE(AttachThreadInput(GetCurrentThreadId(), thread_, TRUE));
  hold(true);
}

ShiftHeld::~ShiftHeld() {
  hold(false);
  AttachThreadInput(GetCurrentThreadId(), thread_, FALSE);
}

void ShiftHeld::hold(bool down) const {
  BYTE keys[256];
  GetKeyboardState(keys);
  keys[VK_SHIFT] = down ? 0x80 : 0;
  EXPECT_TRUE(SetKeyboardState(keys));
}

Dialog open_dialog() { return Dialog(front_dialog(GetCurrentThreadId())); }

void work(const std::function<void()>& show, const std::function<void(Dialog)>& person) {
  const DWORD thread = GetCurrentThreadId();
  std::atomic<bool> over = false;
  std::thread other([&] {
    HWND window = nullptr;
    EXPECT_TRUE(wait_until([&] { return (window = front_dialog(thread)) != nullptr; })) << "no dialog";
    if (window == nullptr) return;
    person(Dialog(window));
    while (!wait_until([&] { return over.load(); })) {
      ADD_FAILURE() << "a dialog was left open";
      SendMessageTimeoutW(front_dialog(thread), WM_CLOSE, 0, 0, SMTO_ABORTIFHUNG, 1000, nullptr);
    }
  });
  const auto finish = [&] {
    over = true;
    other.join();
  };
  try {
    show();
  } catch (...) {
    finish();
    throw;
  }
  finish();
}

void work(Form& form, const std::function<void(Dialog)>& person, UINT dpi) {
  const WindowsScope windows(dpi);
  work([&] { form.show(); }, person);
}

}  // namespace kavo::test
