#include "ui/win32/form_window.h"

#include <commctrl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <oleacc.h>
#include <shlobj.h>

#include <stdexcept>

#include "dialog_driver.h"
#include "layout.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/win32/owners.h"
#include "platform/win32/text.h"
#include "screenshot.h"
#include "support/failures.h"
#include "ui/win32/visual_styles.h"

namespace kavo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A form with every kind of control.
class SampleForm : public Form {
 public:
  SampleForm() : Form(u"SampleForm") {
    Caption(u"Sample");
    size(220 * kUnitsPerDialogUnit, 160 * kUnitsPerDialogUnit);
    lblName.Caption(u"&Name:");
    fraOrder.Caption(u"Order");
    optOrder0.Caption(u"By &row");
    optOrder1.Caption(u"By &column");
    optOrder2.Caption(u"&Unsorted");
    chkHidden.Caption(u"&Hidden rows");
    lstTags.Caption(u"Tags");
    for (const char16_t* item : {u"A", u"B", u"C"}) lstTags.AddItem(item);
    for (const char16_t* item : {u"Latin", u"Greek"}) cmbScript.AddItem(item);
    txtNote.Locked(true);
    txtNote.Text(u"only shown");
    cmdAdd.Caption(u"&Add");
    cmdOK.Caption(u"OK");
    cmdCancel.Caption(u"Cancel");
    default_button = &cmdOK;
    cancel_button = &cmdCancel;
    cmdOK.on_click = [this] {
      confirmed = true;
      hide();
    };
    cmdCancel.on_click = [this] { hide(); };
  }

  bool confirmed = false;
  Label lblName{*this, u"lblName", dialog_units(7, 9, 50, 8)};
  TextBox txtName{*this, u"txtName", dialog_units(60, 7, 153, 14)};
  Frame fraOrder{*this, u"fraOrder", dialog_units(7, 25, 100, 52)};
  OptionButton optOrder0{*this, u"optOrder(0)", dialog_units(13, 36, 85, 10), fraOrder};
  OptionButton optOrder1{*this, u"optOrder(1)", dialog_units(13, 48, 85, 10), fraOrder};
  OptionButton optOrder2{*this, u"optOrder(2)", dialog_units(13, 60, 85, 10), fraOrder};
  CheckBox chkHidden{*this, u"chkHidden", dialog_units(7, 82, 100, 10)};
  ListBox lstTags{*this, u"lstTags", dialog_units(113, 25, 100, 67)};
  ComboBox cmbScript{*this, u"cmbScript", dialog_units(7, 98, 100, 14)};
  TextBox txtNote{*this, u"txtNote", dialog_units(113, 98, 100, 14)};
  Gauge prgDone{*this, u"prgDone", dialog_units(7, 119, 206, 8)};
  Button cmdAdd{*this, u"cmdAdd", dialog_units(7, 139, 50, 14)};
  Button cmdOK{*this, u"cmdOK", dialog_units(109, 139, 50, 14)};
  Button cmdCancel{*this, u"cmdCancel", dialog_units(163, 139, 50, 14)};
};

RECT rect_of(HWND window) {
  RECT rect{};
  GetWindowRect(window, &rect);
  return rect;
}

