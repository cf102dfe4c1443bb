#include <gtest/gtest.h>

#include "common/file_type.h"
#include "driver/fake_catalogue.h"
#include "driver/filter_table.h"
#include "platform/failure.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

class FilterTableTest : public PortsFixture {
 protected:
  ~FilterTableTest() override { release_filter_catalogue(); }
  void build(std::vector<ListedFilter> filters, std::int32_t past_the_end = 0) {
    automation.factories[u"K19Suite.FilterCatalogue"] = [=] { return make_catalogue(filters, past_the_end); };
    create_filter_catalogue();
    BuildFilterTable();
  }
  std::u16string name_at(std::int32_t index) { return filter_table(index).filter_name; }
};

TEST_F(FilterTableTest, EachTagFillsTheEntryOfItsType) {
  build({{u"a", u"b", u"my k19docw filter", 11},
         {u"", u"", u"K19RTF"},
         {u"", u"", u"K19HTM"},
         {u"", u"", u"K19MIF"},
         {u"", u"", u"K19GCP"},
         {u"", u"", u"K19TXT"},
         {u"", u"", u"K19PPTW"},
         {u"", u"", u"K19XLSW"}});
  EXPECT_EQ(name_at(1), u"my k19docw filter") << "the name keeps its case";
  EXPECT_EQ(filter_table(1).first_text, u"a");
  EXPECT_EQ(filter_table(1).second_text, u"b");
  EXPECT_EQ(filter_table(1).catalogue_value, 11);
  EXPECT_EQ(name_at(2), u"K19RTF");
  EXPECT_EQ(name_at(3), u"K19HTM");
  EXPECT_EQ(name_at(5), u"K19MIF");
  EXPECT_EQ(name_at(6), u"K19GCP");
  EXPECT_EQ(name_at(7), u"K19TXT");
  EXPECT_EQ(name_at(8), u"K19PPTW");
  EXPECT_EQ(name_at(9), u"K19XLSW");
  for (const std::int32_t unfilled : {0, 4, 10, 31}) EXPECT_EQ(name_at(unfilled), u"");
}

TEST_F(FilterTableTest, TheLaterOfTwoFiltersWithOneTagIsKept) {
  build({{u"", u"", u"first K19HTM", 1}, {u"", u"", u"second K19HTM", 2}});
  EXPECT_EQ(name_at(3), u"second K19HTM");
  EXPECT_EQ(filter_table(3).catalogue_value, 2);
}

TEST_F(FilterTableTest, FilterWithTwoTagsFillsBothEntries) {
  build({{u"", u"", u"K19HTM+K19TXT"}});
  EXPECT_EQ(name_at(3), u"K19HTM+K19TXT");
  EXPECT_EQ(name_at(7), u"K19HTM+K19TXT");
}

TEST_F(FilterTableTest, FirstStatusOtherThan1LeavesTheWholeTableEmpty) {
  build({{u"", u"", u"K19HTM"}});
  EXPECT_EQ(name_at(3), u"K19HTM");
  for (const std::int32_t status : {0, 2, -1}) {
    build({}, status);
    for (std::int32_t index = 0; index < 32; ++index) EXPECT_EQ(name_at(index), u"");
  }
}

TEST_F(FilterTableTest, IndexOutsideTheTableIsOutOfRange) {
  for (const std::int32_t index : {32, -1, 2147483647}) {
    try {
      filter_table(index);
      FAIL() << index;
    } catch (const failure& reason) {
      EXPECT_TRUE(reason.is(FailureNumber::kSubscriptOutOfRange));
    }
  }
}

}  // namespace
}  // namespace kavo::test
