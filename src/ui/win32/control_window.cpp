#include "ui/win32/control_window.h"

#include <commctrl.h>

#include <algorithm>

#include "forms/form.h"
#include "platform/win32/system_error.h"
#include "platform/win32/text.h"

namespace kavo {
namespace {

struct Look {
  const wchar_t* window_class;
  DWORD style;
  DWORD extended_style;
};

// The window class of a gauge. Unlike the others it exists only after it has been requested from the system.
const wchar_t* gauge_class() {
  constexpr INITCOMMONCONTROLSEX kWanted{sizeof kWanted, ICC_PROGRESS_CLASS};
  static const bool is_there = InitCommonControlsEx(&kWanted) != FALSE;
  return is_there ? PROGRESS_CLASSW : L"";
}

Look look_of(const Control& control) {
  switch (control.kind()) {
    case ControlKind::kLabel:
      return {L"STATIC", SS_LEFT, 0};
    case ControlKind::kFrame:
      return {L"BUTTON", BS_GROUPBOX, 0};
    case ControlKind::kTextBox:
      return {L"EDIT", WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE};
    case ControlKind::kButton:
      return {
          L"BUTTON",
          WS_TABSTOP | static_cast<DWORD>(control.form().default_button == &control ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON),
          0};
    case ControlKind::kCheckBox:
      return {L"BUTTON", WS_TABSTOP | BS_AUTOCHECKBOX, 0};
    case ControlKind::kOptionButton:
      return {L"BUTTON", BS_AUTORADIOBUTTON, 0};  // its tab stop moves: update_option()
    case ControlKind::kListBox:
      return {L"LISTBOX", WS_TABSTOP | WS_VSCROLL | WS_HSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT, WS_EX_CLIENTEDGE};
    case ControlKind::kComboBox:
      return {L"COMBOBOX", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST, 0};
    case ControlKind::kGauge:
      return {gauge_class(), PBS_SMOOTH, 0};
  }
  return {};
}

bool same_group(const Control& one, const Control& other) {
  return one.kind() == ControlKind::kOptionButton && other.kind() == ControlKind::kOptionButton &&
         &static_cast<const OptionButton&>(one).group() == &static_cast<const OptionButton&>(other).group();
}

// The arrow keys move within option buttons that follow each other; every other control is a group of its own.
bool begins_group(const Control& control) {
  const std::vector<Control*>& all = control.form().controls();
  const auto here = std::ranges::find(all, &control);
  return here == all.begin() || !same_group(**(here - 1), control);
}

bool is_box(ControlKind kind) {
  return kind == ControlKind::kTextBox || kind == ControlKind::kListBox || kind == ControlKind::kComboBox;
}

// The list messages, which list boxes and combo boxes have under different numbers.
struct ItemMessages {
  UINT insert;
  UINT remove;
  UINT select;
  UINT selected;
};
constexpr ItemMessages kListMessages{LB_INSERTSTRING, LB_DELETESTRING, LB_SETCURSEL, LB_GETCURSEL};
constexpr ItemMessages kComboMessages{CB_INSERTSTRING, CB_DELETESTRING, CB_SETCURSEL, CB_GETCURSEL};
const ItemMessages& messages_of(ControlKind kind) {
  return kind == ControlKind::kListBox ? kListMessages : kComboMessages;
}

constexpr int kDroppedItems = 10;  // rows that an open combo box shows at most

HWND make_window(const Look& look, HWND dialog, int id) {
  const HWND window = CreateWindowExW(look.extended_style, look.window_class, L"", WS_CHILD | look.style, 0, 0, 0, 0,
                                      dialog, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
  if (window == nullptr) throw_last_error();
  return window;
}

// A list box does not scroll sideways by itself: it must be given the width of its items.
void set_scroll_width(HWND list, const std::vector<ListItem>& items) {
  constexpr WPARAM kMargin = 4;
  const HDC context = GetDC(list);
  const HGDIOBJ before = SelectObject(context, reinterpret_cast<HFONT>(SendMessageW(list, WM_GETFONT, 0, 0)));
  LONG widest = 0;
  for (const ListItem& item : items) {
    const std::wstring text = to_wide(item.text);
    SIZE size{};
    GetTextExtentPoint32W(context, text.c_str(), static_cast<int>(text.size()), &size);
    widest = std::max(widest, size.cx);
  }
  SelectObject(context, before);
  ReleaseDC(list, context);
  SendMessageW(list, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(widest) + kMargin, 0);
}

std::u16string text_of(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return from_wide(text);
}

void set_style(HWND window, DWORD style, bool on) {
  const LONG_PTR before = GetWindowLongPtrW(window, GWL_STYLE);
  const LONG_PTR after = on ? before | static_cast<LONG_PTR>(style) : before & ~static_cast<LONG_PTR>(style);
  if (after != before) SetWindowLongPtrW(window, GWL_STYLE, after);
}

void place_window(HWND window, const RECT& place) {
  SetWindowPos(window, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

// A combo box takes the height of its open list and gives the closed box what its font needs; the form says what the
// closed box measures.
void place_combo(HWND window, const RECT& place) {
  RECT open = place;
  open.bottom += (kDroppedItems + 1) * static_cast<LONG>(SendMessageW(window, CB_GETITEMHEIGHT, 0, 0));
  place_window(window, open);
  RECT closed;
  GetWindowRect(window, &closed);
  const LRESULT field = SendMessageW(window, CB_GETITEMHEIGHT, static_cast<WPARAM>(-1), 0);
  const LONG missing = (place.bottom - place.top) - (closed.bottom - closed.top);
  if (missing != 0) SendMessageW(window, CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), field + missing);
}

RECT place_in_dialog(HWND window) {
  RECT place;
  GetWindowRect(window, &place);
  MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&place), 2);
  return place;
}

}  // namespace

ControlWindow::ControlWindow(Control& control, HWND dialog, int id)
    : control_(control), window_(make_window(look_of(control), dialog, id)) {
  if (begins_group(control)) set_style(window_, WS_GROUP, true);
}

void ControlWindow::update(DialogFonts& fonts) {
  update_frame(fonts);
  switch (control_.kind()) {
    case ControlKind::kTextBox: {
      const auto& model = static_cast<const TextBox&>(control_);
      const bool locked = (GetWindowLongPtrW(window_, GWL_STYLE) & ES_READONLY) != 0;
      if (locked != model.Locked()) SendMessageW(window_, EM_SETREADONLY, model.Locked(), 0);
      update_text(model.Text());
      break;
    }
    case ControlKind::kListBox:
    case ControlKind::kComboBox:
      update_items(static_cast<const ItemControl&>(control_));
      break;
    case ControlKind::kCheckBox: {
      const WPARAM state = static_cast<const CheckBox&>(control_).Value() ? BST_CHECKED : BST_UNCHECKED;
      if (SendMessageW(window_, BM_GETCHECK, 0, 0) != static_cast<LRESULT>(state))
        SendMessageW(window_, BM_SETCHECK, state, 0);
      update_text(control_.Caption());
      break;
    }
    case ControlKind::kOptionButton:
      update_option(static_cast<const OptionButton&>(control_));
      update_text(control_.Caption());
      break;
    case ControlKind::kLabel:
    case ControlKind::kFrame:
    case ControlKind::kButton:
      update_text(control_.Caption());
      break;
    case ControlKind::kGauge:
      SendMessageW(window_, PBM_SETPOS, static_cast<WPARAM>(static_cast<const Gauge&>(control_).Value()), 0);
      break;
  }
}

void ControlWindow::react(WORD notification) {
  switch (control_.kind()) {
    case ControlKind::kButton:
      if (notification == BN_CLICKED) static_cast<Button&>(control_).Click();
      break;
    case ControlKind::kTextBox:
      if (notification == EN_CHANGE) static_cast<TextBox&>(control_).Text(text_of(window_));
      break;
    case ControlKind::kCheckBox:
      if (notification == BN_CLICKED)
        static_cast<CheckBox&>(control_).Value(SendMessageW(window_, BM_GETCHECK, 0, 0) == BST_CHECKED);
      break;
    case ControlKind::kOptionButton:
      if (notification == BN_CLICKED)
        static_cast<OptionButton&>(control_).Value(SendMessageW(window_, BM_GETCHECK, 0, 0) == BST_CHECKED);
      break;
    case ControlKind::kListBox:
      if (notification == LBN_SELCHANGE)
        static_cast<ItemControl&>(control_).ListIndex(
            static_cast<std::int32_t>(SendMessageW(window_, LB_GETCURSEL, 0, 0)));
      break;
    case ControlKind::kComboBox:
      // Escape in the open list restores the old selection, and the only notification is that the list closed.
      if (notification == CBN_SELCHANGE || notification == CBN_CLOSEUP)
        static_cast<ItemControl&>(control_).ListIndex(
            static_cast<std::int32_t>(SendMessageW(window_, CB_GETCURSEL, 0, 0)));
      break;
    case ControlKind::kLabel:
    case ControlKind::kFrame:
    case ControlKind::kGauge:
      break;
  }
}

void ControlWindow::update_frame(DialogFonts& fonts) {
  const HFONT font = fonts.font(control_.font());
  const bool new_font = reinterpret_cast<HFONT>(SendMessageW(window_, WM_GETFONT, 0, 0)) != font;
  if (new_font) SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
  RECT place = fonts.pixels(control_.place());
  // A label's own font may be larger than the one that the dialog is measured in.
  if (control_.kind() == ControlKind::kLabel) place.bottom = std::max(place.bottom, place.top + line_height(font));
  const RECT now = place_in_dialog(window_);
  if (new_font || !EqualRect(&place, &now)) {
    if (control_.kind() == ControlKind::kComboBox) {
      place_combo(window_, place);
    } else {
      place_window(window_, place);
    }
  }
  if (is_box(control_.kind())) update_name();
  const bool leaves_focus = GetFocus() == window_ && !(control_.Visible() && control_.Enabled());
  if (leaves_focus) SendMessageW(GetParent(window_), WM_NEXTDLGCTL, 0, FALSE);
  if ((IsWindowEnabled(window_) != FALSE) != control_.Enabled()) EnableWindow(window_, control_.Enabled());
  const bool visible = (GetWindowLongPtrW(window_, GWL_STYLE) & WS_VISIBLE) != 0;
  if (visible != control_.Visible()) ShowWindow(window_, control_.Visible() ? SW_SHOWNA : SW_HIDE);
}

// Screen readers take the name of a box from the static text before it, visible or not.
void ControlWindow::update_name() {
  if (name_ == nullptr) {
    if (control_.Caption().empty()) return;
    name_ = make_window({L"STATIC", SS_LEFT | SS_NOPREFIX, 0}, GetParent(window_), 0);
    const HWND before = GetWindow(window_, GW_HWNDPREV);
    SetWindowPos(name_, before != nullptr ? before : HWND_TOP, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
  }
  if (text_of(name_) != control_.Caption()) SetWindowTextW(name_, to_wide(control_.Caption()).c_str());
}

// Where a handler corrects what a person is typing, the caret keeps its distance from the end.
void ControlWindow::update_text(const std::u16string& text) {
  const std::u16string before = text_of(window_);
  if (before == text) return;
  DWORD caret = 0;
  const bool typing = control_.kind() == ControlKind::kTextBox && GetFocus() == window_;
  if (typing) SendMessageW(window_, EM_GETSEL, 0, reinterpret_cast<LPARAM>(&caret));
  SetWindowTextW(window_, to_wide(text).c_str());
  if (!typing) return;
  const std::size_t behind = before.size() - std::min<std::size_t>(caret, before.size());
  const std::size_t place = text.size() - std::min(behind, text.size());
  SendMessageW(window_, EM_SETSEL, place, static_cast<LPARAM>(place));
}

// Replaces only the items that differ, between the common beginning and the common end of the two lists.
void ControlWindow::update_items(const ItemControl& model) {
  const ItemMessages& messages = messages_of(control_.kind());
  const std::vector<ListItem>& wanted = model.items();
  const auto same = [](const ListItem& one, const ListItem& other) { return one.text == other.text; };
  const auto head = std::ranges::mismatch(items_, wanted, same).in1 - items_.begin();
  const auto shorter = static_cast<std::ptrdiff_t>(std::min(items_.size(), wanted.size()));
  std::ptrdiff_t tail = 0;
  while (tail < shorter - head && same(*(items_.end() - 1 - tail), *(wanted.end() - 1 - tail))) ++tail;
  for (auto index = static_cast<std::ptrdiff_t>(items_.size()) - tail; index > head; --index)
    SendMessageW(window_, messages.remove, static_cast<WPARAM>(index - 1), 0);
  for (auto index = head; index < static_cast<std::ptrdiff_t>(wanted.size()) - tail; ++index)
    SendMessageW(window_, messages.insert, static_cast<WPARAM>(index),
                 reinterpret_cast<LPARAM>(to_wide(wanted[static_cast<std::size_t>(index)].text).c_str()));
  items_ = wanted;
  if (control_.kind() == ControlKind::kListBox) set_scroll_width(window_, items_);
  if (SendMessageW(window_, messages.selected, 0, 0) != model.ListIndex())
    SendMessageW(window_, messages.select, static_cast<WPARAM>(model.ListIndex()), 0);
}

// The tab key stops at the selected button of a group, at the first one when none is selected.
void ControlWindow::update_option(const OptionButton& model) {
  const WPARAM state = model.Value() ? BST_CHECKED : BST_UNCHECKED;
  if (SendMessageW(window_, BM_GETCHECK, 0, 0) != static_cast<LRESULT>(state))
    SendMessageW(window_, BM_SETCHECK, state, 0);
  const OptionButton* stop = nullptr;
  for (const Control* control : model.form().controls()) {
    if (!same_group(*control, model)) continue;
    const auto* option = static_cast<const OptionButton*>(control);
    if (stop == nullptr || option->Value()) stop = option;
  }
  set_style(window_, WS_TABSTOP, stop == &model);
}

}  // namespace kavo
