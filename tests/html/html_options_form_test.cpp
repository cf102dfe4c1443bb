#include <gtest/gtest.h>

#include "forms/fake_presenter.h"
#include "html/frmHTMLOptions.h"
#include "html/repair/clsHTMLValidate.h"
#include "html/repair/tag_table.h"
#include "platform/unicode.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

class HtmlOptionsFormTest : public PortsFixture {
 protected:
  static void add(frmHTMLOptions& form, std::u16string_view name) {
    form.txtTag.Text(name);
    form.cmdAdd.Click();
  }
  FakePresenter person;
};

TEST_F(HtmlOptionsFormTest, ShowsItsCaptions) {
  const frmHTMLOptions form;
  EXPECT_EQ(form.Caption(), u"HTML Options");
  EXPECT_EQ(form.fraTags.Caption(), u"Recognized tags");
  EXPECT_EQ(form.cmdAdd.Caption(), u"&Add");
  EXPECT_EQ(form.cmdRemove.Caption(), u"&Remove");
  EXPECT_EQ(form.cmdClear.Caption(), u"&Clear");
  EXPECT_EQ(form.chkOverlap.Caption(), u"&Overlap allowed");
  EXPECT_EQ(form.cmdOK.Caption(), u"OK");
  EXPECT_EQ(form.cmdCancel.Caption(), u"Cancel");
}

TEST_F(HtmlOptionsFormTest, ConfirmingWithoutChangesGivesBackTheSameTags) {
  for (const std::u16string_view tags : {std::u16string_view(u"B|0,FONT|1,"), std::u16string_view(u"FONT|1,B|0,"),
                                         std::u16string_view(u""), std::u16string_view(u"B|0,B|1,,A|0,")}) {
    frmHTMLOptions form;
    form.Tags(tags);
    EXPECT_EQ(form.Tags(), tags == u"B|0,B|1,,A|0," ? u"B|0,B|1,|0,A|0," : tags);
  }
  person.next<frmHTMLOptions>([](frmHTMLOptions& form) { form.cmdOK.Click(); });
  clsHTMLValidate validate;
  const std::u16string before = validate.Tags();
  validate.DisplayOptions();
  EXPECT_EQ(validate.Tags(), before);
  EXPECT_EQ(person.shown, std::vector<std::u16string>{u"frmHTMLOptions"});
}

TEST_F(HtmlOptionsFormTest, TheFirstItemIsSelectedAndShowsItsFlag) {
  frmHTMLOptions form;
  form.Tags(u"FONT|1,B|0,");
  EXPECT_EQ(form.lstTags.ListIndex(), 0);
  EXPECT_TRUE(form.chkOverlap.Value());
  form.lstTags.ListIndex(1);
  EXPECT_FALSE(form.chkOverlap.Value());
}

TEST_F(HtmlOptionsFormTest, TickingChangesTheSelectedItem) {
  frmHTMLOptions form;
  form.Tags(u"FONT|1,B|0,");
  form.lstTags.ListIndex(1);
  form.chkOverlap.Value(true);
  EXPECT_EQ(form.Tags(), u"FONT|1,B|1,");
  form.lstTags.ListIndex(0);
  form.chkOverlap.Value(false);
  EXPECT_EQ(form.Tags(), u"FONT|0,B|1,");
}

TEST_F(HtmlOptionsFormTest, AddingFontWithBlanksWhenFontIsListedAddsNothing) {
  frmHTMLOptions form;
  form.Tags(u"FONT|1,B|0,");
  add(form, u"  font ");
  EXPECT_EQ(form.Tags(), u"FONT|1,B|0,");
}

TEST_F(HtmlOptionsFormTest, ANewTagIsSelectedAndUnticked) {
  frmHTMLOptions form;
  form.Tags(u"FONT|1,");
  add(form, u"nobr");
  EXPECT_EQ(form.Tags(), u"FONT|1,NOBR|0,");
  EXPECT_EQ(form.lstTags.Text(), u"NOBR");
  EXPECT_FALSE(form.chkOverlap.Value());
  EXPECT_EQ(form.txtTag.Text(), u"");
  add(form, u"   ");
  add(form, u"a,b|1");
  EXPECT_EQ(form.Tags(), u"FONT|1,NOBR|0,AB1|0,") << "what parts entries cannot stand in a name";
}

TEST_F(HtmlOptionsFormTest, CancelLeavesTheTableUnchangedAfterEdits) {
  for (const bool by_title_bar : {false, true}) {
    person.next<frmHTMLOptions>([&](frmHTMLOptions& form) {
      form.cmdClear.Click();
      add(form, u"x");
      by_title_bar ? form.close_box() : form.cmdCancel.Click();
    });
    clsHTMLValidate validate;
    const std::u16string before = validate.Tags();
    validate.DisplayOptions();
    EXPECT_EQ(validate.Tags(), before);
  }
}

TEST_F(HtmlOptionsFormTest, ClearingAndConfirmingGivesAnEmptyTableAndNothingIsChecked) {
  person.next<frmHTMLOptions>([](frmHTMLOptions& form) {
    form.cmdClear.Click();
    EXPECT_FALSE(form.chkOverlap.Enabled());
    form.cmdOK.Click();
  });
  files.put(u"C:\\page.htm", "<p><b><i>x < y</b></i><p>z");
  clsHTMLValidate validate;
  validate.DisplayOptions();
  EXPECT_EQ(validate.Tags(), u"");
  validate.Filename(u"C:\\page.htm");
  EXPECT_EQ(validate.HTMLValidate(), 0);
  EXPECT_EQ(validate.ErrorList().size(), 1u);
  EXPECT_EQ(validate.repairs(), 0u);
}

TEST_F(HtmlOptionsFormTest, RemoveSelectsANeighbourAndShowsItsFlag) {
  frmHTMLOptions form;
  form.Tags(u"A|0,B|0,C|1,");
  form.lstTags.ListIndex(1);
  form.cmdRemove.Click();
  EXPECT_EQ(form.lstTags.Text(), u"C");
  EXPECT_TRUE(form.chkOverlap.Value());
  form.cmdRemove.Click();
  EXPECT_EQ(form.lstTags.Text(), u"A");
  EXPECT_FALSE(form.chkOverlap.Value());
  form.cmdRemove.Click();
  form.cmdRemove.Click();
  EXPECT_EQ(form.Tags(), u"");
  EXPECT_FALSE(form.chkOverlap.Enabled());
}

TEST_F(HtmlOptionsFormTest, AFullTableTakesNoMore) {
  frmHTMLOptions form;
  for (std::size_t i = 0; i < TagTable::kCapacity; ++i) add(form, u"T" + to_utf16(std::to_string(i)));
  EXPECT_TRUE(desktop.message_boxes.empty());
  add(form, u"onemore");
  EXPECT_EQ(form.lstTags.ListCount(), 128);
  EXPECT_EQ(desktop.message_boxes.size(), 1u);
  clsHTMLValidate().Tags(form.Tags());
}

}  // namespace
}  // namespace kavo::test