TEST(FormWindowTest, ShowsWhatTheModelsSay) {
  SampleForm form;
  form.txtName.Text(u"\u65E5\u672C\u8A9E");
  form.optOrder1.Value(true);
  form.chkHidden.Value(true);
  form.lstTags.ListIndex(2);
  form.cmbScript.ListIndex(1);
  form.prgDone.Value(40);
  form.cmdAdd.Enabled(false);
  form.optOrder2.Visible(false);
  work(form, [&](const Dialog& dialog) {
    EXPECT_EQ(dialog.caption(), u"Sample");
    EXPECT_EQ(Dialog::text(dialog.control(form.lblName)), u"&Name:");
    EXPECT_EQ(Dialog::text(dialog.control(form.txtName)), u"\u65E5\u672C\u8A9E");
    EXPECT_FALSE(Dialog::checked(dialog.control(form.optOrder0)));
    EXPECT_TRUE(Dialog::checked(dialog.control(form.optOrder1)));
    EXPECT_TRUE(Dialog::checked(dialog.control(form.chkHidden)));
    EXPECT_THAT(Dialog::items(dialog.control(form.lstTags)), ElementsAre(u"A", u"B", u"C"));
    EXPECT_EQ(SendMessageW(dialog.control(form.lstTags), LB_GETCURSEL, 0, 0), 2);
    EXPECT_EQ(Dialog::chosen(dialog.control(form.cmbScript)), u"Greek");
    EXPECT_NE(GetWindowLongPtrW(dialog.control(form.txtNote), GWL_STYLE) & ES_READONLY, 0);
    EXPECT_EQ(SendMessageW(dialog.control(form.prgDone), PBM_GETPOS, 0, 0), 40);
    EXPECT_FALSE(IsWindowEnabled(dialog.control(form.cmdAdd)));
    EXPECT_FALSE(IsWindowVisible(dialog.control(form.optOrder2)));
    EXPECT_TRUE(IsWindowVisible(dialog.control(form.optOrder1)));
    dialog.close();
  });
  EXPECT_FALSE(form.shown());
  EXPECT_EQ(form.view(), nullptr);
}

TEST(FormWindowTest, WhatAPersonDoesReachesTheModelsOnce) {
  SampleForm form;
  int name_changes = 0;
  int order_clicks = 0;
  int hidden_clicks = 0;
  int tag_clicks = 0;
  int script_clicks = 0;
  form.txtName.on_change = [&] { ++name_changes; };
  form.optOrder1.on_click = [&] { ++order_clicks; };
  form.chkHidden.on_click = [&] { ++hidden_clicks; };
  form.lstTags.on_click = [&] { ++tag_clicks; };
  form.cmbScript.on_click = [&] { ++script_clicks; };
  work(form, [&](const Dialog& dialog) {
    dialog.type(dialog.control(form.txtName), u"abc");
    dialog.click(dialog.control(form.optOrder1));
    dialog.click(dialog.control(form.chkHidden));
    dialog.choose(dialog.control(form.lstTags), 1);
    dialog.choose(dialog.control(form.cmbScript), 1);
    dialog.click(dialog.control(form.cmdOK));
  });
  EXPECT_TRUE(form.confirmed);
  EXPECT_EQ(form.txtName.Text(), u"abc");
  EXPECT_EQ(name_changes, 3);
  EXPECT_TRUE(form.optOrder1.Value());
  EXPECT_EQ(order_clicks, 1);
  EXPECT_TRUE(form.chkHidden.Value());
  EXPECT_EQ(hidden_clicks, 1);
  EXPECT_EQ(form.lstTags.ListIndex(), 1);
  EXPECT_EQ(tag_clicks, 1);
  EXPECT_EQ(form.cmbScript.ListIndex(), 1);
  EXPECT_EQ(script_clicks, 1);
}

TEST(FormWindowTest, ChangesOfAHandlerAreSeenAtOnce) {
  SampleForm form;
  form.cmdAdd.on_click = [&] {
    form.lstTags.RemoveItem(1);
    form.lstTags.AddItem(form.txtName.Text());
    form.lstTags.ListIndex(2);
    form.cmbScript.Clear();
    form.cmbScript.AddItem(u"Cyrillic");
    form.cmbScript.ListIndex(0);
    form.optOrder0.Value(true);
    form.chkHidden.Value(true);
    form.chkHidden.Caption(u"&Seen rows");
    form.txtNote.Locked(false);
    form.cmdOK.Enabled(false);
    form.txtName.Text(u"");
    form.txtName.SetFocus();
    form.Caption(u"Other");
  };
  // Text that a handler puts in the place of what was typed.
  form.txtName.on_change = [&] {
    if (form.txtName.Text() == u"Q") form.txtName.Text(u"question");
  };
  work(form, [&](const Dialog& dialog) {
    dialog.type(dialog.control(form.txtName), u"D");
    dialog.click(dialog.control(form.cmdAdd));
    EXPECT_THAT(Dialog::items(dialog.control(form.lstTags)), ElementsAre(u"A", u"C", u"D"));
    EXPECT_EQ(SendMessageW(dialog.control(form.lstTags), LB_GETCURSEL, 0, 0), 2);
    EXPECT_EQ(Dialog::chosen(dialog.control(form.cmbScript)), u"Cyrillic");
    EXPECT_TRUE(Dialog::checked(dialog.control(form.optOrder0)));
    EXPECT_TRUE(Dialog::checked(dialog.control(form.chkHidden)));
    EXPECT_EQ(Dialog::text(dialog.control(form.chkHidden)), u"&Seen rows");
    EXPECT_EQ(GetWindowLongPtrW(dialog.control(form.txtNote), GWL_STYLE) & ES_READONLY, 0);
    EXPECT_FALSE(IsWindowEnabled(dialog.control(form.cmdOK)));
    EXPECT_EQ(Dialog::text(dialog.control(form.txtName)), u"");
    EXPECT_EQ(dialog.focused(), dialog.control(form.txtName));
    EXPECT_EQ(dialog.caption(), u"Other");
    dialog.type(dialog.control(form.txtName), u"Q");
    EXPECT_EQ(Dialog::text(dialog.control(form.txtName)), u"question");
    dialog.close();
  });
}

