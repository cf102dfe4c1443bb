// The library's dialogs as real windows: a person fills them in, and what they decide is stored.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "common/file_type.h"
#include "common/program_settings.h"
#include "dialog_driver.h"
#include "driver/filter_table.h"
#include "html/frmHTMLOptions.h"
#include "html/repair/clsHTMLValidate.h"
#include "japanese_texts.h"
#include "layout.h"
#include "mif/clsMIFUtilities.h"
#include "mif/frmMIFOptions.h"
#include "new_user.h"
#include "office/clsXLSUtil.h"
#include "office/frmExcelOptions.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "platform/win32/text.h"
#include "screenshot.h"
#include "suite/suite.h"
#include "support/temp_folder.h"
#include "ui/frmProgress.h"
#include "ui/frmSetLanguage.h"
#include "ui/frmWizard.h"

namespace kavo::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DialogsTest : public testing::Test {
 protected:
  DialogsTest() { register_suite_factories(); }

  static std::u16string language_setting(std::u16string_view name) {
    const auto data = ports().registry->read(Hive::kCurrentUser, u"Software\\MOR\\MOR Edit\\Settings", name);
    if (!data) return u"(none)";
    std::u16string text;
    for (std::size_t i = 0; i + 1 < data->bytes.size() && data->bytes[i] != 0; i += 2)
      text += static_cast<char16_t>(data->bytes[i]);
    return text;
  }

  WizardServices services_{FileTypeOf, has_filter_settings, show_filter_settings};
  NewUser user_;
  WindowsScope windows_;
};

TEST_F(DialogsTest, MifOptionsAreStoredAfterOK) {
  {
    clsMIFUtilities mif;
    work([&] { mif.DisplayOptions(); },
         [](const Dialog& dialog) {
           EXPECT_EQ(dialog.caption(), u"MIF Options");
           const HWND split = dialog.control(L"ComboBox", 0);
           const HWND markers = dialog.control(L"ListBox", 0);
           const HWND marker = dialog.control(L"Edit", 0);
           EXPECT_EQ(Dialog::chosen(split), u"Don't split");
           EXPECT_TRUE(Dialog::checked(dialog.control(u"Remove embedded &objects from files")));
           EXPECT_THAT(Dialog::items(markers), ElementsAre(u"Index"));
           dialog.choose(split, 2);
           dialog.click(dialog.control(u"Remove embedded &objects from files"));
           dialog.type(marker, u" Note ");
           dialog.click(dialog.control(u"&Add"));
           EXPECT_THAT(Dialog::items(markers), ElementsAre(u"Index", u"Note"));
           EXPECT_EQ(Dialog::text(marker), u"");
           EXPECT_EQ(dialog.focused(), marker);
           dialog.type(marker, u"\u6CE8");
           dialog.click(dialog.control(u"&Add"));
           dialog.choose(markers, 0);
           dialog.click(dialog.control(u"&Remove"));
           EXPECT_THAT(Dialog::items(markers), ElementsAre(u"Note", u"\u6CE8"));
           EXPECT_EQ(SendMessageW(markers, LB_GETCURSEL, 0, 0), 0);
           dialog.click(dialog.control(u"OK"));
         });
    EXPECT_EQ(mif.SplitOptions(), 2);
  }
  EXPECT_EQ(kMifSettings.get(u"Split", u""), u"2");
  EXPECT_EQ(kMifSettings.get(u"Objects", u""), u"0");
  EXPECT_EQ(kMifSettings.get(u"Markers", u""), u"Note\t\u6CE8\t");
}

TEST_F(DialogsTest, MifOptionsStayAfterCancel) {
  clsMIFUtilities mif;
  work([&] { mif.DisplayOptions(); },
       [](const Dialog& dialog) {
         dialog.choose(dialog.control(L"ComboBox", 0), 1);
         dialog.click(dialog.control(u"&Clear"));
         EXPECT_THAT(Dialog::items(dialog.control(L"ListBox", 0)), IsEmpty());
         dialog.click(dialog.control(u"Cancel"));
       });
  EXPECT_EQ(mif.SplitOptions(), 0);
  EXPECT_EQ(mif.Markers(), u"Index\t");
}

