// kavo rebuild, as its users see it.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "suite/document/bilingual_document.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

constexpr std::string_view kPage =
    "<html lang=\"en\"><body><p>Hello <%= name %></p>\r\n<% MsgBox \"Hi\" %>\r\n</body></html>\r\n";

class RebuildCommand : public testing::Test {
 protected:
  std::string path(std::u16string_view name) { return path_to_host(folder.path(name)); }
  void prepare(std::u16string_view name, std::string_view bytes) {
    const std::string file = path_to_host(folder.write(name, bytes));
    ASSERT_EQ(run_kavo({"prepare", file, "--source", "EN-US", "--target", "FR", "--code-page", "utf-8"}).code, 0);
  }
  void prepare_page() { prepare(u"index.asp", kPage); }
  TempFolder folder;
};

TEST_F(RebuildCommand, PrepareThenPseudoThenRebuild) {
  prepare_page();
  ASSERT_EQ(run_kavo({"pseudo", path(u"index_asp_htm_FR.tud"), path(u"index_asp_scr_FR.tud")}).code, 0);
  const Ran ran = run_kavo({"rebuild", path(u"index_asp_htm_FR.tud")});
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_EQ(ran.output, path(u"index_FR.asp") + "\t4\tserver page\n");
  EXPECT_EQ(ran.errors, "");
  const std::string page = folder.read(u"index_FR.asp");
  EXPECT_NE(page.find("<%= name %>"), std::string::npos) << page;
  EXPECT_NE(page.find("[Hèllô"), std::string::npos) << page;
  EXPECT_NE(page.find("<% MsgBox \"[Hï]"), std::string::npos) << page;
  EXPECT_NE(page.find("lang=\"fr\""), std::string::npos) << page;
  // The prepared page and its scripts, the two bilingual documents with their skeletons, source and result.
  EXPECT_EQ(folder.entry_count(), 8u);
}

TEST_F(RebuildCommand, AnotherRunReplacesTheResultOnlyWhenAskedTo) {
  prepare_page();
  const std::string tud = path(u"index_asp_htm_FR.tud");
  folder.write(u"index_FR.asp", "mine");
  const Ran refused = run_kavo({"rebuild", tud});
  EXPECT_EQ(refused.code, 1);
  EXPECT_EQ(refused.output, "");
  EXPECT_NE(refused.errors.find("index_FR.asp exists already"), std::string::npos) << refused.errors;
  EXPECT_EQ(folder.read(u"index_FR.asp"), "mine");
  EXPECT_EQ(run_kavo({"rebuild", "--overwrite", tud}).code, 0);
  EXPECT_NE(folder.read(u"index_FR.asp").find("<%= name %>"), std::string::npos);
  EXPECT_EQ(run_kavo({"rebuild", tud}).code, 1);
}

// Names that scratch files have had: beside a document that is not there, and of the page before its scripts return.
TEST_F(RebuildCommand, FilesOfTheUsersThatAreNamedLikeScratchFilesStay) {
  folder.write(u"nonexist.otf", "a font");
  EXPECT_EQ(run_kavo({"rebuild", path(u"nonexist.tud")}).code, 1);
  EXPECT_EQ(folder.read(u"nonexist.otf"), "a font");
  prepare_page();
  for (const char16_t* name : {u"index_asp_FR.htm", u"index_asp_htm_FR.otf"}) folder.write(name, "mine");
  EXPECT_EQ(run_kavo({"rebuild", "--overwrite", path(u"index_asp_htm_FR.tud")}).code, 0);
  for (const char16_t* name : {u"index_asp_FR.htm", u"index_asp_htm_FR.otf"}) EXPECT_EQ(folder.read(name), "mine");
}

TEST_F(RebuildCommand, AFileOfTheUsersThatIsInTheWayComesBackUnderItsOwnName) {
  prepare_page();
  // The script document has this name meanwhile, in other letter case.
  folder.write(u"index_asp_fr.scr", "mine");
  EXPECT_EQ(run_kavo({"rebuild", path(u"index_asp_htm_FR.tud")}).code, 0);
  const std::vector<std::u16string> names = ports().files->find(folder.path(u"index_asp_FR.SCR"));
  EXPECT_EQ(names, std::vector<std::u16string>{u"index_asp_fr.scr"});
  EXPECT_EQ(folder.read(u"index_asp_fr.scr"), "mine");
}