TEST(FormWindowTest, OptionButtonsOfAGroupFollowTheArrowsAndOneStopsTheTabKey) {
  SampleForm form;
  work(form, [&](const Dialog& dialog) {
    const auto stops = [&](const Control& control) {
      return (GetWindowLongPtrW(dialog.control(control), GWL_STYLE) & WS_TABSTOP) != 0;
    };
    EXPECT_TRUE(stops(form.optOrder0));  // none is selected
    dialog.click(dialog.control(form.optOrder1));
    EXPECT_FALSE(stops(form.optOrder0));
    EXPECT_TRUE(stops(form.optOrder1));
    SendMessageW(dialog.window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(dialog.control(form.optOrder1)), TRUE);
    dialog.press(VK_DOWN);
    EXPECT_TRUE(wait_until([&] { return Dialog::checked(dialog.control(form.optOrder2)); }));
    EXPECT_FALSE(Dialog::checked(dialog.control(form.optOrder1)));
    dialog.press(VK_DOWN);  // around, and not on to the check box
    EXPECT_TRUE(wait_until([&] { return Dialog::checked(dialog.control(form.optOrder0)); }));
    dialog.click(dialog.control(form.cmdOK));
  });
  EXPECT_TRUE(form.optOrder0.Value());
  EXPECT_FALSE(form.optOrder2.Value());
}

TEST(FormWindowTest, TabKeyWalksInTheOrderOfTheControls) {
  SampleForm form;
  form.chkHidden.Enabled(false);
  const std::vector<const Control*> stops{&form.txtName, &form.optOrder0, &form.lstTags, &form.cmbScript,
                                          &form.txtNote, &form.cmdAdd,    &form.cmdOK,   &form.cmdCancel};
  work(form, [&](const Dialog& dialog) {
    const auto expect_focus = [&](const Control& control) {
      EXPECT_TRUE(wait_until([&] { return dialog.focused() == dialog.control(control); }))
          << testing::PrintToString(control.name());
    };
    expect_focus(*stops.front());
    for (std::size_t i = 1; i <= stops.size(); ++i) {
      dialog.press(VK_TAB);
      expect_focus(*stops[i % stops.size()]);
    }
    const ShiftHeld shift(dialog);
    for (std::size_t i = stops.size(); i-- > 0;) {
      dialog.press(VK_TAB);
      expect_focus(*stops[i]);
    }
    dialog.close();
  });
}

TEST(FormWindowTest, FocusStartsWhereTheFormSaysAndLeavesADisabledControl) {
  SampleForm form;
  form.first_focus = &form.cmdAdd;
  form.cmdAdd.on_click = [&] { form.cmdAdd.Enabled(false); };
  work(form, [&](const Dialog& dialog) {
    EXPECT_EQ(dialog.focused(), dialog.control(form.cmdAdd));
    dialog.click(dialog.control(form.cmdAdd));
    EXPECT_EQ(dialog.focused(), dialog.control(form.cmdOK));
    dialog.close();
  });
}

