// The documents of one preparation belong together: they are made together, and rebuilt together.
#include <gtest/gtest.h>

#include <thread>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

constexpr char kPage[] = "<html><body><p>Hello</p><% MsgBox \"Hi\" %></body></html>\r\n";
constexpr char kOtherPage[] = "<html><body><% a \"First\" %><p>Hello</p><% MsgBox \"Hi\" %></body></html>\r\n";

class DocumentSetCommand : public testing::Test {
 protected:
  std::string path(std::u16string_view name) { return path_to_host(folder.path(name)); }
  static Ran prepare(const std::string& file, const char* language = "FR", bool overwrite = false) {
    std::vector<std::string> arguments{"prepare", file, "--source", "EN-US", "--target", language};
    if (overwrite) arguments.emplace_back("--overwrite");
    return run_kavo(arguments);
  }
  TempFolder folder;
};

TEST_F(DocumentSetCommand, DocumentsOfTwoPreparationsAreNotRebuilt) {
  const std::string page = path_to_host(folder.write(u"index.asp", kPage));
  ASSERT_EQ(prepare(page).code, 0);
  const std::string script = folder.read(u"index_asp_scr_FR.tud");
  const std::string skeleton = folder.read(u"index_asp_scr_FR.tud.skl");
  folder.write(u"index.asp", kOtherPage);
  ASSERT_EQ(prepare(page).code, 0) << "nobody has worked on the documents";
  folder.write(u"index_asp_scr_FR.tud", script);
  folder.write(u"index_asp_scr_FR.tud.skl", skeleton);
  const Ran refused = run_kavo({"rebuild", path(u"index_asp_htm_FR.tud")});
  EXPECT_EQ(refused.code, 1);
  EXPECT_NE(refused.errors.find("_FR.tud does not come from the same preparation"), std::string::npos)
      << refused.errors;
  EXPECT_FALSE(folder.exists(u"index_FR.asp"));
}

TEST_F(DocumentSetCommand, TheSamePageGivesTheSameMarkInEachLanguage) {
  const std::string page = path_to_host(folder.write(u"index.asp", kPage));
  ASSERT_EQ(prepare(page).code, 0);
  ASSERT_EQ(prepare(page, "DE").code, 0);
  for (const char* language : {"FR", "DE"}) {
    const std::string tud = path(u"index_asp_htm_") + language + ".tud";
    EXPECT_EQ(run_kavo({"rebuild", tud}).code, 0) << language;
  }
  EXPECT_EQ(folder.read(u"index_FR.asp"), folder.read(u"index_DE.asp"));
}

TEST_F(DocumentSetCommand, ASourceThatHasChangedSinceIsSaid) {
  const std::string page = path_to_host(folder.write(u"index.asp", kPage));
  ASSERT_EQ(prepare(page).code, 0);
  const std::vector<std::string> rebuild{"rebuild", "--overwrite", path(u"index_asp_htm_FR.tud")};
  const Ran unchanged = run_kavo(rebuild);
  EXPECT_EQ(unchanged.code, 0);
  EXPECT_EQ(unchanged.errors.find("has changed"), std::string::npos) << unchanged.errors;
  folder.write(u"index.asp", kOtherPage);
  const Ran changed = run_kavo(rebuild);
  EXPECT_EQ(changed.code, 0);
  EXPECT_NE(changed.errors.find("has changed since it was prepared"), std::string::npos) << changed.errors;
  EXPECT_EQ(folder.read(u"index_FR.asp"), kPage) << "what was prepared";
}

TEST_F(DocumentSetCommand, TwoLanguagesArePreparedAtTheSameTime) {
  const std::string page = path_to_host(folder.write(u"index.asp", kPage));
  Ran first;
  std::thread other([&] { first = prepare(page, "DE"); });
  const Ran second = prepare(page, "ES");
  other.join();
  EXPECT_EQ(first.code, 0) << first.errors;
  EXPECT_EQ(second.code, 0) << second.errors;
  for (const char16_t* name : {u"index_asp.htm", u"index_asp.scr", u"index_asp_htm_DE.tud", u"index_asp_scr_DE.tud",
                               u"index_asp_htm_ES.tud", u"index_asp_scr_ES.tud"})
    EXPECT_TRUE(folder.exists(name)) << path(name);
  EXPECT_FALSE(folder.exists(u".kavo-run"));
}