TEST_F(DialogsTest, HtmlOptionsChangeTheTableAfterOK) {
  clsHTMLValidate html;
  html.Tags(u"FONT|0,B|1,");
  work([&] { html.DisplayOptions(); },
       [](const Dialog& dialog) {
         const HWND tags = dialog.control(L"ListBox", 0);
         const HWND overlap = dialog.control(u"&Overlap allowed");
         EXPECT_THAT(Dialog::items(tags), ElementsAre(u"FONT", u"B"));
         EXPECT_EQ(SendMessageW(tags, LB_GETCURSEL, 0, 0), 0);
         EXPECT_FALSE(Dialog::checked(overlap));
         dialog.choose(tags, 1);
         EXPECT_TRUE(Dialog::checked(overlap));
         dialog.type(dialog.control(L"Edit", 0), u" font ");
         dialog.click(dialog.control(u"&Add"));
         EXPECT_THAT(Dialog::items(tags), ElementsAre(u"FONT", u"B"));
         dialog.type(dialog.control(L"Edit", 0), u"em");
         dialog.click(dialog.control(u"&Add"));
         EXPECT_THAT(Dialog::items(tags), ElementsAre(u"FONT", u"B", u"EM"));
         EXPECT_FALSE(Dialog::checked(overlap));
         dialog.click(overlap);
         dialog.click(dialog.control(u"OK"));
       });
  EXPECT_EQ(html.Tags(), u"FONT|0,B|1,EM|1,");
}

TEST_F(DialogsTest, HtmlOptionsStayAfterTheTitleBarsClose) {
  clsHTMLValidate html;
  html.Tags(u"FONT|0,B|1,");
  work([&] { html.DisplayOptions(); },
       [](const Dialog& dialog) {
         dialog.click(dialog.control(u"&Clear"));
         dialog.close();
         EXPECT_TRUE(dialog.gone());
       });
  EXPECT_EQ(html.Tags(), u"FONT|0,B|1,");
}

TEST_F(DialogsTest, ExcelOptionsAreStoredAfterOK) {
  work([] { clsXLSUtil().DisplayOptions(); },
       [](const Dialog& dialog) {
         EXPECT_TRUE(Dialog::checked(dialog.control(u"&Row by row")));
         EXPECT_TRUE(Dialog::checked(dialog.control(u"Export &hidden content")));
         EXPECT_TRUE(Dialog::checked(dialog.control(u"Export &formulas")));
         const HWND tolerance = dialog.control(L"Edit", 0);
         EXPECT_EQ(Dialog::text(tolerance), u"255");
         dialog.click(dialog.control(u"&Column by column"));
         EXPECT_FALSE(Dialog::checked(dialog.control(u"&Row by row")));
         dialog.click(dialog.control(u"Export &formulas"));
         dialog.type(tolerance, u"12a3");
         EXPECT_EQ(Dialog::text(tolerance), u"123");
         // The warning is a dialog of the system's.
         dialog.click(dialog.control(u"&Ungroup objects before the export"));
         const Dialog warning = dialog.next();
         EXPECT_FALSE(IsWindowEnabled(dialog.window()));
         SendNotifyMessageW(warning.window(), WM_COMMAND, IDOK, 0);
         EXPECT_TRUE(warning.gone());
         dialog.click(dialog.control(u"OK"));
       });
  const auto stored = [](std::u16string_view key) { return kExcelSettings.get(key, u"(none)"); };
  EXPECT_EQ(stored(u"Order"), u"1");
  EXPECT_EQ(stored(u"Hidden"), u"1");
  EXPECT_EQ(stored(u"Formulas"), u"0");
  EXPECT_EQ(stored(u"Ungroup"), u"1");
  EXPECT_EQ(stored(u"Tolerance"), u"123");
}

TEST_F(DialogsTest, ExcelOptionsStayAfterCancel) {
  work([] { clsXLSUtil().DisplayOptions(); },
       [](const Dialog& dialog) {
         dialog.click(dialog.control(u"&Column by column"));
         dialog.click(dialog.control(u"Cancel"));
       });
  EXPECT_EQ(kExcelSettings.get(u"Order", u"(none)"), u"(none)");
}

TEST_F(DialogsTest, SetLanguageShowsTheCharacterSetOnDemandAndRemembersThat) {
  {
    frmSetLanguage form;
    work([&] { form.show(); },
         [&](const Dialog& dialog) {
           EXPECT_EQ(dialog.caption(), u"Set language");
           EXPECT_FALSE(IsWindowVisible(dialog.control(form.morLang.cmbEncoding)));
           RECT before{};
           GetWindowRect(dialog.window(), &before);
           dialog.click(dialog.control(u"More >>"));
           EXPECT_TRUE(IsWindowVisible(dialog.control(form.morLang.cmbEncoding)));
           EXPECT_EQ(Dialog::text(dialog.control(form.cmdToggle)), u"<< Less");
           RECT after{};
           GetWindowRect(dialog.window(), &after);
           EXPECT_GT(after.bottom - after.top, before.bottom - before.top);
           dialog.choose(dialog.control(form.morLang.cmbLanguage), 0);
           dialog.choose(dialog.control(form.morLang.cmbLanguage), 3);
           dialog.click(dialog.control(u"OK"));
         });
    EXPECT_FALSE(form.Cancelled());
    EXPECT_EQ(form.morLang.cmbLanguage.ListIndex(), 3);
  }
  EXPECT_EQ(kLanguageDialogSettings.get(u"ShowCharset", u"N"), u"Y");
  frmSetLanguage again;
  work([&] { again.show(); },
       [&](const Dialog& dialog) {
         EXPECT_TRUE(IsWindowVisible(dialog.control(again.morLang.cmbEncoding)));
         dialog.press(VK_ESCAPE);
         EXPECT_TRUE(dialog.gone());
       });
  EXPECT_TRUE(again.Cancelled());
}