TEST(FormWindowTest, EnterPressesTheDefaultButton) {
  SampleForm form;
  work(form, [&](const Dialog& dialog) {
    dialog.press(VK_RETURN);
    EXPECT_TRUE(dialog.gone());
  });
  EXPECT_TRUE(form.confirmed);
}

TEST(FormWindowTest, EscapeAndTheTitleBarPressTheCancelButton) {
  for (const bool escape : {true, false}) {
    SampleForm form;
    int cancels = 0;
    form.cmdCancel.on_click = [&] {
      ++cancels;
      form.hide();
    };
    work(form, [&](const Dialog& dialog) {
      escape ? dialog.press(VK_ESCAPE) : dialog.close();
      EXPECT_TRUE(dialog.gone());
    });
    EXPECT_EQ(cancels, 1);
    EXPECT_FALSE(form.confirmed);
  }
}

TEST(FormWindowTest, EscapeHidesAFormWithoutACancelButton) {
  SampleForm form;
  form.cancel_button = nullptr;
  work(form, [&](const Dialog& dialog) {
    dialog.press(VK_ESCAPE);
    EXPECT_TRUE(dialog.gone());
  });
  EXPECT_FALSE(form.shown());
}

TEST(FormWindowTest, AccessKeysReachTheirControls) {
  SampleForm form;
  int added = 0;
  form.cmdAdd.on_click = [&] { ++added; };
  form.first_focus = &form.cmdCancel;
  form.txtName.Caption(u"Full name");  // a name of its own after the label
  work(form, [&](const Dialog& dialog) {
    dialog.press_access_key(L'n');
    EXPECT_TRUE(wait_until([&] { return dialog.focused() == dialog.control(form.txtName); }));
    dialog.press_access_key(L'h');
    EXPECT_TRUE(wait_until([&] { return Dialog::checked(dialog.control(form.chkHidden)); }));
    dialog.press_access_key(L'a');
    EXPECT_TRUE(wait_until([&] { return added == 1; }));
    dialog.close();
  });
}

TEST(FormWindowTest, ListsFollowTheKeyboard) {
  SampleForm form;
  form.lstTags.ListIndex(0);
  form.first_focus = &form.lstTags;
  work(form, [&](const Dialog& dialog) {
    EXPECT_EQ(dialog.focused(), dialog.control(form.lstTags));
    dialog.press(VK_DOWN);
    EXPECT_TRUE(wait_until([&] { return form.lstTags.ListIndex() == 1; }));
    SendMessageW(dialog.window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(dialog.control(form.cmbScript)), TRUE);
    dialog.press(VK_DOWN);
    EXPECT_TRUE(wait_until([&] { return form.cmbScript.ListIndex() == 0; }));
    dialog.close();
  });
}

// A screen reader takes the name of a box from the static text before it.
TEST(FormWindowTest, BoxesAreNamedByTheTextBeforeThem) {
  SampleForm form;
  form.cmbScript.Caption(u"Script & face");
  work(form, [&](const Dialog& dialog) {
    const auto name_of = [&](const Control& box) { return Dialog::text(GetWindow(dialog.control(box), GW_HWNDPREV)); };
    EXPECT_EQ(name_of(form.txtName), u"&Name:");
    EXPECT_EQ(name_of(form.lstTags), u"Tags");
    EXPECT_EQ(name_of(form.cmbScript), u"Script & face");
    const HWND label = GetWindow(dialog.control(form.cmbScript), GW_HWNDPREV);
    EXPECT_FALSE(IsWindowVisible(label));
    EXPECT_NE(GetWindowLongPtrW(label, GWL_STYLE) & SS_NOPREFIX, 0);
    dialog.close();
  });
}

// The name of a control that the system gives to a screen reader.
std::u16string accessible_name(HWND window) {
  unique_interface<IAccessible> accessible;
  VARIANT self{};
  self.vt = VT_I4;
  self.lVal = CHILDID_SELF;
  unique_bstr name;
  if (FAILED(CreateStdAccessibleObject(window, OBJID_CLIENT, __uuidof(IAccessible),
                                       reinterpret_cast<void**>(accessible.put()))) ||
      accessible->get_accName(self, name.put()) != S_OK)
    return u"(none)";
  return from_wide(name.get());
}

