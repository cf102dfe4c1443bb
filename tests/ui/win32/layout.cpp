#include "layout.h"

#include <commctrl.h>

#include <algorithm>

#include "platform/unicode.h"
#include "platform/win32/text.h"

namespace kavo::test {
namespace {

enum class Kind { kText, kFrame, kButton, kMark, kEdit, kList, kCombo, kGauge };

struct Child {
  HWND window;
  Kind kind;
  RECT rect;
  std::wstring text;
  std::string name() const {
    return "control " + std::to_string(GetDlgCtrlID(window)) + " \"" + to_utf8(from_wide(text)) + "\"";
  }
};

Kind kind_of(HWND window) {
  wchar_t name[32];
  GetClassNameW(window, name, 32);
  if (lstrcmpiW(name, L"Static") == 0) return Kind::kText;
  if (lstrcmpiW(name, L"Edit") == 0) return Kind::kEdit;
  if (lstrcmpiW(name, L"ListBox") == 0) return Kind::kList;
  if (lstrcmpiW(name, L"ComboBox") == 0) return Kind::kCombo;
  if (lstrcmpiW(name, PROGRESS_CLASSW) == 0) return Kind::kGauge;
  switch (GetWindowLongPtrW(window, GWL_STYLE) & BS_TYPEMASK) {
    case BS_GROUPBOX:
      return Kind::kFrame;
    case BS_AUTOCHECKBOX:
    case BS_AUTORADIOBUTTON:
      return Kind::kMark;
    default:
      return Kind::kButton;
  }
}

std::vector<Child> visible_children(HWND dialog) {
  std::vector<Child> children;
  for (HWND window = GetWindow(dialog, GW_CHILD); window != nullptr; window = GetWindow(window, GW_HWNDNEXT)) {
    if (!IsWindowVisible(window)) continue;
    Child child{window, kind_of(window), {}, {}};
    GetWindowRect(window, &child.rect);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&child.rect), 2);
    child.text.resize(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1);
    child.text.resize(
        static_cast<std::size_t>(GetWindowTextW(window, child.text.data(), static_cast<int>(child.text.size()))));
    children.push_back(child);
  }
  return children;
}

// The pixels that a text needs in the font of a window, its access key sign taken away.
class Measure {
 public:
  explicit Measure(HWND window) : window_(window), context_(GetDC(window)) {
    before_ = SelectObject(context_, reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)));
  }
  ~Measure() {
    SelectObject(context_, before_);
    ReleaseDC(window_, context_);
  }
  Measure(const Measure&) = delete;
  Measure& operator=(const Measure&) = delete;

  SIZE line(const std::wstring& text) const {
    SIZE size{};
    GetTextExtentPoint32W(context_, text.c_str(), static_cast<int>(text.size()), &size);
    return size;
  }
  SIZE caption(const std::wstring& text) const {
    std::wstring plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] == L'&' && i + 1 < text.size()) ++i;
      plain += text[i];
    }
    return line(plain);
  }
  // Broken into lines of at most that width, as a label draws it.
  SIZE lines(const std::wstring& text, LONG width) const {
    RECT rect{0, 0, width, 0};
    DrawTextW(context_, text.c_str(), static_cast<int>(text.size()), &rect, DT_CALCRECT | DT_WORDBREAK);
    return {rect.right, rect.bottom};
  }

 private:
  HWND window_;
  HDC context_;
  HGDIOBJ before_;
};

// What the system draws around a text, at 96 dots per inch.
constexpr LONG kButtonBorder = 3;
constexpr LONG kMarkWidth = 13 + 4;  // the box or circle and the gap after it
constexpr LONG kFrameBorder = 9;
constexpr LONG kBoxBorder = 2;
constexpr LONG kArrowWidth = 17;

// The room that a control has for its text, and what the text takes of it.
struct Fit {
  SIZE room;
  SIZE taken;
};

std::vector<std::wstring> combo_items(HWND combo) {
  std::vector<std::wstring> items;
  const auto count = static_cast<std::size_t>(SendMessageW(combo, CB_GETCOUNT, 0, 0));
  for (std::size_t i = 0; i < count; ++i) {
    std::wstring text(static_cast<std::size_t>(SendMessageW(combo, CB_GETLBTEXTLEN, i, 0)) + 1, L'\0');
    SendMessageW(combo, CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(text.data()));
    text.pop_back();
    items.push_back(text);
  }
  return items;
}

Fit fit_of(const Child& child, UINT dpi) {
  const auto scaled = [&](LONG pixels) { return MulDiv(pixels, static_cast<int>(dpi), 96); };
  const Measure measure(child.window);
  const LONG width = child.rect.right - child.rect.left;
  const LONG height = child.rect.bottom - child.rect.top;
  switch (child.kind) {
    case Kind::kText:
      return {{width, height}, measure.lines(child.text, width)};
    case Kind::kFrame:
      return {{width - 2 * scaled(kFrameBorder), height}, measure.caption(child.text)};
    case Kind::kButton:
      return {{width - 2 * scaled(kButtonBorder), height - 2 * scaled(kButtonBorder)}, measure.caption(child.text)};
    case Kind::kMark:
      return {{width - scaled(kMarkWidth), height}, measure.caption(child.text)};
    case Kind::kGauge:
      return {};
    case Kind::kEdit:
    case Kind::kList:
      return {{width, height - 2 * scaled(kBoxBorder)}, {0, measure.line(L"Ag").cy}};  // they scroll
    case Kind::kCombo: {
      Fit fit{{width - scaled(kArrowWidth) - 2 * scaled(kBoxBorder), height - 2 * scaled(kBoxBorder)},
              {0, measure.line(L"Ag").cy}};
      for (const std::wstring& item : combo_items(child.window))
        fit.taken.cx = std::max(fit.taken.cx, measure.line(item).cx);
      return fit;
    }
  }
  return {};
}

bool overlap(const Child& one, const Child& other) {
  RECT common;
  if (!IntersectRect(&common, &one.rect, &other.rect)) return false;
  const auto holds = [](const Child& frame, const Child& inside) {
    if (frame.kind != Kind::kFrame) return false;
    RECT room = frame.rect;
    room.top += Measure(frame.window).line(L"Ag").cy;
    RECT all;
    UnionRect(&all, &room, &inside.rect);
    return EqualRect(&all, &room) && room.left < inside.rect.left && inside.rect.right < room.right &&
           inside.rect.bottom < room.bottom;
  };
  return !holds(one, other) && !holds(other, one);
}

}  // namespace

std::vector<std::string> layout_faults(HWND dialog, UINT dpi) {
  std::vector<std::string> faults;
  const std::vector<Child> children = visible_children(dialog);
  if (children.empty()) faults.emplace_back("no control at all");
  RECT client{};
  GetClientRect(dialog, &client);
  for (const Child& child : children) {
    RECT all;
    UnionRect(&all, &client, &child.rect);
    if (!EqualRect(&all, &client)) faults.push_back(child.name() + " reaches out of the dialog");
    const Fit fit = fit_of(child, dpi);
    if (fit.taken.cx > fit.room.cx || fit.taken.cy > fit.room.cy)
      faults.push_back(child.name() + " needs " + std::to_string(fit.taken.cx) + "x" + std::to_string(fit.taken.cy) +
                       " pixels and has " + std::to_string(fit.room.cx) + "x" + std::to_string(fit.room.cy));
    for (const Child& other : children)
      if (other.window > child.window && overlap(child, other))
        faults.push_back(child.name() + " overlaps " + other.name());
  }
  return faults;
}

}  // namespace kavo::test