TEST_F(DialogsTest, WizardAsksForEverythingAndRemembersIt) {
  const TempFolder folder;
  const std::u16string page = folder.write(u"page.htm", "<p>Text</p>");
  frmWizard form(services_);
  work([&] { form.show(); },
       [&](const Dialog& dialog) {
         EXPECT_EQ(dialog.focused(), dialog.control(form.txtSourceFile));
         EXPECT_FALSE(IsWindowEnabled(dialog.control(form.cmdOK)));
         dialog.type(dialog.control(form.txtSourceFile), u"C:\\x.zzz");
         EXPECT_EQ(Dialog::text(dialog.control(form.lblFileType)), u"Unrecognised file type");
         EXPECT_TRUE(IsWindowEnabled(dialog.control(form.cmdOK)));
         dialog.type(dialog.control(form.txtSourceFile), u"");
         EXPECT_FALSE(IsWindowEnabled(dialog.control(form.cmdOK)));
         dialog.type(dialog.control(form.txtSourceFile), page);
         EXPECT_EQ(Dialog::text(dialog.control(form.lblFileType)), u"");
         EXPECT_TRUE(IsWindowEnabled(dialog.control(form.cmdOptions)));
         // A dialog over the dialog.
         dialog.click(dialog.control(form.cmdOptions));
         const Dialog options = dialog.next();
         EXPECT_EQ(options.caption(), u"HTML Options");
         EXPECT_FALSE(IsWindowEnabled(dialog.window()));
         options.click(options.control(u"Cancel"));
         EXPECT_TRUE(options.gone());
         dialog.click(dialog.control(form.cmdChangeLang[1]));
         const Dialog language = dialog.next();
         EXPECT_EQ(language.caption(), u"Set language");
         language.choose(language.control(L"ComboBox", 0), u"German");
         language.click(language.control(u"OK"));
         EXPECT_TRUE(language.gone());
         EXPECT_EQ(Dialog::text(dialog.control(form.txtLang[1])).substr(0, 6), u"German");
         dialog.click(dialog.control(form.cmdOK));
         EXPECT_TRUE(dialog.gone());
       });
  EXPECT_FALSE(form.Cancelled());
  EXPECT_EQ(form.txtSourceFile.Text(), page);
  EXPECT_EQ(language_setting(u"DefSourceLanguage"), u"EN-US");
  EXPECT_EQ(language_setting(u"DefTransLanguage").substr(0, 2), u"DE");
  EXPECT_EQ(kWizardSettings.get(u"InitDir", u""), folder.path() + u"\\");
}

TEST_F(DialogsTest, WizardTakesADroppedFile) {
  frmWizard form(services_);
  work(form, [&](const Dialog& dialog) {
    dialog.drop(u"C:\\Manuals\\\u624B\u5F15\u304D.mif");
    EXPECT_EQ(Dialog::text(dialog.control(form.txtSourceFile)), u"C:\\Manuals\\\u624B\u5F15\u304D.mif");
    EXPECT_TRUE(IsWindowEnabled(dialog.control(form.cmdOK)));
    EXPECT_TRUE(IsWindowEnabled(dialog.control(form.cmdOptions)));
    dialog.press(VK_RETURN);
    EXPECT_TRUE(dialog.gone());
  });
  EXPECT_FALSE(form.Cancelled());
}

// The host's folder is not the one that the converters will look in.
TEST_F(DialogsTest, WizardNamesATypedFileFromTheRoot) {
  std::wstring folder(MAX_PATH, L'\0');
  folder.resize(GetCurrentDirectoryW(MAX_PATH, folder.data()));
  frmWizard form(services_);
  work(form, [&](const Dialog& dialog) {
    dialog.type(dialog.control(form.txtSourceFile), u"docs\\..\\page.htm");
    dialog.click(dialog.control(form.cmdOK));
    EXPECT_TRUE(dialog.gone());
  });
  EXPECT_EQ(form.txtSourceFile.Text(), from_wide(folder) + u"\\page.htm");
}

TEST_F(DialogsTest, WizardsCancelStoresNothing) {
  frmWizard form(services_);
  work([&] { form.show(); },
       [&](const Dialog& dialog) {
         dialog.press(VK_ESCAPE);
         EXPECT_TRUE(dialog.gone());
       });
  EXPECT_TRUE(form.Cancelled());
  EXPECT_EQ(language_setting(u"DefSourceLanguage"), u"(none)");
}

