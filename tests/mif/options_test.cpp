#include <gtest/gtest.h>

#include "common/program_settings.h"
#include "mif/mif_fixture.h"

namespace kavo::test {
namespace {

class MifOptionsTest : public PortsFixture {
 protected:
  static std::u16string stored(std::u16string_view key) { return kMifSettings.get(key, u"(none)"); }
  static void store(std::u16string_view key, std::u16string_view value) { kMifSettings.save(key, value); }
};

TEST_F(MifOptionsTest, WithoutStoredValuesTheDefaultsHold) {
  const clsMIFUtilities utilities;
  EXPECT_EQ(utilities.SplitOptions(), 0);
  EXPECT_TRUE(utilities.ProcessObjects());
  EXPECT_EQ(utilities.Markers(), u"Index\t");
  EXPECT_TRUE(utilities.MIFFile().empty());
}

TEST_F(MifOptionsTest, DestructionSavesAndCreationLoads) {
  {
    clsMIFUtilities utilities;
    utilities.SplitOptions(2);
    utilities.ProcessObjects(false);
    utilities.Markers(u"Index\tHeading\t");
  }
  EXPECT_EQ(stored(u"Split"), u"2");
  EXPECT_EQ(stored(u"Objects"), u"0");
  EXPECT_EQ(stored(u"Markers"), u"Index\tHeading\t");
  const clsMIFUtilities utilities;
  EXPECT_EQ(utilities.SplitOptions(), 2);
  EXPECT_FALSE(utilities.ProcessObjects());
  EXPECT_EQ(utilities.Markers(), u"Index\tHeading\t");
}

TEST_F(MifOptionsTest, UnchangedValuesAreSavedToo) {
  { const clsMIFUtilities utilities; }
  EXPECT_EQ(stored(u"Split"), u"0");
  EXPECT_EQ(stored(u"Objects"), u"1");
  EXPECT_EQ(stored(u"Markers"), u"Index\t");
}

TEST_F(MifOptionsTest, WhatAnotherProgramStoredMeanwhileStays) {
  { const clsMIFUtilities stores_the_defaults; }
  {
    clsMIFUtilities utilities;
    utilities.ProcessObjects(false);
    store(u"Split", u"2");
    store(u"Objects", u"1");
    store(u"Markers", u"Heading\t");
  }
  EXPECT_EQ(stored(u"Split"), u"2");
  EXPECT_EQ(stored(u"Objects"), u"0") << "this one was changed here";
  EXPECT_EQ(stored(u"Markers"), u"Heading\t");
}

TEST_F(MifOptionsTest, AnEmptyMarkerListIsAValue) {
  {
    clsMIFUtilities utilities;
    utilities.Markers(u"");
  }
  EXPECT_EQ(stored(u"Markers"), u"");
  EXPECT_EQ(clsMIFUtilities().Markers(), u"");
}

TEST_F(MifOptionsTest, OddStoredValues) {
  struct Case {
    std::u16string_view split;
    std::int16_t expected;
  };
  for (const Case& test : {Case{u"1", 1}, Case{u"-1", -1}, Case{u"", 0}, Case{u"two", 0}, Case{u"2nd", 2},
                           Case{u"99999999999", 0}, Case{u"32767", 32767}}) {
    store(u"Split", test.split);
    EXPECT_EQ(clsMIFUtilities().SplitOptions(), test.expected);
  }
  for (const std::u16string_view objects : {u"0", u"", u"true", u"11"}) {
    store(u"Objects", objects);
    EXPECT_FALSE(clsMIFUtilities().ProcessObjects());
  }
}

TEST_F(MifOptionsTest, TemporaryOptionsAreNotSaved) {
  store(u"Split", u"1");
  {
    clsMIFUtilities utilities;
    utilities.options_are_temporary();
    utilities.SplitOptions(2);
  }
  EXPECT_EQ(stored(u"Split"), u"1");
  EXPECT_EQ(stored(u"Markers"), u"(none)");
}

}  // namespace
}  // namespace kavo::test
