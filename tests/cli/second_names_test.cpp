// A document that is reached under its second name is still the document. Links to folders: linked_folder_test.cpp
#include <gtest/gtest.h>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

TEST(SecondNames, NoVerbWritesOverItsOwnInputs) {
  const TempFolder folder;
  const std::string letter = "{\\rtf1\\ansi Dear {\\pict\\wmetafile8 0102}\\par}\r\n";
  const std::string book = "<MIFFile 7.00>\r\n=FrameVector\r\n&%v\r\n=EndInset\r\n";
  folder.write(u"letter.rtf", letter);
  folder.write(u"book.mif", book);
  folder.write(u"a.txt", "One\n");
  ASSERT_EQ(run_kavo({"prepare", "a.txt", "--source", "EN-US", "--target", "FR"}, &folder).code, 0);
  const std::string tud = folder.read(u"a_txt_FR.tud");
  const struct {
    const char16_t* name;
    const char16_t* second;
    std::vector<std::string> command;
  } cases[] = {
      {u"letter.rtf", u"other.rtf", {"rtf", "extract", "--overwrite", "--objects", "other.rtf", "letter.rtf"}},
      {u"book.mif", u"other.mif", {"mif", "remove-objects", "--overwrite", "--objects", "other.mif", "book.mif"}},
      {u"a_txt_FR.tud", u"x.tud", {"rebuild", "--overwrite", "--output", "x.tud", "a_txt_FR.tud"}},
      {u"a_txt_FR.tud.skl", u"x.skl", {"rebuild", "--overwrite", "--output", "x.skl", "a_txt_FR.tud"}},
      {u"a_txt_FR.tud", u"y.tud", {"export", "--overwrite", "--to", "y.tud", "a_txt_FR.tud"}},
      {u"a_txt_FR.tud.skl", u"y.skl", {"export", "--overwrite", "--to", "y.skl", "a_txt_FR.tud"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.command));
    ports().files->link_file(folder.path(c.name), folder.path(c.second));
    const std::size_t entries = folder.entry_count();
    const Ran ran = run_kavo(c.command, &folder);
    EXPECT_EQ(ran.code, 1) << ran.output;
    EXPECT_FALSE(ran.errors.empty());
    EXPECT_EQ(folder.read(c.second), folder.read(c.name));
    EXPECT_EQ(folder.entry_count(), entries);
  }
  EXPECT_EQ(folder.read(u"letter.rtf"), letter);
  EXPECT_EQ(folder.read(u"book.mif"), book);
  EXPECT_EQ(folder.read(u"a_txt_FR.tud"), tud);
}

}  // namespace
}  // namespace kavo::test