// Lists are not asked: Wine's reader of names does not know their labels.
TEST(FormWindowTest, ScreenReadersGetTheNamesOfControls) {
  SampleForm form;
  form.txtName.Text(u"typed");
  work(form, [&](const Dialog& dialog) {
    const auto name_of = [&](const Control& control) { return accessible_name(dialog.control(control)); };
    EXPECT_EQ(accessible_name(dialog.window()), u"Sample");
    EXPECT_EQ(name_of(form.cmdAdd), u"Add");
    EXPECT_EQ(name_of(form.chkHidden), u"Hidden rows");
    EXPECT_EQ(name_of(form.optOrder1), u"By column");
    EXPECT_EQ(name_of(form.fraOrder), u"Order");
    EXPECT_EQ(name_of(form.lblName), u"Name:");
    EXPECT_EQ(name_of(form.txtName), u"Name:");
    dialog.close();
  });
}

TEST(FormWindowTest, ExceptionsOfHandlersComeOutOfShowWhenTheWindowIsGone) {
  SampleForm form;
  HWND window = nullptr;
  form.cmdAdd.on_click = [] { throw failure(FailureNumber::kPermissionDenied, u"not here"); };
  const auto error = failure_of([&] {
    work(form, [&](const Dialog& dialog) {
      window = dialog.window();
      dialog.click(dialog.control(form.cmdAdd));
    });
  });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), 70);
  EXPECT_EQ(error->description(), u"not here");
  EXPECT_FALSE(IsWindow(window));
  EXPECT_FALSE(form.shown());
  EXPECT_EQ(form.view(), nullptr);
}

TEST(FormWindowTest, ExceptionsPassThroughNestedForms) {
  SampleForm outer;
  SampleForm inner;
  inner.Caption(u"Inner");
  inner.cmdAdd.on_click = [] { throw std::runtime_error("inside"); };
  outer.cmdAdd.on_click = [&] { inner.show(); };
  EXPECT_THROW(work(outer,
                    [&](const Dialog& dialog) {
                      dialog.click(dialog.control(outer.cmdAdd));
                      const Dialog second = dialog.next();
                      second.click(second.control(inner.cmdAdd));
                    }),
               std::runtime_error);
  EXPECT_FALSE(outer.shown());
}

TEST(FormWindowTest, NestedFormDisablesTheOuterOneAndGivesTheFocusBack) {
  SampleForm outer;
  SampleForm inner;
  inner.Caption(u"Inner");
  outer.cmdAdd.on_click = [&] { inner.show(); };
  work(outer, [&](const Dialog& dialog) {
    SendMessageW(dialog.window(), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(dialog.control(outer.cmdAdd)), TRUE);
    dialog.click(dialog.control(outer.cmdAdd));
    const Dialog second = dialog.next();
    EXPECT_EQ(second.caption(), u"Inner");
    EXPECT_FALSE(IsWindowEnabled(dialog.window()));
    EXPECT_EQ(GetWindow(second.window(), GW_OWNER), dialog.window());
    const RECT over = rect_of(dialog.window());
    const RECT place = rect_of(second.window());
    EXPECT_NEAR(place.left + place.right, over.left + over.right, 2);
    EXPECT_NEAR(place.top + place.bottom, over.top + over.bottom, 2);
    second.click(second.control(inner.cmdOK));
    EXPECT_TRUE(second.gone());
    EXPECT_TRUE(IsWindowEnabled(dialog.window()));
    EXPECT_TRUE(wait_until([&] { return dialog.focused() == dialog.control(outer.cmdAdd); }));
    dialog.close();
  });
  EXPECT_TRUE(inner.confirmed);
}

class HostWindow {
 public:
  explicit HostWindow(const RECT& place)
      : window_(CreateWindowExW(0, L"STATIC", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, place.left, place.top,
                                place.right - place.left, place.bottom - place.top, nullptr, nullptr, nullptr,
                                nullptr)) {
    SetActiveWindow(window_);
  }
  ~HostWindow() { DestroyWindow(window_); }
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;
  HWND window() const { return window_; }

