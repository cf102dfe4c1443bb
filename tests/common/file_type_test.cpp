#include "common/file_type.h"

#include <gtest/gtest.h>

#include <set>

#include "resources/string_table.h"

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
  const std::u16string_view filter = text::kFileFilter.text;
  std::size_t count = 0;
  for (std::size_t at = filter.find(u"*."); at != std::u16string_view::npos; at = filter.find(u"*.", at + 1), ++count) {
    const std::u16string pattern(filter.substr(at, filter.find_first_of(u";|", at) - at));
    EXPECT_NE(FileTypeOf(pattern), 0);
  }
  EXPECT_EQ(count, 11u);
}

TEST(FileTypes, EachRowHasItsOwnCodeAndExtensions) {
  std::int32_t code = 0;
  std::set<std::u16string_view> extensions;
  std::size_t count = 0;
  for (const FileTypeRow& row : file_types()) {
    EXPECT_EQ(row.code, code++) << row.label;
    EXPECT_EQ(&file_type_row(row.code), &row);
    extensions.insert(row.extensions.begin(), row.extensions.end());
    count += row.extensions.size();
  }
  EXPECT_EQ(extensions.size(), count) << "two types share an extension";
  EXPECT_EQ(file_type_row(99).code, kUnknownFile);
}

}  // namespace
}  // namespace kavo::test
