#include "common/path_parts.h"

#include <gtest/gtest.h>

#include "common/document_names.h"

namespace kavo::test {
namespace {

struct PathCase {
  const char* name;
  const char16_t* path;
  const char16_t* folder;
  const char16_t* stem;
  const char16_t* extension;
};
class PathParts : public testing::TestWithParam<PathCase> {};

TEST_P(PathParts, AreThoseOfTheLastName) {
  const auto& [name, path, folder, stem, extension] = GetParam();
  EXPECT_EQ(folder_of(path), folder);
  EXPECT_EQ(stem_of(path), stem);
  EXPECT_EQ(extension_of(path), extension);
  EXPECT_EQ(folder_of(path) + file_name_of(path), path);
  EXPECT_EQ(without_extension(path), std::u16string(folder) + stem);
}

INSTANTIATE_TEST_SUITE_P(Paths, PathParts,
                         testing::Values(PathCase{"FullName", u"C:\\web\\index.asp", u"C:\\web\\", u"index", u"asp"},
                                         PathCase{"PlainName", u"index.asp", u"", u"index", u"asp"},
                                         PathCase{"TwoDots", u"a.b.txt", u"", u"a.b", u"txt"},
                                         PathCase{"DotOfTheFolder", u"C:\\site.asp\\page", u"C:\\site.asp\\", u"page",
                                                  u""},
                                         PathCase{"NoExtension", u"C:\\readme", u"C:\\", u"readme", u""},
                                         PathCase{"ExtensionAlone", u"C:\\.asp", u"C:\\", u"", u"asp"},
                                         PathCase{"FolderAlone", u"C:\\web\\", u"C:\\web\\", u"", u""},
                                         PathCase{"Empty", u"", u"", u"", u""}),
                         [](const auto& row) { return row.param.name; });

TEST(DocumentNames, StandBesideTheirDocument) {
  EXPECT_EQ(tud_name_of(u"C:\\w\\page_asp.htm", u"FR"), u"C:\\w\\page_asp_htm_FR.tud");
  EXPECT_EQ(skeleton_name_of(u"C:\\w\\a_txt_FR.tud"), u"C:\\w\\a_txt_FR.tud.skl");
  EXPECT_EQ(open_tag_name_of(u"C:\\w\\a_txt_FR.tud"), u"C:\\w\\a_txt_FR.otf");
  EXPECT_EQ(target_name_of(u"C:\\w\\", u"page.asp", u"FR"), u"C:\\w\\page_FR.asp");
  EXPECT_EQ(target_name_of(u"", u"README", u"FR"), u"README_FR");
  EXPECT_EQ(object_file_of(u"C:\\w\\my.manual.mif"), u"C:\\w\\my.manual.obj");
  EXPECT_EQ(backup_name_of(u"manual.mif"), u"manual.mif.kavo.bak");
  EXPECT_EQ(aside_name_of(u"a.txt", 1), u"a.txt.kavo-old");
  EXPECT_EQ(aside_name_of(u"a.txt", 2), u"a.txt.kavo-old2");
}

TEST(DocumentNames, SideFilesAreKnownInAnyCase) {
  EXPECT_EQ(mif_side_tud(u"C:\\w\\", kMifSides[0], u"FR"), u"C:\\w\\KAVO_ix_mif_FR.tud");
  EXPECT_TRUE(is_mif_side_file(u"C:\\w\\kavo_IX.MIF"));
  EXPECT_FALSE(is_mif_side_file(u"C:\\w\\my_KAVO_ix.mif"));
}

}  // namespace
}  // namespace kavo::test
