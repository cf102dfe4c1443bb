// The wizard on a Japanese system, whose ANSI code page (932) has characters with a backslash as their second byte.
// Skipped on every other system; run_japanese.sh makes one.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "common/file_type.h"
#include "common/program_settings.h"
#include "dialog_driver.h"
#include "driver/K19FPWObj.h"
#include "driver/filter_table.h"
#include "japanese_texts.h"
#include "layout.h"
#include "new_user.h"
#include "screenshot.h"
#include "suite/suite.h"
#include "support/temp_folder.h"
#include "ui/frmSetLanguage.h"
#include "ui/frmWizard.h"

namespace kavo::test {
namespace {

using testing::IsEmpty;

class JapaneseSystemTest : public testing::Test {
 protected:
  JapaneseSystemTest() { register_suite_factories(); }
  void SetUp() override {
    constexpr UINT kJapanese = 932;
    if (GetACP() != kJapanese) GTEST_SKIP() << "the ANSI code page is " << GetACP() << " here, not 932";
  }

  NewUser user_;
  TempFolder folder_;
  // U+8868 and U+80FD are 0x95 0x5C and 0x94 0x5C in this code page.
  const std::u16string page_ =
      folder_.write(u"\u8868\u80FD\\\u624B\u5F15\u304D \u8868.htm",
                    "<html><body><p>\x82\xB1\x82\xF1\x82\xC9\x82\xBF\x82\xCD</p></body></html>\r\n");
};

TEST_F(JapaneseSystemTest, PickersHaveAFontThatShowsTheScript) {
  const frmSetLanguage form;
  EXPECT_EQ(form.morLang.cmbLanguage.font(), (ControlFont{u"MS UI Gothic", 0, SHIFTJIS_CHARSET}));
}

TEST_F(JapaneseSystemTest, WizardWithJapaneseTextsTakesATypedJapanesePath) {
  frmWizard form({FileTypeOf, has_filter_settings, show_filter_settings});
  form.cmdKAVO.Visible(true);
  translate(form, japanese_wizard());
  work(form, [&](const Dialog& dialog) {
    EXPECT_EQ(dialog.caption(), u"\u7FFB\u8A33\u306E\u958B\u59CB");
    dialog.type(dialog.control(form.txtSourceFile), page_);
    EXPECT_EQ(Dialog::text(dialog.control(form.txtSourceFile)), page_);
    EXPECT_TRUE(IsWindowEnabled(dialog.control(form.cmdOptions)));
    EXPECT_THAT(layout_faults(dialog.window(), 96), IsEmpty());
    take_screenshot(dialog.window(), L"wizard-932");
    dialog.click(dialog.control(form.cmdOK));
    EXPECT_TRUE(dialog.gone());
  });
  EXPECT_FALSE(form.Cancelled());
  EXPECT_EQ(form.txtSourceFile.Text(), page_);
  EXPECT_EQ(kWizardSettings.get(u"InitDir", u""), folder_.path(u"\u8868\u80FD\\"));
}

TEST_F(JapaneseSystemTest, RunMakesTheBilingualDocumentBesideTheFile) {
  const WindowsScope windows;
  K19FPWObj object;
  object.QuietMode(1);
  std::u16string file = page_;
  std::int32_t bits = 0;
  std::int32_t result = -1;
  work([&] { result = object.SingleFileWizard(file, bits); },
       [](const Dialog& dialog) {
         dialog.click(dialog.control(u"Ch&ange..."));
         const Dialog language = dialog.next();
         language.choose(language.control(L"ComboBox", 0), u"Japanese");
         language.click(language.control(u"OK"));
         EXPECT_TRUE(language.gone());
         dialog.click(dialog.control(u"OK"));
       });
  EXPECT_EQ(result, 0);
  const std::string document = folder_.read(u"\u8868\u80FD\\\u624B\u5F15\u304D \u8868_htm_htm_FR.tud");
  EXPECT_NE(document.find("\u3053\u3093\u306B\u3061\u306F"), std::string::npos) << document;
}

}  // namespace
}  // namespace kavo::test
