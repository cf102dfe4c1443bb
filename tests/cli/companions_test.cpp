// kavo rebuild of a document whose companions are missing.
#include <gtest/gtest.h>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

class Companions : public testing::Test {
 protected:
  std::string path(std::u16string_view name) { return path_to_host(folder.path(name)); }
  void prepare(std::u16string_view name, std::string_view bytes) {
    const std::string file = path_to_host(folder.write(name, bytes));
    ASSERT_EQ(run_kavo({"prepare", file, "--source", "EN-US", "--target", "FR", "--code-page", "utf-8"}).code, 0);
  }
  TempFolder folder;
};

TEST_F(Companions, NothingIsWrittenWhileOneIsMissing) {
  const struct {
    const char* name;
    const char16_t* document;
    const char* bytes;
    const char16_t* tud;
    const char16_t* companion;
    const char16_t* rebuilt;
  } cases[] = {
      {"scripts of a server page", u"reg.jsp", "<html><body><p>Hello <%= name %></p></body></html>\n",
       u"reg_jsp_htm_FR.tud", u"reg_jsp_SCR_FR.tud", u"reg_FR.jsp"},
      {"scripts of a page", u"shop.htm", "<html><body><p>Hello</p><script>var a = 'One';</script></body></html>\n",
       u"shop_htm_htm_FR.tud", u"shop_htm_SCR_FR.tud", u"shop_FR.htm"},
      {"a side file of a manual", u"manual.mif",
       "<MIFFile 7.00>\r\n<TextFlow \r\n <Para \r\n  <ParaLine \r\n   <String `Text'>\r\n  >\r\n >\r\n>\r\n",
       u"manual_mif_FR.tud", u"KAVO_xr_mif_FR.tud", u"manual_FR.mif"},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    prepare(test.document, test.bytes);
    const std::string bytes = folder.read(test.companion);
    ports().files->remove_file(folder.path(test.companion));
    const std::size_t entries = folder.entry_count();
    for (const bool overwrite : {false, true}) {
      std::vector<std::string> arguments{"rebuild", path(test.tud)};
      if (overwrite) arguments.push_back("--overwrite");
      const Ran ran = run_kavo(arguments);
      EXPECT_EQ(ran.code, 1);
      EXPECT_EQ(ran.output, "");
      EXPECT_NE(ran.errors.find(path(test.companion)), std::string::npos) << ran.errors;
      EXPECT_EQ(folder.entry_count(), entries);
    }
    folder.write(test.companion, bytes);
    const Ran ran = run_kavo({"rebuild", path(test.tud)});
    EXPECT_EQ(ran.code, 0) << ran.errors;
    EXPECT_TRUE(folder.exists(test.rebuilt));
  }
}

TEST_F(Companions, AllThatAreMissingAreNamed) {
  prepare(u"manual.mif", "<MIFFile 7.00>\r\n");
  for (const char16_t* name : {u"KAVO_ix_mif_FR.tud", u"KAVO_va_mif_FR.tud"})
    ports().files->remove_file(folder.path(name));
  const Ran ran = run_kavo({"rebuild", path(u"manual_mif_FR.tud")});
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.errors.find(path(u"KAVO_ix_mif_FR.tud") + " and " + path(u"KAVO_va_mif_FR.tud")), std::string::npos)
      << ran.errors;
  EXPECT_EQ(ran.errors.find("KAVO_xr"), std::string::npos) << ran.errors;
}

}  // namespace
}  // namespace kavo::test
