// How people write command lines: unknown verbs, options in any place, folders as files, settings.
#include <gtest/gtest.h>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "support/holds.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

TEST(CommandWords, AnUnknownVerbIsNamedWithTheNearestOne) {
  const struct {
    std::vector<std::string> arguments;
    const char* said;
  } cases[] = {
      {{"rebild", "a.tud"}, "there is no verb \"rebild\"; the nearest is \"rebuild\""},
      {{"translate"}, "there is no verb \"translate\"; the nearest is \""},
      {{"html", "protekt"}, "there is no verb \"html protekt\"; the nearest is \"html protect\""},
      {{"protect", "a.asp"}, "the nearest is \"html protect\""},
      {{"--json", "stat"}, "the nearest is \"stats\""},
      {{"help", "exprot"}, "the nearest is \"export\""},
  };
  for (const auto& c : cases) {
    const Ran ran = run_kavo(c.arguments);
    EXPECT_EQ(ran.code, 2) << c.said;
    EXPECT_TRUE(holds(ran.errors, c.said)) << ran.errors;
  }
}

TEST(CommandWords, HelpIsAVerbToo) {
  EXPECT_EQ(run_kavo({"help"}).output, run_kavo({"--help"}).output);
  EXPECT_EQ(run_kavo({"help", "rebuild"}).output, run_kavo({"rebuild", "--help"}).output);
  EXPECT_EQ(run_kavo({"help", "html", "protect"}).output, run_kavo({"html", "protect", "--help"}).output);
  EXPECT_EQ(run_kavo({"--help", "stats"}).output, run_kavo({"stats", "--help"}).output);
}

class CommandWordsOnFiles : public testing::Test {
 protected:
  TempFolder folder;
};

TEST_F(CommandWordsOnFiles, OptionsMayStandBeforeTheVerb) {
  folder.write(u"a.txt", "One\n");
  const Ran ran = run_kavo({"--source", "EN", "-q", "--code-page", "1252", "--target=FR", "prepare", "a.txt"}, &folder);
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_TRUE(folder.exists(u"a_txt_FR.tud"));
}

TEST_F(CommandWordsOnFiles, AnOptionOfAFilterIsCheckedBeforeAnythingIsDone) {
  folder.write(u"p.asp", "<p>a</p><% x = \"all of it\" %>\r\n");
  const auto prepare = [&](const char* option) {
    return run_kavo({"prepare", "p.asp", "--source", "EN-US", "--target", "FR", "--filter-option", option}, &folder);
  };
  const struct {
    const char* option;
    const char* said;
  } cases[] = {
      {"script.offer=all", "the nearest is \"scripts.offer\""},
      {"scripts.offer=some", "scripts.offer can be likely, all or none, not \"some\""},
      {"scripts.offer", "is not of the form NAME=VALUE"},
  };
  for (const auto& c : cases) {
    const Ran ran = prepare(c.option);
    EXPECT_EQ(ran.code, 2) << c.option;
    EXPECT_TRUE(holds(ran.errors, c.said)) << ran.errors;
    EXPECT_FALSE(folder.exists(u"p_asp.htm"));
  }
  EXPECT_EQ(prepare("scripts.offer=all").code, 0);
  EXPECT_TRUE(holds(folder.read(u"p_asp_scr_FR.tud"), "all of it"));
  EXPECT_EQ(prepare("scripts.offer=none").code, 0);
  EXPECT_FALSE(holds(folder.read(u"p_asp_scr_FR.tud"), "all of it"));
}

TEST_F(CommandWordsOnFiles, AFolderIsSaidToBeOne) {
  folder.make_folder(u"pages.asp");
  for (const char* verb : {"preprocess", "edit"}) {
    const Ran ran = run_kavo({verb, "pages.asp"}, &folder);
    EXPECT_EQ(ran.code, 1) << verb;
    EXPECT_EQ(ran.errors, "pages.asp: this is a folder; name the files in it\n") << verb;
  }
  for (const char* verb : {"stats", "rebuild", "verify", "export", "pseudo"}) {
    const Ran ran = run_kavo({verb, "pages.asp"}, &folder);
    EXPECT_EQ(ran.code, 1) << verb;
    EXPECT_EQ(ran.errors,
              "kavo: pages.asp: there is nothing to work on in this folder; --recursive looks into its "
              "folders, too\n")
        << verb;
  }
}