 private:
  HWND window_;
};

TEST(FormWindowTest, IsModalToTheHostsWindowsAndCentredOverTheActiveOne) {
  const HostWindow second({400, 300, 500, 400});
  const HostWindow host({20, 30, 620, 530});
  const HostWindow disabled({400, 300, 500, 400});
  EnableWindow(disabled.window(), FALSE);
  SetActiveWindow(host.window());
  SampleForm form;
  work(form, [&](const Dialog& dialog) {
    EXPECT_EQ(GetWindow(dialog.window(), GW_OWNER), host.window());
    EXPECT_FALSE(IsWindowEnabled(host.window()));
    EXPECT_FALSE(IsWindowEnabled(second.window()));
    const RECT place = rect_of(dialog.window());
    EXPECT_NEAR(place.left + place.right, 20 + 620, 2);
    EXPECT_NEAR(place.top + place.bottom, 30 + 530, 2);
    dialog.close();
  });
  EXPECT_TRUE(IsWindowEnabled(host.window()));
  EXPECT_TRUE(IsWindowEnabled(second.window()));
  EXPECT_FALSE(IsWindowEnabled(disabled.window()));
  EXPECT_EQ(GetActiveWindow(), host.window());
}

TEST(FormWindowTest, StaysOnTheScreenOverAWindowInACorner) {
  const HostWindow host({0, 0, 60, 60});
  SampleForm form;
  work(form, [&](const Dialog& dialog) {
    const RECT place = rect_of(dialog.window());
    EXPECT_GE(place.left, 0);
    EXPECT_GE(place.top, 0);
    dialog.close();
  });
}

TEST(FormWindowTest, QuitOfTheHostsLoopClosesTheFormAndIsSaidAgain) {
  SampleForm form;
  int cancels = 0;
  form.cmdCancel.on_click = [&] {
    ++cancels;
    form.hide();
  };
  const DWORD thread = GetCurrentThreadId();
  work(form, [&](const Dialog&) { PostThreadMessageW(thread, WM_QUIT, 7, 0); });
  EXPECT_EQ(cancels, 1);
  MSG message;
  ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(message.wParam, 7u);
}

TEST(FormWindowTest, FormHiddenByAnotherThreadsCallEndsItsShow) {
  SampleForm form;
  form.txtName.on_change = [&] { form.hide(); };
  work(form, [&](const Dialog& dialog) {
    SendMessageW(dialog.control(form.txtName), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"sent, not posted"));
  });
  EXPECT_EQ(form.txtName.Text(), u"sent, not posted");
}

TEST(FormWindowTest, DroppedFileIsHandedToTheForm) {
  SampleForm form;
  std::u16string path;
  form.on_drop = [&](std::u16string_view file) {
    path = file;
    form.hide();
  };
  work(form, [&](const Dialog& dialog) { dialog.drop(u"C:\\docs\\\u6587.mif"); });
  EXPECT_EQ(path, u"C:\\docs\\\u6587.mif");
}

TEST(FormWindowTest, FormWithoutAHandlerTakesNoFiles) {
  SampleForm form;
  work(form, [&](const Dialog& dialog) {
    EXPECT_EQ(GetWindowLongPtrW(dialog.window(), GWL_EXSTYLE) & WS_EX_ACCEPTFILES, 0);
    dialog.close();
  });
}

TEST(FormWindowTest, ControlsHaveTheThemedClasses) {
  ACTCTX_SECTION_KEYED_DATA data{};
  data.cbSize = sizeof data;
  const auto redirected = [&] {
    return FindActCtxSectionStringW(0, nullptr, ACTIVATION_CONTEXT_SECTION_WINDOW_CLASS_REDIRECTION, L"Button",
                                    &data) != FALSE;
  };
  EXPECT_FALSE(redirected());
  {
    const VisualStyles styles;
    EXPECT_TRUE(redirected());
  }
  EXPECT_FALSE(redirected());
}

