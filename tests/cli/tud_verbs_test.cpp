// The verbs of bilingual documents, as their users see them.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

class TudCommand : public testing::Test {
 protected:
  std::string put(std::u16string_view name, std::string_view bytes) { return path_to_host(folder.write(name, bytes)); }
  std::string path(std::u16string_view name) { return path_to_host(folder.path(name)); }
  Ran prepare(const std::string& file) { return run_kavo({"prepare", file, "--source", "en-us", "--target", "FR"}); }
  TempFolder folder;
};

TEST_F(TudCommand, PrepareConvertsADocument) {
  const Ran ran = prepare(put(u"a.txt", "One\nTwo\n"));
  EXPECT_EQ(ran.code, 0);
  EXPECT_EQ(ran.output, path(u"a_txt_FR.tud") + "\n");
  EXPECT_EQ(ran.errors, "");
  EXPECT_TRUE(folder.exists(u"a_txt_FR.tud.skl"));
}

TEST_F(TudCommand, PrepareConvertsEveryProducedFile) {
  const Ran ran = prepare(put(u"index.asp", "<html><body><p>Hello</p><% MsgBox \"Hi\" %></body></html>\r\n"));
  EXPECT_EQ(ran.code, 0);
  EXPECT_EQ(ran.output, path(u"index_asp_htm_FR.tud") + "\n" + path(u"index_asp_scr_FR.tud") + "\n");
}

