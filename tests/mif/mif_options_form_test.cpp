#include <gtest/gtest.h>

#include "common/program_settings.h"
#include "forms/fake_presenter.h"
#include "mif/frmMIFOptions.h"
#include "mif/mif_fixture.h"

namespace kavo::test {
namespace {

class MifOptionsFormTest : public PortsFixture {
 protected:
  static std::u16string stored(std::u16string_view key) { return kMifSettings.get(key, u"(none)"); }
  static void add(frmMIFOptions& form, std::u16string_view name) {
    form.txtMarker.Text(name);
    form.cmdAdd.Click();
  }
  FakePresenter person;
};

TEST_F(MifOptionsFormTest, ShowsItsCaptions) {
  const frmMIFOptions form;
  EXPECT_EQ(form.Caption(), u"MIF Options");
  EXPECT_EQ(form.fraSplit.Caption(), u"Index entry splitting");
  EXPECT_EQ(form.cmbSplit.items(),
            (std::vector<ListItem>{{u"Don't split"}, {u"Split at \";\" only"}, {u"Split at \";\" and \":\""}}));
  EXPECT_EQ(form.chkProcessObjects.Caption(), u"Remove embedded &objects from files");
  EXPECT_EQ(form.fraMarkers.Caption(), u"Marker types");
  EXPECT_EQ(form.cmdAdd.Caption(), u"&Add");
  EXPECT_EQ(form.cmdRemove.Caption(), u"&Remove");
  EXPECT_EQ(form.cmdClear.Caption(), u"&Clear");
  EXPECT_EQ(form.cmdDefault.Caption(), u"&Default");
  EXPECT_EQ(form.cmdOK.Caption(), u"OK");
  EXPECT_EQ(form.cmdCancel.Caption(), u"Cancel");
}

TEST_F(MifOptionsFormTest, OkTakesOverAndDestructionStores) {
  person.next<frmMIFOptions>([](frmMIFOptions& form) {
    EXPECT_EQ(form.SplitOptions(), 0);
    EXPECT_TRUE(form.ProcessObjects());
    EXPECT_EQ(form.Markers(), u"Index\t");
    form.cmbSplit.ListIndex(2);
    form.chkProcessObjects.Value(false);
    add(form, u"Heading");
    form.cmdOK.Click();
  });
  {
    clsMIFUtilities utilities;
    utilities.DisplayOptions();
    EXPECT_EQ(utilities.SplitOptions(), 2);
    EXPECT_FALSE(utilities.ProcessObjects());
    EXPECT_EQ(utilities.Markers(), u"Index\tHeading\t");
    EXPECT_EQ(stored(u"Split"), u"(none)") << "stored by the destruction only";
  }
  EXPECT_EQ(stored(u"Split"), u"2");
  EXPECT_EQ(stored(u"Objects"), u"0");
  EXPECT_EQ(stored(u"Markers"), u"Index\tHeading\t");
}

TEST_F(MifOptionsFormTest, CancelLeavesAllThreeValuesUnchanged) {
  for (const bool by_title_bar : {false, true}) {
    person.next<frmMIFOptions>([&](frmMIFOptions& form) {
      form.cmbSplit.ListIndex(1);
      form.chkProcessObjects.Value(false);
      form.cmdClear.Click();
      by_title_bar ? form.close_box() : form.cmdCancel.Click();
    });
    clsMIFUtilities utilities;
    utilities.DisplayOptions();
    EXPECT_EQ(utilities.SplitOptions(), 0);
    EXPECT_TRUE(utilities.ProcessObjects());
    EXPECT_EQ(utilities.Markers(), u"Index\t");
  }
}

TEST_F(MifOptionsFormTest, AnEmptyMarkerListIsAllowedAndSavedAsEmptyText) {
  person.next<frmMIFOptions>([](frmMIFOptions& form) {
    form.cmdClear.Click();
    form.cmdOK.Click();
  });
  { clsMIFUtilities().DisplayOptions(); }
  EXPECT_EQ(stored(u"Markers"), u"");
}

TEST_F(MifOptionsFormTest, AddingIndexWithBlanksWhenIndexIsListedAddsNothing) {
  frmMIFOptions form;
  form.Markers(u"Index\t");
  add(form, u" Index ");
  EXPECT_EQ(form.Markers(), u"Index\t");
  EXPECT_EQ(form.txtMarker.Text(), u" Index ") << "what was not added stays to be corrected";
}

TEST_F(MifOptionsFormTest, AddingIndexInSmallLettersAddsASecondItem) {
  frmMIFOptions form;
  form.Markers(u"Index\t");
  add(form, u"index");
  EXPECT_EQ(form.Markers(), u"Index\tindex\t");
  EXPECT_EQ(form.txtMarker.Text(), u"");
}

TEST_F(MifOptionsFormTest, ATabInATypedNameIsTakenOut) {
  frmMIFOptions form;
  add(form, u"\tSub\tject ");
  add(form, u" \t ");
  EXPECT_EQ(form.Markers(), u"Subject\t");
}

TEST_F(MifOptionsFormTest, ATypedNameIsTrimmedBeforeItsTabsGo) {
  struct Case {
    std::u16string_view typed, added;
  };
  for (const Case& test : {Case{u"  Subject  ", u"Subject\t"}, Case{u"\t Subject", u" Subject\t"},
                           Case{u"Subject \t", u"Subject \t"}, Case{u" \t \t ", u" \t"}, Case{u" \t ", u""}}) {
    frmMIFOptions form;
    form.Markers(u"");
    add(form, test.typed);
    EXPECT_EQ(form.Markers(), test.added);
  }
}

TEST_F(MifOptionsFormTest, RemoveSelectsTheNeighbour) {
  frmMIFOptions form;
  form.Markers(u"a\tb\tc\t");
  form.cmdRemove.Click();
  EXPECT_EQ(form.Markers(), u"a\tb\tc\t") << "nothing was selected";
  form.lstMarkers.ListIndex(1);
  form.cmdRemove.Click();
  EXPECT_EQ(form.lstMarkers.Text(), u"c");
  form.cmdRemove.Click();
  EXPECT_EQ(form.lstMarkers.Text(), u"a");
}

TEST_F(MifOptionsFormTest, DefaultListsExactlyIndex) {
  frmMIFOptions form;
  form.Markers(u"a\tb\t");
  form.cmdDefault.Click();
  EXPECT_EQ(form.Markers(), u"Index\t");
}

TEST_F(MifOptionsFormTest, TheTextAfterTheLastTabIsNotAMarker) {
  frmMIFOptions form;
  form.Markers(u"a\t\tb");
  EXPECT_EQ(form.Markers(), u"a\t\t");
}

}  // namespace
}  // namespace kavo::test