TEST_F(DocumentSetCommand, AFailedPreparationLeavesTheOldDocuments) {
  const std::string page = path_to_host(folder.write(u"index.asp", kPage));
  ASSERT_EQ(prepare(page).code, 0);
  const std::string html = folder.read(u"index_asp.htm"), script = folder.read(u"index_asp.scr");
  const std::string tud = folder.read(u"index_asp_htm_FR.tud");
  folder.write(u"index.asp", std::string("\xFF\xFE<\0p", 5));  // half a character, which is refused
  EXPECT_EQ(prepare(page, "FR", true).code, 1);
  EXPECT_EQ(folder.read(u"index_asp.htm"), html);
  EXPECT_EQ(folder.read(u"index_asp.scr"), script);
  EXPECT_EQ(folder.read(u"index_asp_htm_FR.tud"), tud);
  EXPECT_FALSE(folder.exists(u".kavo-run"));
}

TEST_F(DocumentSetCommand, AllMifDocumentsOfAFolderArePreparedTwice) {
  const auto manual = [](const std::string& text) {
    return "<MIFFile 7.00>\n<VariableFormats \n <VariableFormat \n  <VariableName `V'>\n  <VariableDef `" + text +
           "'>\n >\n>\n<TextFlow \n <Para \n  <ParaLine \n   <String `Text'>\n  >\n >\n>\n";
  };
  std::vector<std::string> arguments{"prepare", "--source", "EN-US", "--target", "FR"};
  arguments.push_back(path_to_host(folder.write(u"ch1.mif", manual("Apple"))));
  arguments.push_back(path_to_host(folder.write(u"ch2.mif", manual("Pear"))));
  ASSERT_EQ(run_kavo(arguments).code, 0);
  const std::string variables = folder.read(u"KAVO_va.mif");
  for (const char16_t* side : {u"KAVO_ix.mif", u"KAVO_va.mif", u"KAVO_xr.mif"}) arguments.push_back(path(side));
  const Ran again = run_kavo(arguments);
  EXPECT_EQ(again.code, 0) << again.errors;
  EXPECT_NE(again.errors.find("left out"), std::string::npos) << again.errors;
  EXPECT_EQ(folder.read(u"KAVO_va.mif"), variables);
  EXPECT_FALSE(folder.exists(u"KAVO_va.mif.kavo.bak"));
}

TEST_F(DocumentSetCommand, APageThatSomebodyWorkedOnIsReplacedOnlyOnRequest) {
  const std::string page = path_to_host(folder.write(u"x.htm", "<html><body><p>Hello</p></body></html>\r\n"));
  for (const char* verb : {"prepare", "preprocess"}) {
    folder.write(u"x_htm.htm", "my own page");
    std::vector<std::string> arguments{verb, page};
    if (arguments[0] == "prepare") arguments.insert(arguments.end(), {"--source", "EN-US", "--target", "FR"});
    const Ran refused = run_kavo(arguments);
    EXPECT_EQ(refused.code, 1) << verb;
    EXPECT_NE(refused.errors.find(path(u"x_htm.htm")), std::string::npos) << refused.errors;
    EXPECT_EQ(folder.read(u"x_htm.htm"), "my own page");
    arguments.emplace_back("--overwrite");
    EXPECT_EQ(run_kavo(arguments).code, 0) << verb;
    EXPECT_NE(folder.read(u"x_htm.htm"), "my own page");
  }
}

TEST_F(DocumentSetCommand, TheLeftoversOfAKilledRunAreRemovedAndReported) {
  const std::string page = path_to_host(folder.write(u"index.asp", kPage));
  folder.write(u".kavo-run\\journal", std::string("KAVO run 1\0working\0end\0", 23));
  folder.write(u".kavo-run\\1\\index_asp.htm", "half");
  const Ran ran = prepare(page);
  EXPECT_EQ(ran.code, 0);
  EXPECT_NE(ran.errors.find("was stopped before its end"), std::string::npos) << ran.errors;
  EXPECT_FALSE(folder.exists(u".kavo-run"));
}

}  // namespace
}  // namespace kavo::test