TEST_F(CommandWordsOnFiles, ExamplesNameDocumentsThatExist) {
  folder.write(u"index.asp", "<p>a</p>\r\n");
  ASSERT_EQ(run_kavo({"prepare", "index.asp", "--source", "EN-US", "--target", "FR"}, &folder).code, 0);
  ASSERT_TRUE(folder.exists(u"index_asp_htm_FR.tud"));
  for (const char* verb : {"rebuild", "export", "import", "pseudo", "edit"})
    EXPECT_TRUE(holds(run_kavo({"help", verb}).output, "index_asp_htm_FR.tud")) << verb;
}

TEST_F(CommandWordsOnFiles, PathsInMessagesHaveTheHostsForm) {
  if (!is_native()) GTEST_SKIP() << "a path has one form on Windows, so there is nothing to convert";
  folder.write(u"a.txt", "One\n");
  const std::string file = path_to_host(folder.path(u"a.txt"));
  ASSERT_EQ(run_kavo({"prepare", file, "--source", "EN", "--target", "FR"}).code, 0);
  const std::string tud = path_to_host(folder.path(u"a_txt_FR.tud"));
  ASSERT_EQ(run_kavo({"rebuild", tud}).code, 0);
  const Ran ran = run_kavo({"rebuild", tud});
  EXPECT_EQ(ran.code, 1);
  EXPECT_TRUE(holds(ran.errors, path_to_host(folder.path(u"a_FR.txt")))) << ran.errors;
  EXPECT_FALSE(holds(ran.errors, "\\")) << ran.errors;
}

TEST(FilterOptionSettings, AreStoredShownAndTakenAway) {
  EXPECT_EQ(run_kavo({"settings", "scripts.never=Log,Trace"}).output, "scripts.never=Log,Trace\n");
  EXPECT_EQ(run_kavo({"settings", "scripts.never"}).output, "scripts.never=Log,Trace\n");
  EXPECT_EQ(run_kavo({"settings", "scripts.never=default", "scripts.offer"}).output,
            "scripts.never=\nscripts.offer=likely\n");
  const Ran wrong = run_kavo({"settings", "scripts.offer=sure"});
  EXPECT_EQ(wrong.code, 1);
  EXPECT_TRUE(holds(wrong.errors, "likely, all or none")) << wrong.errors;
  const Ran unknown = run_kavo({"settings", "script.offer"});
  EXPECT_EQ(unknown.code, 2);
  EXPECT_TRUE(holds(unknown.errors, "the nearest is scripts.offer")) << unknown.errors;
  EXPECT_EQ(run_kavo({"settings", "overwrite=on"}).code, 2) << "it belongs to one run";
}

class HighlightSettings : public testing::Test {
 protected:
  ~HighlightSettings() override {
    run_kavo({"settings", "highlight.untranslated=default", "highlight.fuzzy=default", "highlight.match=default",
              "highlight.translated=default"});
  }
  TempFolder folder;
};

TEST_F(HighlightSettings, AreNamesOrNumbersAndHaveSensibleDefaults) {
  EXPECT_EQ(
      run_kavo({"settings", "highlight.untranslated", "highlight.fuzzy", "highlight.match", "highlight.translated"})
          .output,
      "highlight.untranslated=#C00000\nhighlight.fuzzy=#C06000\nhighlight.match=#0000C0\n"
      "highlight.translated=#007000\n");
  EXPECT_EQ(run_kavo({"settings", "highlight.fuzzy=ORANGE", "highlight.match=#12abEF"}).output,
            "highlight.fuzzy=orange\nhighlight.match=#12ABEF\n");
  EXPECT_EQ(run_kavo({"settings", "highlight.fuzzy=default"}).output, "highlight.fuzzy=#C06000\n");
  for (const char* wrong : {"highlight.fuzzy=#12", "highlight.fuzzy=reddish", "highlight.fuzzy=#GGGGGG"})
    EXPECT_EQ(run_kavo({"settings", wrong}).code, 1) << wrong;
}

TEST_F(HighlightSettings, ColourTheRebuiltDocument) {
  folder.write(u"page.htm", "<html><body><p>Hello</p></body></html>");
  ASSERT_EQ(run_kavo({"prepare", "page.htm", "--source", "EN-US", "--target", "FR"}, &folder).code, 0);
  const auto rebuilt = [&] {
    EXPECT_EQ(run_kavo({"rebuild", "--overwrite", "--highlight", "page_htm_htm_FR.tud"}, &folder).code, 0);
    return folder.read(u"page_FR.htm");
  };
  EXPECT_TRUE(holds(rebuilt(), "C00000")) << rebuilt();
  ASSERT_EQ(run_kavo({"settings", "highlight.untranslated=#12ABEF"}).code, 0);
  EXPECT_TRUE(holds(rebuilt(), "12ABEF")) << rebuilt();
}

}  // namespace
}  // namespace kavo::test
