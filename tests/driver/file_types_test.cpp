#include "driver/file_types.h"

#include <gtest/gtest.h>

#include "driver/fake_catalogue.h"
#include "platform/failure.h"
#include "resources/string_table.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

struct TypeCase {
  const char* name;
  std::u16string file;
  std::int32_t type;
};
class FileTypeOfName : public testing::TestWithParam<TypeCase> {};

TEST_P(FileTypeOfName, ComesFromTheLastExtension) { EXPECT_EQ(FileTypeOf(GetParam().file), GetParam().type); }

INSTANTIATE_TEST_SUITE_P(
    Names, FileTypeOfName,
    testing::Values(TypeCase{"Word", u"C:\\a\\letter.doc", 1}, TypeCase{"Rtf", u"x.RTF", 2},
                    TypeCase{"MixedCaseHtm", u"x.Htm", 3}, TypeCase{"ReportHtml", u"report.HTML", 3},
                    TypeCase{"PageAsp", u"page.asp", 4}, TypeCase{"PageJsp", u"page.JSP", 4},
                    TypeCase{"Mif", u"manual.mif", 5}, TypeCase{"ResourceScript", u"app.rc", 6},
                    TypeCase{"Text", u"read.me.txt", 7}, TypeCase{"Presentation", u"p.ppt", 8},
                    TypeCase{"Workbook", u"w.Xls", 9}, TypeCase{"NoExtension", u"readme", 0},
                    TypeCase{"LastExtensionCounts", u"page.txt.bak", 0}, TypeCase{"AspInFrontOfTxt", u"x.asp.txt", 7},
                    TypeCase{"LongerExtension", u"x.docx", 0},
                    TypeCase{"FolderWithExtension", u"C:\\site.asp\\page", 0}, TypeCase{"EndsInDot", u"page.htm.", 0},
                    TypeCase{"ExtensionAlone", u".asp", 4}, TypeCase{"Empty", u"", 0}, TypeCase{"Php", u"shop.php", 0},
                    TypeCase{"WideLetters", u"x.\uFF28\uFF34\uFF2D", 0},
                    TypeCase{"LongerThanAnyPath", std::u16string(40000, u'a') + u".asp", 0}),
    [](const auto& row) { return row.param.name; });

TEST(FileTypeOfName, EveryExtensionOfTheFileDialogHasAType) {
  const std::u16string_view filter = string_resource(111);
  std::size_t count = 0;
  for (std::size_t at = filter.find(u"*."); at != std::u16string_view::npos; at = filter.find(u"*.", at + 1), ++count) {
    const std::u16string pattern(filter.substr(at, filter.find_first_of(u";|", at) - at));
    EXPECT_NE(FileTypeOf(pattern), 0);
  }
  EXPECT_EQ(count, 11u);
}

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

TEST_F(FilterTableTest, OfTwoFiltersWithOneTagTheLaterOneIsKept) {
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
