// Pages with extensions that the table of types does not have, and parts of pages.
#include <gtest/gtest.h>

#include <string>

#include "cli/run_kavo.h"
#include "common/document_kind.h"
#include "platform/files.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

class PageNamesCommand : public testing::Test {
 protected:
  std::string put(std::u16string_view name, std::string_view bytes) { return path_to_host(folder.write(name, bytes)); }
  Ran prepare(const std::string& file, const std::string& option = "--overwrite") {
    return run_kavo({"prepare", file, "--source", "EN-US", "--target", "FR", "--overwrite", option});
  }
  TempFolder folder;
};

// An end tag is missing, which a repair would add.
constexpr std::string_view kOpen = "<p><b>Hello there</p><?php echo 'Hello <i>you</i>'; ?>\n";

TEST_F(PageNamesCommand, PagesKeepTheirNames) {
  for (const std::u16string name : {u"x.php", u"x.phtml", u"x.PHP3"}) {
    const std::string page = put(name, "<p>Hello there</p><?php echo 'Hello <i>you</i>'; ?>\n");
    const Ran prepared = prepare(page);
    ASSERT_EQ(prepared.code, 0) << prepared.errors;
    const std::u16string extension = name.substr(2);
    const std::string tud = path_to_host(folder.path(u"x_" + extension + u"_htm_FR.tud"));
    EXPECT_NE(prepared.output.find(tud), std::string::npos) << prepared.output;
    for (const std::u16string_view kind : {u"_htm_FR.tud", u"_scr_FR.tud"})
      ASSERT_EQ(run_kavo({"pseudo", path_to_host(folder.path(u"x_" + extension + std::u16string(kind)))}).code, 0);
    const Ran rebuilt = run_kavo({"rebuild", tud, "--overwrite"});
    ASSERT_EQ(rebuilt.code, 0) << rebuilt.errors;
    EXPECT_EQ(rebuilt.output, path_to_host(folder.path(u"x_FR." + extension)) + "\t4\tserver page\n");
    const std::string page_text = folder.read(u"x_FR." + extension);
    EXPECT_TRUE(page_text.starts_with("<p>[") && page_text.find("<?php echo '[") != std::string::npos) << page_text;
    EXPECT_EQ(run_kavo({"verify", page}).code, 0);
  }
}

TEST_F(PageNamesCommand, FragmentsAreNeverRepaired) {
  for (const std::u16string name : {u"x.inc", u"x.asa", u"x.jspf"}) {
    const std::string page = put(name, "</td><b>Hello there</tr>");
    const Ran prepared = prepare(page);
    ASSERT_EQ(prepared.code, 0) << prepared.errors;
    EXPECT_EQ(prepared.errors, "");
    const std::u16string stem = u"x_" + name.substr(2);
    EXPECT_EQ(folder.read(stem + u".htm"), "</td><b>Hello there</tr>");
    EXPECT_EQ(run_kavo({"verify", page}).code, 0);
  }
}

TEST_F(PageNamesCommand, PagesAreLeftAsTheyAreWhenTheUserWantsIt) {
  const std::string page = put(u"x.php", kOpen);
  ASSERT_EQ(prepare(page).code, 0);
  EXPECT_NE(folder.read(u"x_php.htm").find("</B>"), std::string::npos);
  const Ran left = prepare(page, "--no-repair");
  ASSERT_EQ(left.code, 0) << left.errors;
  EXPECT_EQ(folder.read(u"x_php.htm").find("</B>"), std::string::npos);
}

TEST_F(PageNamesCommand, OtherNamesAreUnknown) {
  EXPECT_EQ(kind_of_document(u"a.php").type, kServerPage);
  EXPECT_FALSE(kind_of_document(u"a.php").is_fragment);
  EXPECT_TRUE(kind_of_document(u"a.Inc").is_fragment);
  EXPECT_EQ(kind_of_document(u"a.htm").type, kHtmlPage);
  EXPECT_EQ(kind_of_document(u"a.php5").type, kUnknownFile);
  EXPECT_EQ(kind_of_document(u"php").type, kUnknownFile);
  EXPECT_EQ(kind_of_document(u"a.").type, kUnknownFile);
  // The table for hosts does not change.
  EXPECT_EQ(FileTypeOf(u"a.php"), kUnknownFile);
}

}  // namespace
}  // namespace kavo::test