TEST(FormWindowTest, ControlFontIsUsedAndScaled) {
  SampleForm form;
  form.txtName.font({u"DejaVu Sans", 12, 1});
  for (const UINT dpi : {96u, 192u}) {
    work(
        form,
        [&](const Dialog& dialog) {
          LOGFONTW font{};
          GetObjectW(reinterpret_cast<HFONT>(SendMessageW(dialog.control(form.txtName), WM_GETFONT, 0, 0)), sizeof font,
                     &font);
          EXPECT_STREQ(font.lfFaceName, L"DejaVu Sans");
          EXPECT_EQ(font.lfHeight, -static_cast<LONG>(12 * dpi / 72));
          dialog.close();
        },
        dpi);
  }
}

TEST(FormWindowTest, GrowsWithTheScreensResolution) {
  SampleForm form;
  SIZE sizes[2];
  for (const int i : {0, 1}) {
    work(
        form,
        [&](const Dialog& dialog) {
          const RECT rect = rect_of(dialog.control(form.txtName));
          sizes[i] = {rect.right - rect.left, rect.bottom - rect.top};
          dialog.close();
        },
        i == 0 ? 96 : 192);
  }
  EXPECT_NEAR(sizes[1].cx, 2 * sizes[0].cx, sizes[0].cx / 5);
  EXPECT_NEAR(sizes[1].cy, 2 * sizes[0].cy, sizes[0].cy / 5);
}

TEST(FormWindowTest, EveryKindOfControlIsLegible) {
  for (const UINT dpi : {96u, 192u}) {
    SampleForm form;
    form.cmbScript.ListIndex(0);
    form.lstTags.ListIndex(1);
    form.optOrder0.Value(true);
    form.txtName.Text(u"Text \u65E5\u672C\u8A9E");
    work(
        form,
        [&](const Dialog& dialog) {
          EXPECT_THAT(layout_faults(dialog.window(), dpi), IsEmpty());
          take_screenshot(dialog.window(), L"sample-" + std::to_wstring(dpi));
          dialog.close();
        },
        dpi);
  }
}

TEST(FormWindowTest, LayoutFaultsAreSeen) {
  SampleForm form;
  form.cmdOK.Caption(u"A caption that no button of this width can show");
  form.cmdAdd.place(form.cmdCancel.place());
  form.lblName.place(dialog_units(-5, 9, 50, 8));
  work(form, [&](const Dialog& dialog) {
    EXPECT_THAT(layout_faults(dialog.window(), 96),
                testing::UnorderedElementsAre(testing::HasSubstr("reaches out"), testing::HasSubstr("overlaps"),
                                              testing::HasSubstr("needs")));
    dialog.close();
  });
}

TEST(FormWindowTest, FormBesideWhatRunsOnTakesItsEventsWhenMessagesAreProcessed) {
  const WindowsScope windows;
  const HostWindow host({20, 30, 620, 530});
  SampleForm form;
  int added = 0;
  form.cmdAdd.on_click = [&] { ++added; };
  form.show_beside();
  ASSERT_TRUE(form.shown());
  EXPECT_FALSE(IsWindowEnabled(host.window()));
  const Dialog dialog = open_dialog();
  ASSERT_NE(dialog.window(), nullptr);
  form.txtName.Text(u"working");
  EXPECT_EQ(Dialog::text(dialog.control(form.txtName)), u"working");
  PostMessageW(dialog.control(form.cmdAdd), BM_CLICK, 0, 0);
  ports().desktop->process_messages();
  EXPECT_EQ(added, 1);
  dialog.press(VK_ESCAPE);  // the dialog's keys, though nobody but the hook knows it
  ports().desktop->process_messages();
  EXPECT_FALSE(form.shown());
  EXPECT_EQ(form.view(), nullptr);
  EXPECT_FALSE(IsWindow(dialog.window()));
  EXPECT_TRUE(IsWindowEnabled(host.window()));

  form.show_beside();
  form.hide();
  EXPECT_EQ(form.view(), nullptr);
  EXPECT_TRUE(IsWindowEnabled(host.window()));
}

}  // namespace
}  // namespace kavo::test