TEST_F(RebuildCommand, ADocumentOfASetIsNotRebuiltUnderANameThatHidesTheOthers) {
  prepare_page();
  folder.write(u"mine.tud", folder.read(u"index_asp_htm_FR.tud"));
  const std::size_t count = folder.entry_count();
  const Ran ran = run_kavo({"rebuild", path(u"mine.tud")});
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.errors.find("index_asp_htm_FR.tud.skl"), std::string::npos) << ran.errors;
  EXPECT_EQ(folder.entry_count(), count);
  prepare(u"a.txt", "One\n");
  folder.write(u"other.tud", folder.read(u"a_txt_FR.tud"));
  EXPECT_EQ(run_kavo({"rebuild", path(u"other.tud")}).code, 0);
}

TEST_F(RebuildCommand, OutputNamesTheDocument) {
  prepare_page();
  prepare(u"a.txt", "One\n");
  folder.write(u"index_FR.asp", "mine");
  folder.make_folder(u"out");
  const std::string tud = path(u"index_asp_htm_FR.tud"), output = path(u"out\\page.php");
  const Ran ran = run_kavo({"rebuild", tud, "--output", output});
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_EQ(ran.output, output + "\t4\tserver page\n");
  EXPECT_NE(folder.read(u"out\\page.php").find("<%= name %>"), std::string::npos);
  EXPECT_EQ(folder.read(u"index_FR.asp"), "mine") << "no other document is touched";

  EXPECT_EQ(run_kavo({"rebuild", tud, "--output", output}).code, 1);
  EXPECT_EQ(run_kavo({"rebuild", tud, "--output", output, "--overwrite"}).code, 0);
  EXPECT_EQ(run_kavo({"rebuild", path(u"a_txt_FR.tud"), "--output", path(u"out\\a.dat")}).code, 0);
  EXPECT_EQ(folder.read(u"out\\a.dat"), "One\n");
  EXPECT_FALSE(folder.exists(u"a_FR.txt"));
  EXPECT_EQ(run_kavo({"rebuild", path(u"a_txt_FR.tud"), "--output", path(u"nowhere\\a.txt")}).code, 1);
  EXPECT_EQ(run_kavo({"rebuild", path(u"a_txt_FR.tud"), "--output", path(u"a_txt_FR.tud"), "--overwrite"}).code, 1);
  EXPECT_EQ(run_kavo({"rebuild", tud, path(u"a_txt_FR.tud"), "--output", output}).code, 2);
}

TEST_F(RebuildCommand, JsonNamesTheResultAndTheDocument) {
  prepare(u"a.txt", "One\n");
  const std::string tud = path(u"a_txt_FR.tud");
  const auto done = nlohmann::json::parse(run_kavo({"rebuild", "--json", tud}).output);
  EXPECT_EQ(done["verb"], "rebuild");
  EXPECT_EQ(done["result"], 0);
  EXPECT_EQ(done["done"], true);
  EXPECT_EQ(done["produced"][0]["file"], path(u"a_FR.txt"));
  EXPECT_EQ(done["produced"][0]["type"], 7);
  folder.write(u"a_txt_FR.tud", "no document");
  const Ran ran = run_kavo({"rebuild", "--json", "--overwrite", tud});
  EXPECT_EQ(ran.code, 1);
  const auto failed = nlohmann::json::parse(ran.output);
  EXPECT_EQ(failed["result"], 1);
  EXPECT_EQ(failed["messages"][0]["text"], "Failed to open TUD file");
  EXPECT_EQ(failed["messages"].size(), 2u) << "and the reason";
}

