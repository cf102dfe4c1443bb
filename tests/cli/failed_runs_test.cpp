// A run that fails leaves the folder as it was: new files are removed, and old ones come back.
#include <gtest/gtest.h>

#include <map>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

class FailedRuns : public testing::Test {
 protected:
  // Contents by name; a folder has none.
  std::map<std::u16string, std::string> all_entries() const {
    std::map<std::u16string, std::string> entries;
    for (const std::u16string& name : ports().files->find(folder.path(u"*")))
      entries[name] = ports().files->info(folder.path(name))->is_folder ? "" : folder.read(name);
    return entries;
  }
  TempFolder folder;
};

// One of the results has the name of a folder. The run finds that out halfway or at its end.
TEST_F(FailedRuns, LeaveTheFolderAsItWas) {
  const std::vector<std::string> languages{"--source", "EN-US", "--target", "FR"};
  const std::string page = "<html><body><p>One <b>two</p><% x %></body></html>\r\n";
  const std::string manual =
      "<MIFFile 7.00>\n<Marker <MTypeName `Index'> <MText `x'>>\n=GIF\n&x\n=EndInset\n<Para <ParaLine <String `y'>>>\n";
  const std::string letter = "{\\rtf1 Dear {\\pict 0102}\\par}";
  const struct {
    const char16_t* document;
    std::string bytes;
    const char16_t* in_the_way;
    std::vector<std::string> command;
  } cases[] = {
      {u"page.asp", page, u"page_asp.htm", {"preprocess"}},
      {u"page.asp", page, u"page_asp.scr", {"preprocess"}},
      {u"page.asp", page, u"page_asp.scr", {"html", "protect"}},
      {u"page.asp", page, u"page_asp.scr", {"prepare"}},
      {u"page.asp", page, u"page_asp_scr_FR.tud", {"prepare"}},
      {u"page.asp", page, u"page_asp_scr_FR.tud.skl", {"prepare"}},
      {u"book.mif", manual, u"KAVO_va.mif", {"preprocess"}},
      {u"book.mif", manual, u"book.mif.kavo.bak", {"preprocess"}},
      {u"book.mif", manual, u"KAVO_va.mif", {"prepare"}},
      {u"book.mif", manual, u"KAVO_va_mif_FR.tud", {"prepare"}},
      {u"book.mif", manual, u"KAVO_va.mif", {"mif", "extract"}},
      {u"book.mif", manual, u"book.obj", {"mif", "remove-objects"}},
      {u"letter.rtf", letter, u"letter.obj", {"rtf", "extract"}},
      {u"letter.rtf", letter, u"letter.obj", {"prepare"}},
      {u"letter.rtf", letter, u"letter_rtf_FR.tud.skl", {"prepare"}},
  };
  for (const auto& c : cases)
    for (const bool overwrite : {false, true}) {
      std::vector<std::string> arguments = c.command;
      arguments.push_back(path_to_host(folder.path(c.document)));
      if (c.command[0] == "prepare") arguments.insert(arguments.end(), languages.begin(), languages.end());
      if (overwrite && c.command[0] != "mif") arguments.push_back("--overwrite");
      SCOPED_TRACE(testing::PrintToString(arguments) + path_to_host(c.in_the_way));
      folder.write(c.document, c.bytes);
      folder.make_folder(c.in_the_way);
      const auto before = all_entries();
      const Ran ran = run_kavo(arguments);
      EXPECT_EQ(ran.code, 1);
      EXPECT_EQ(ran.output, "") << "nothing was made";
      EXPECT_NE(ran.errors.find(path_to_host(folder.path())), std::string::npos) << ran.errors;
      EXPECT_EQ(all_entries(), before) << ran.errors;
      ports().files->remove_folder(folder.path(c.in_the_way));
      ports().files->remove_file(folder.path(c.document));
      ASSERT_EQ(folder.entry_count(), 0u);
    }
}

}  // namespace
}  // namespace kavo::test