TEST_F(TudCommand, PrepareFindsParagraphsInTheWayThatIsAskedFor) {
  const auto segments = [&](const std::vector<std::string>& more) {
    std::vector<std::string> arguments{"prepare", put(u"a.txt", "One\ntwo\n\nThree\n"), "--source", "EN-US", "--target",
                                       "FR"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    EXPECT_EQ(run_kavo(arguments).code, 0);
    return nlohmann::json::parse(run_kavo({"stats", "--json", path(u"a_txt_FR.tud")}).output)["segments"].get<int>();
  };
  EXPECT_EQ(segments({"--paragraphs", "lines"}), 3);
  EXPECT_EQ(segments({"--paragraphs", "blank"}), 2);
  EXPECT_EQ(segments({"--filter-option", "text.paragraphs=blank"}), 2);
  EXPECT_EQ(segments({}), 3) << "nothing says that these lines were filled";
  EXPECT_EQ(run_kavo({"prepare", path(u"a.txt"), "--source", "EN", "--target", "FR", "--paragraphs", "pages"}).code, 2);
}

TEST_F(TudCommand, APageInUtf16WalksTheWholeWay) {
  const std::string page("\xFF\xFE<\0p\0>\0H\0i\0<\0/\0p\0>\0\n\0", 22);
  ASSERT_EQ(prepare(put(u"index.asp", page)).code, 0);
  ASSERT_EQ(run_kavo({"rebuild", path(u"index_asp_htm_FR.tud")}).code, 0);
  EXPECT_EQ(folder.read(u"index_FR.asp"), page);
}

TEST_F(TudCommand, OptionsOfFiltersReachMifAndRtf) {
  const auto locked = [&](const std::vector<std::string>& more) {
    std::vector<std::string> arguments{
        "prepare",  put(u"a.mif", "<MIFFile 9.00>\n<Page <PageType ReferencePage> <TextLine <String `a'>>>\n"),
        "--source", "EN-US",
        "--target", "FR",
        "--fresh"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    EXPECT_EQ(run_kavo(arguments).code, 0);
    return nlohmann::json::parse(run_kavo({"stats", "--json", path(u"a_mif_FR.tud")}).output)["locked"].get<int>();
  };
  EXPECT_EQ(locked({}), 1);
  EXPECT_EQ(locked({"--filter-option", "mif.page-types=body, reference"}), 0);
  const std::string letter = put(u"a.rtf", "{\\rtf1{\\stylesheet{\\s15 Code;}}\\pard\\s15 x\\par\\pard y\\par}");
  ASSERT_EQ(run_kavo({"prepare", letter, "--source", "EN-US", "--target", "FR", "--filter-option",
                      "rtf.excluded-styles=Code"})
                .code,
            0);
  EXPECT_EQ(nlohmann::json::parse(run_kavo({"stats", "--json", path(u"a_rtf_FR.tud")}).output)["segments"], 1);
}

TEST_F(TudCommand, PrepareNamesWhatIsMissing) {
  EXPECT_EQ(run_kavo({"prepare", put(u"a.txt", "One\n")}).code, 2);
  const Ran ran = prepare(path(u"missing.txt"));
  EXPECT_EQ(ran.code, 1);
  EXPECT_EQ(ran.output, "");
  EXPECT_NE(ran.errors.find("missing.txt"), std::string::npos);
  EXPECT_EQ(run_kavo({"prepare", path(u"a.txt"), "--source", "EN", "--target", "FR", "--target-code-page", "438"}).code,
            2);
}

TEST_F(TudCommand, ADocumentWithItsSkeletonInsideIsRebuiltAlone) {
  prepare(put(u"a.txt", "One\n"));
  const std::string alone = path(u"alone_txt_FR.tud");
  EXPECT_EQ(run_kavo({"export", path(u"a_txt_FR.tud"), "--to", alone, "--with-skeleton"}).code, 0);
  for (const std::u16string_view name : {u"a.txt", u"a_txt_FR.tud", u"a_txt_FR.tud.skl"})
    ports().files->remove_file(folder.path(name));
  EXPECT_EQ(run_kavo({"pseudo", alone}).code, 0);
  const Ran ran = run_kavo({"rebuild", alone});
  EXPECT_EQ(ran.code, 0) << ran.errors;
  // In the system's own code page.
  EXPECT_EQ(folder.read(u"a_FR.txt"), is_native() ? "[\xC3\x95\xC3\xB1\xC3\xA8]\n" : "[\xD5\xF1\xE8]\n");
  // What was unpacked has gone again.
  EXPECT_EQ(folder.entry_count(), 2u);
}

TEST_F(TudCommand, PseudoTranslatesAndStatsCount) {
  prepare(put(u"a.txt", "One two\nThree\n"));
  const std::string tud = path(u"a_txt_FR.tud");
  const Ran before = run_kavo({"stats", "--json", tud});
  const auto open = nlohmann::json::parse(before.output);
  EXPECT_EQ(open["segments"], 2);
  EXPECT_EQ(open["words"], 3);
  EXPECT_EQ(open["untranslated"], 2);
  EXPECT_EQ(open["words_left"], 3);
  EXPECT_EQ(run_kavo({"pseudo", tud}).code, 0);
  EXPECT_NE(folder.read(u"a_txt_FR.tud").find("[\xC3\x95\xC3\xB1\xC3\xA8 tw\xC3\xB4]"), std::string::npos);
  const auto done = nlohmann::json::parse(run_kavo({"stats", "--json", tud}).output);
  EXPECT_EQ(done["translated"], 2);
  EXPECT_EQ(done["words_left"], 0);
  const Ran table = run_kavo({"stats", tud, tud});
  EXPECT_EQ(table.code, 0);
  EXPECT_EQ(std::count(table.output.begin(), table.output.end(), '\n'), 4);
  EXPECT_NE(table.output.find("total"), std::string::npos);
}

TEST_F(TudCommand, ExportAndImportGoRound) {
  prepare(put(u"a.txt", "One\nTwo\n"));
  const std::string tud = path(u"a_txt_FR.tud");
  const Ran out = run_kavo({"export", tud, "--to", path(u"a.fr.xlf")});
  EXPECT_EQ(out.code, 0);
  EXPECT_EQ(out.output, path(u"a.fr.xlf") + "\n");
  std::string edited = folder.read(u"a.fr.xlf");
  EXPECT_EQ(edited, folder.read(u"a_txt_FR.tud"));
  const std::string target = "<target state=\"new\">Two</target>";
  edited.replace(edited.find(target), target.size(), "<target state=\"translated\">Deux</target>");
  folder.write(u"a.fr.xlf", edited);
  const Ran in = run_kavo({"import", path(u"a.fr.xlf"), "--to", tud});
  EXPECT_EQ(in.code, 0) << in.errors;
  EXPECT_NE(in.output.find("1 translation taken over, 0 refused"), std::string::npos);
  EXPECT_EQ(folder.read(u"a_txt_FR.tud"), edited);
}

TEST_F(TudCommand, ADocumentCutInHalfIsNamedWithItsPlace) {
  prepare(put(u"a.txt", "One\nTwo\n"));
  const std::string whole = folder.read(u"a_txt_FR.tud");
  folder.write(u"a_txt_FR.tud", whole.substr(0, whole.size() / 2));
  for (const char* verb : {"stats", "pseudo", "export"}) {
    const Ran ran = run_kavo({verb, path(u"a_txt_FR.tud")});
    EXPECT_EQ(ran.code, 1) << verb;
    EXPECT_NE(ran.errors.find("line "), std::string::npos) << ran.errors;
    EXPECT_EQ(folder.read(u"a_txt_FR.tud"), whole.substr(0, whole.size() / 2)) << verb;
  }
  EXPECT_FALSE(folder.exists(u"a_txt_FR.xlf"));
}

}  // namespace
}  // namespace kavo::test
