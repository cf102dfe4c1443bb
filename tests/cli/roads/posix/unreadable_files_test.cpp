// A file that the system refuses to look at may exist, so no verb continues as if it were missing.
#include <gtest/gtest.h>

#include <filesystem>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "platform/unicode.h"
#include "support/holds.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

std::string in_small_letters(std::string_view text) { return to_utf8(ascii_lower(to_utf16(text))); }

// A link that leads to itself stands for every such file.
TEST(UnreadableFiles, AreNotTakenForMissing) {
  const struct {
    const char* name;
    std::vector<std::string> command;
  } cases[] = {
      {"page_asp_scr_FR.tud", {"rebuild", "page_asp_htm_FR.tud"}},
      {"page_asp_htm_FR.tud.skl", {"rebuild", "page_asp_htm_FR.tud"}},
      {"page_asp.scr", {"prepare", "page.asp", "--source", "EN-US", "--target", "DE"}},
      {"page_asp.scr", {"preprocess", "page.asp"}},
      {"page_asp_scr_FR.tud", {"prepare", "page.asp", "--source", "EN-US", "--target", "FR"}},
      {"page_asp_scr_FR.tud", {"export", "--with-skeleton", "page_asp_htm_FR.tud"}},
      {"letter.obj", {"rtf", "insert", "letter.rtf"}},
      {"letter.obj", {"rebuild", "letter_rtf_FR.tud"}},
      {"KAVO_va_mif_FR.tud", {"rebuild", "book_mif_FR.tud"}},
      {"book.obj", {"rebuild", "book_mif_FR.tud"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.command) + c.name);
    const TempFolder folder;
    folder.write(u"page.asp", "<html><body><p>One</p><% x %></body></html>\r\n");
    folder.write(u"letter.rtf", "{\\rtf1 Dear {\\pict 0102}\\par}");
    folder.write(u"book.mif", "<MIFFile 7.00>\n=GIF\n&x\n=EndInset\n<Para <ParaLine <String `y'>>>\n");
    ASSERT_EQ(run_kavo({"rtf", "extract", "letter.rtf"}, &folder).code, 0);
    ASSERT_EQ(run_kavo({"mif", "remove-objects", "book.mif"}, &folder).code, 0);
    for (const char* document : {"page.asp", "letter.rtf", "book.mif"}) {
      const Ran ran = run_kavo({"prepare", document, "--source", "EN-US", "--target", "FR"}, &folder);
      ASSERT_EQ(ran.code, 0) << ran.errors;
    }
    const std::filesystem::path link = to_filesystem_path(folder.path()) / c.name;
    ASSERT_TRUE(std::filesystem::remove(link));
    std::filesystem::create_symlink(c.name, link);
    const std::size_t entries = folder.entry_count();
    const Ran ran = run_kavo(c.command, &folder);
    EXPECT_EQ(ran.code, 1);
    EXPECT_EQ(ran.output, "");
    EXPECT_TRUE(holds(in_small_letters(ran.errors), in_small_letters(c.name))) << ran.errors;
    EXPECT_TRUE(holds(ran.errors, "symbolic links")) << ran.errors;
    EXPECT_EQ(folder.entry_count(), entries);
  }
}

}  // namespace
}  // namespace kavo::test
