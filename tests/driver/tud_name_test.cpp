#include "driver/tud_name.h"

#include <gtest/gtest.h>

#include "common/document_names.h"

namespace kavo::test {
namespace {

struct Split {
  const char16_t* path;
  const char16_t* folder;
  const char16_t* base;
  const char16_t* parts[4];
};

TEST(TudName, BaseIsSplitFromTheRightAtUnderscores) {
  const Split cases[] = {
      {u"C:\\w\\page_asp_HTM_ENU.tud", u"C:\\w\\", u"page_asp_HTM_ENU", {u"page", u"asp", u"HTM", u"ENU"}},
      {u"a_b_DOC_ENU.tud", u"", u"a_b_DOC_ENU", {u"a", u"b", u"DOC", u"ENU"}},
      {u"x_y_z_DOC_ENU.tud", u"", u"x_y_z_DOC_ENU", {u"x_y", u"z", u"DOC", u"ENU"}},
      {u"C:\\manual_mif_FR.tud", u"C:\\", u"manual_mif_FR", {u"", u"manual", u"mif", u"FR"}},
      {u"C:\\a_b\\deck_ppt.tud", u"C:\\a_b\\", u"deck_ppt", {u"", u"", u"deck", u"ppt"}},
      {u"x_", u"", u"x_", {u"", u"", u"x", u""}},
      {u"____", u"", u"____", {u"_", u"", u"", u""}},
      {u"__a.b_c_FR.tud", u"", u"__a.b_c_FR", {u"_", u"a.b", u"c", u"FR"}},
      {u"", u"", u"", {u"", u"", u"", u""}},
  };
  for (const Split& c : cases) {
    const TudName name(c.path);
    EXPECT_EQ(name.folder(), c.folder);
    EXPECT_EQ(name.base(), c.base);
    for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(name.part(i), c.parts[i]) << testing::PrintToString(c.base) << i;
  }
}

TEST(TudName, ATudNameWithoutUnderscoresIsItsLastPart) {
  const TudName name(u"C:\\work\\report.tud");
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(name.part(i), u"");
  EXPECT_EQ(name.language(), u"report");
  EXPECT_TRUE(name.has_part(3));
  EXPECT_FALSE(name.has_part(2));
  EXPECT_TRUE(TudName(u"_doc_rtf_FR.tud").has_part(0)) << "it is empty";
}

TEST(TudName, FileNamesAreBuiltFromTheParts) {
  const TudName page(u"C:\\w\\page_asp_HTM_ENU.tud");
  EXPECT_EQ(page.file_name(1, u"SCR", true), u"C:\\w\\page_asp_ENU.SCR");
  EXPECT_EQ(page.file_name(0, u"asp", true), u"C:\\w\\page_ENU.asp");
  EXPECT_EQ(page.file_name(1, u"obj", false), u"C:\\w\\page_asp.obj");
  EXPECT_EQ(page.script_tud(), u"C:\\w\\page_asp_SCR_ENU.tud");
  EXPECT_EQ(TudName(u"a_b_MIF_ENU.tud").file_name(1, u"obj", false), u"a_b.obj");
  const TudName manual(u"C:\\w\\manual_mif_FR.tud");
  EXPECT_EQ(manual.file_name(1, u"obj", false), u"C:\\w\\manual.obj") << "no \"_\" before the first text";
  EXPECT_EQ(manual.file_name(0, u"mif", true), u"C:\\w\\_FR.mif");
  EXPECT_EQ(mif_side_file(manual.folder(), kMifSides[0]), u"C:\\w\\KAVO_ix.mif");
  EXPECT_EQ(mif_side_tud(manual.folder(), kMifSides[1], manual.language()), u"C:\\w\\KAVO_xr_mif_FR.tud");
  EXPECT_EQ(open_tag_name_of(u"C:\\w\\manual_mif_FR.tud"), u"C:\\w\\manual_mif_FR.otf");
}

}  // namespace
}  // namespace kavo::test