// The file dialogs of the system: the name is typed and confirmed, or the dialog is given up.
constexpr int kFileNameCombo = 0x47C;
constexpr int kFileNameEdit = 0x480;

TEST_F(DialogsTest, WizardsBrowseButtonFillsTheSourceBox) {
  const TempFolder folder;
  const std::u16string page = folder.write(u"page.htm", "<p>Text</p>");
  frmWizard form(services_);
  work([&] { form.show(); },
       [&](const Dialog& dialog) {
         dialog.click(dialog.control(form.cmdBrowse));
         const Dialog given_up = dialog.next();
         SendNotifyMessageW(given_up.window(), WM_COMMAND, IDCANCEL, 0);
         EXPECT_TRUE(given_up.gone());
         EXPECT_EQ(Dialog::text(dialog.control(form.txtSourceFile)), u"");
         dialog.click(dialog.control(form.cmdBrowse));
         const Dialog files = dialog.next();
         HWND name = nullptr;
         EXPECT_TRUE(wait_until([&] {
           name = GetDlgItem(files.window(), kFileNameEdit);
           if (name == nullptr) name = GetDlgItem(files.window(), kFileNameCombo);
           return name != nullptr;
         }));
         SendMessageW(name, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(to_wide(page).c_str()));
         SendNotifyMessageW(files.window(), WM_COMMAND, IDOK, 0);
         EXPECT_TRUE(files.gone());
         EXPECT_TRUE(wait_until([&] { return Dialog::text(dialog.control(form.txtSourceFile)) == page; }));
         dialog.press(VK_ESCAPE);
         EXPECT_TRUE(dialog.gone());
       });
}

// Every dialog at two resolutions, in its own texts and in Japanese: nothing is cut off, nothing overlaps.

class LegibilityTest : public testing::TestWithParam<std::tuple<UINT, bool>> {
 protected:
  LegibilityTest() { register_suite_factories(); }

  void check(Form& form, const std::wstring& name, const Texts& texts) const {
    const auto [dpi, japanese] = GetParam();
    if (japanese) translate(form, texts);
    work(
        form,
        [&](const Dialog& dialog) {
          EXPECT_THAT(layout_faults(dialog.window(), dpi), IsEmpty()) << testing::PrintToString(form.name());
          take_screenshot(dialog.window(), name + (japanese ? L"-ja-" : L"-") + std::to_wstring(dpi));
          dialog.close();
        },
        dpi);
  }

  WizardServices services_{FileTypeOf, has_filter_settings, show_filter_settings};
  NewUser user_;
};

TEST_P(LegibilityTest, Wizard) {
  frmWizard form(services_);
  form.cmdKAVO.Visible(true);
  form.txtSourceFile.Text(u"C:\\Manuals\\guide.mif");
  check(form, L"wizard", japanese_wizard());
}

TEST_P(LegibilityTest, WizardWithAFileOfNoKnownType) {
  frmWizard form(services_);
  form.txtSourceFile.Text(u"C:\\Manuals\\guide.zzz");
  check(form, L"wizard-unknown", japanese_wizard());
}

TEST_P(LegibilityTest, SetLanguage) {
  frmSetLanguage form;
  check(form, L"set-language", japanese_set_language());
}

TEST_P(LegibilityTest, SetLanguageWithTheCharacterSet) {
  frmSetLanguage form;
  form.cmdToggle.Click();
  check(form, L"set-language-more", japanese_set_language());
}

TEST_P(LegibilityTest, MifOptions) {
  frmMIFOptions form;
  form.SplitOptions(2);
  form.Markers(u"Index\tGlossary\t");
  form.ProcessObjects(true);
  check(form, L"mif-options", japanese_mif_options());
}

TEST_P(LegibilityTest, HtmlOptions) {
  frmHTMLOptions form;
  form.Tags(clsHTMLValidate().Tags());
  check(form, L"html-options", japanese_html_options());
}

TEST_P(LegibilityTest, ExcelOptions) {
  frmExcelOptions form;
  check(form, L"excel-options", japanese_excel_options());
}

TEST_P(LegibilityTest, Progress) {
  frmProgress form;
  form.report(text::kPreparing, u"C:\\Manuals\\Operating instructions\\Chapter 12\\guide.mif", 42);
  check(form, L"progress", japanese_progress());
}

INSTANTIATE_TEST_SUITE_P(Dialogs, LegibilityTest, testing::Combine(testing::Values(96u, 192u), testing::Bool()),
                         [](const auto& test) {
                           return std::string(std::get<1>(test.param) ? "Japanese" : "Latin") +
                                  std::to_string(std::get<0>(test.param));
                         });

}  // namespace
}  // namespace kavo::test
