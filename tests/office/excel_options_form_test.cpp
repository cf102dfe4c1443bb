#include <gtest/gtest.h>

#include "common/program_settings.h"
#include "forms/fake_presenter.h"
#include "office/clsXLSUtil.h"
#include "office/frmExcelOptions.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

class ExcelOptionsFormTest : public PortsFixture {
 protected:
  static std::u16string stored(std::u16string_view key) { return kExcelSettings.get(key, u"(none)"); }
  static void store(std::u16string_view key, std::u16string_view value) { kExcelSettings.save(key, value); }
  FakePresenter person;
};

TEST_F(ExcelOptionsFormTest, EveryControlHasACaption) {
  const frmExcelOptions form;
  EXPECT_EQ(form.Caption(), u"Excel Options");
  for (const Control* control : form.controls())
    if (control->kind() != ControlKind::kTextBox) {
      EXPECT_NE(control->Caption(), u"");
    }
}

TEST_F(ExcelOptionsFormTest, WithoutStoredSettingsTheDefaultsAreShown) {
  const frmExcelOptions form;
  EXPECT_TRUE(form.optOrder[0].Value());
  EXPECT_FALSE(form.optOrder[1].Value());
  EXPECT_TRUE(form.chkExportHidden.Value());
  EXPECT_TRUE(form.chkExportFormulas.Value());
  EXPECT_FALSE(form.chkUngroupObjects.Value());
  EXPECT_EQ(form.txtBlankCellTolerance.Text(), u"255");
  EXPECT_TRUE(desktop.message_boxes.empty());
}

TEST_F(ExcelOptionsFormTest, TypingLettersIntoTheToleranceLeavesTheDigits) {
  frmExcelOptions form;
  form.txtBlankCellTolerance.Text(u"12a3");
  EXPECT_EQ(form.txtBlankCellTolerance.Text(), u"123");
}

TEST_F(ExcelOptionsFormTest, PastingSevenDigitsLeavesFive) {
  frmExcelOptions form;
  form.txtBlankCellTolerance.Text(u"1234567");
  EXPECT_EQ(form.txtBlankCellTolerance.Text(), u"12345");
  form.txtBlankCellTolerance.Text(u"-1.5 \uFF11");
  EXPECT_EQ(form.txtBlankCellTolerance.Text(), u"15") << "digits of other scripts are none";
}

TEST_F(ExcelOptionsFormTest, OkWithAnEmptyToleranceStoresTheDefault) {
  person.next<frmExcelOptions>([](frmExcelOptions& form) {
    form.txtBlankCellTolerance.Text(u"");
    form.cmdOK.Click();
  });
  clsXLSUtil().DisplayOptions();
  EXPECT_EQ(stored(u"Tolerance"), u"255");
}

TEST_F(ExcelOptionsFormTest, AStoredOrderOfOneSelectsTheSecondOptionAndIsStoredBack) {
  store(u"Order", u"1");
  person.next<frmExcelOptions>([](frmExcelOptions& form) {
    EXPECT_FALSE(form.optOrder[0].Value());
    EXPECT_TRUE(form.optOrder[1].Value());
    form.cmdOK.Click();
  });
  clsXLSUtil().DisplayOptions();
  EXPECT_EQ(stored(u"Order"), u"1");
}

TEST_F(ExcelOptionsFormTest, AStoredOrderOfTwoSelectsNothingAndOneIsStored) {
  store(u"Order", u"2");
  person.next<frmExcelOptions>([](frmExcelOptions& form) {
    EXPECT_FALSE(form.optOrder[0].Value());
    EXPECT_FALSE(form.optOrder[1].Value());
    form.cmdOK.Click();
  });
  clsXLSUtil().DisplayOptions();
  EXPECT_EQ(stored(u"Order"), u"1");
}

TEST_F(ExcelOptionsFormTest, OkStoresWhatIsShown) {
  person.next<frmExcelOptions>([](frmExcelOptions& form) {
    form.optOrder[1].Value(true);
    form.chkExportHidden.Value(false);
    form.chkExportFormulas.Value(false);
    form.chkUngroupObjects.Value(true);
    form.txtBlankCellTolerance.Text(u"7");
    form.cmdOK.Click();
  });
  clsXLSUtil().DisplayOptions();
  EXPECT_EQ(stored(u"Order"), u"1");
  EXPECT_EQ(stored(u"Hidden"), u"0");
  EXPECT_EQ(stored(u"Formulas"), u"0");
  EXPECT_EQ(stored(u"Ungroup"), u"1");
  EXPECT_EQ(stored(u"Tolerance"), u"7");
}

TEST_F(ExcelOptionsFormTest, CancelStoresNothing) {
  for (const bool by_title_bar : {false, true}) {
    person.next<frmExcelOptions>([&](frmExcelOptions& form) {
      form.chkExportHidden.Value(false);
      by_title_bar ? form.close_box() : form.cmdCancel.Click();
    });
    clsXLSUtil().DisplayOptions();
    EXPECT_EQ(stored(u"Hidden"), u"(none)");
    EXPECT_EQ(stored(u"Order"), u"(none)");
  }
}

TEST_F(ExcelOptionsFormTest, TickingUngroupWarnsButLoadingAndUntickingDoNot) {
  store(u"Ungroup", u"1");
  frmExcelOptions form;
  EXPECT_TRUE(form.chkUngroupObjects.Value());
  EXPECT_TRUE(desktop.message_boxes.empty());
  form.chkUngroupObjects.Value(false);
  EXPECT_TRUE(desktop.message_boxes.empty());
  form.chkUngroupObjects.Value(true);
  ASSERT_EQ(desktop.message_boxes.size(), 1u);
  EXPECT_EQ(desktop.message_boxes[0].icon, MessageIcon::kInformation);
  EXPECT_EQ(desktop.message_boxes[0].caption, u"");
}

TEST_F(ExcelOptionsFormTest, AStoredToleranceIsShownAsItIs) {
  store(u"Tolerance", u"lots");
  EXPECT_EQ(frmExcelOptions().txtBlankCellTolerance.Text(), u"lots");
}

}  // namespace
}  // namespace kavo::test