TEST_F(RebuildCommand, FailuresTellWhatFailedAndWhy) {
  prepare_page();
  folder.write(u"index_asp_htm_FR.tud.skl", "no skeleton");
  const Ran ran = run_kavo({"rebuild", path(u"index_asp_htm_FR.tud"), path(u"missing_txt_FR.tud")});
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.errors.find("2 of 2 files failed"), std::string::npos) << ran.errors;
  EXPECT_NE(ran.errors.find("missing_txt_FR.tud: Failed to open TUD file"), std::string::npos) << ran.errors;
  EXPECT_FALSE(folder.exists(u"index_FR.asp"));
}

// The user names the page's document; the place is one of the document of its scripts.
TEST_F(RebuildCommand, AMessageOnAScriptNamesTheScriptsDocument) {
  prepare(u"index.asp", "<p>Hello</p><% Const kTitle = \"Hello you\" %>\r\n<% MsgBox kTitle %>\r\n");
  BilingualDocument document(folder.path(u"index_asp_scr_FR.tud"));
  ASSERT_EQ(document.size(), 1u);
  document.set_segment(0, "Bonjour\nvous", TranslationStatus::kTranslated, 0);
  document.save();
  const Ran refused = run_kavo({"rebuild", path(u"index_asp_htm_FR.tud")});
  EXPECT_EQ(refused.code, 1);
  EXPECT_NE(refused.errors.find("index_asp_scr_FR.tud: segment 1 (line 3, column 20): a line break"), std::string::npos)
      << refused.errors;
}

TEST_F(RebuildCommand, DocumentsThatAreTakenAlongAreLeftOut) {
  prepare_page();
  prepare(u"manual.mif", "<MIFFile 7.00>\r\n");
  const Ran ran = run_kavo({"rebuild", path(u"index_asp_scr_FR.tud"), path(u"index_asp_htm_FR.tud"),
                            path(u"KAVO_ix_mif_FR.tud"), path(u"manual_mif_FR.tud")});
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_EQ(ran.output, path(u"index_FR.asp") + "\t4\tserver page\n" + path(u"manual_FR.mif") + "\t5\tMIF document\n");
  EXPECT_NE(ran.errors.find("it is rebuilt with the document that it belongs to"), std::string::npos);
  EXPECT_FALSE(folder.exists(u"index_asp_FR.scr"));
}

TEST_F(RebuildCommand, ManualInTheWorkingFolderKeepsItsHiddenTexts) {
  folder.write(u"manual.mif",
               "<MIFFile 7.00>\r\n<VariableFormats \r\n <VariableFormat \r\n  <VariableName `Title'>\r\n"
               "  <VariableDef `Handbook'>\r\n >\r\n>\r\n");
  ASSERT_EQ(run_kavo({"prepare", "manual.mif", "--source", "EN-US", "--target", "FR"}, &folder).code, 0);
  ASSERT_EQ(run_kavo({"pseudo", "KAVO_va_mif_FR.tud"}, &folder).code, 0);
  const Ran ran = run_kavo({"rebuild", "manual_mif_FR.tud"}, &folder);
  EXPECT_EQ(ran.output, "manual_FR.mif\t5\tMIF document\n") << ran.errors;
  EXPECT_EQ(folder.read(u"manual_FR.mif").find("`Handbook'"), std::string::npos);
}

TEST_F(RebuildCommand, HighlightColoursTheTexts) {
  prepare(u"page.htm", "<html><body><p>Hello</p></body></html>");
  const std::string tud = path(u"page_htm_htm_FR.tud");
  EXPECT_EQ(run_kavo({"rebuild", tud}).code, 0);
  const std::string plain = folder.read(u"page_FR.htm");
  EXPECT_EQ(run_kavo({"rebuild", "--overwrite", "--highlight", tud}).code, 0);
  EXPECT_NE(folder.read(u"page_FR.htm"), plain);
}

TEST_F(RebuildCommand, HelpShowsAnExample) {
  const Ran ran = run_kavo({"rebuild", "--help"});
  EXPECT_EQ(ran.code, 0);
  for (const char* text : {"--output", "--overwrite", "--highlight", "kavo rebuild index_asp_htm_FR.tud"})
    EXPECT_NE(ran.output.find(text), std::string::npos) << text;
}

}  // namespace
}  // namespace kavo::test
