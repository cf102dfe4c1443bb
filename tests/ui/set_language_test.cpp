#include <gtest/gtest.h>

#include "common/program_settings.h"
#include "forms/fake_presenter.h"
#include "support/ports_fixture.h"
#include "ui/fake_languages.h"
#include "ui/frmSetLanguage.h"

namespace kavo::test {
namespace {

class SetLanguageTest : public PortsFixture {
 protected:
  SetLanguageTest() {
    automation.factories[u"K19Suite.LanguageInformation"] = [] {
      return make_language_information(five_languages(), three_code_pages());
    };
  }
  static std::u16string stored() { return kLanguageDialogSettings.get(u"ShowCharset", u"(none)"); }
  static void store(std::u16string_view value) { kLanguageDialogSettings.save(u"ShowCharset", value); }
};

TEST_F(SetLanguageTest, TheCharacterSetIsHiddenOnFirstUse) {
  {
    const frmSetLanguage form;
    EXPECT_EQ(form.Caption(), u"Set language");
    EXPECT_EQ(form.cmdOK.Caption(), u"OK");
    EXPECT_EQ(form.cmdCancel.Caption(), u"Cancel");
    EXPECT_FALSE(form.morLang.ShowCharSet());
    EXPECT_EQ(form.cmdToggle.Caption(), u"More >>");
  }
  EXPECT_EQ(stored(), u"N");
}

TEST_F(SetLanguageTest, TogglingShowsItMovesTheButtonsAndIsRemembered) {
  {
    frmSetLanguage form;
    const Place before = form.size();
    form.cmdToggle.Click();
    EXPECT_TRUE(form.morLang.ShowCharSet());
    EXPECT_EQ(form.cmdToggle.Caption(), u"<< Less");
    EXPECT_GT(form.size().height, before.height);
    for (const Button* button : {&form.cmdOK, &form.cmdCancel})
      EXPECT_EQ(button->place().top, form.morLang.bottom() + 60);
  }
  EXPECT_EQ(stored(), u"Y");
  {
    frmSetLanguage form;
    EXPECT_TRUE(form.morLang.ShowCharSet());
    EXPECT_EQ(form.cmdToggle.Caption(), u"<< Less");
    form.cmdToggle.Click();
    EXPECT_EQ(form.cmdToggle.Caption(), u"More >>");
    EXPECT_EQ(form.cmdOK.place().top, form.morLang.bottom() + 60);
  }
  EXPECT_EQ(stored(), u"N");
}

TEST_F(SetLanguageTest, AnySettingButNShowsTheCharacterSet) {
  for (const std::u16string_view text : {u"Y", u"", u"n", u"yes"}) {
    store(text);
    EXPECT_TRUE(frmSetLanguage().morLang.ShowCharSet());
  }
}

TEST_F(SetLanguageTest, OkAndCancelAreReported) {
  FakePresenter person;
  person.next<frmSetLanguage>([](frmSetLanguage& form) { form.cmdOK.Click(); });
  frmSetLanguage form;
  form.show();
  EXPECT_FALSE(form.Cancelled());
  person.next<frmSetLanguage>([](frmSetLanguage& shown) { shown.cmdCancel.Click(); });
  form.show();
  EXPECT_TRUE(form.Cancelled());
  EXPECT_EQ(form.morLang.LanguageCode(), u"EN-US") << "it stays loaded";
}

}  // namespace
}  // namespace kavo::test
