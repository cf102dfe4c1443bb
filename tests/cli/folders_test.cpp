// The command on folders: a tree of sources becomes a tree of bilingual documents, and that one tree for each language.
#include <gtest/gtest.h>

#include <map>

#include "cli/site_test.h"

namespace kavo::test {
namespace {

class Folders : public SiteTest {
 protected:
  static std::string page(const std::string& text) {
    return "<html><body><p>" + text + "</p><% MsgBox \"Hello there\" %></body></html>\r\n";
  }
  static std::string manual(const std::string& text) {
    return "<MIFFile 7.00>\r\n<VariableFormats \r\n <VariableFormat \r\n  <VariableName `Product'>\r\n"
           "  <VariableDef `" +
           text +
           "'>\r\n >\r\n>\r\n<TextFlow \r\n <Para \r\n  <ParaLine \r\n   <String `Text'>\r\n"
           "  >\r\n >\r\n>\r\n";
  }
  void put_site() const {
    put("site/index.asp", page("Welcome"));
    put("site/shop/index.asp", page("The shop"));
    put("site/shop/notes.txt", "One\nTwo\n");
    put("site/shop/logo.gif", "GIF89a");
    put("site/books/ch1.mif", manual("Apple"));
    put("site/books/ch2.mif", manual("Pear"));
  }
};

TEST_F(Folders, ATreeIsPreparedOnCopiesAndRebuiltUnderTheNamesOfItsSources) {
  put_site();
  const auto source = tree("site");
  const Ran prepared = prepare();
  EXPECT_EQ(prepared.code, 0) << prepared.errors;
  EXPECT_TRUE(holds(prepared.output, "5 documents prepared, 0 up to date")) << prepared.output;
  EXPECT_EQ(tree("site"), source) << "the source tree stays as it is";
  for (const char* const tud :
       {"index_asp_htm_FR.tud", "index_asp_scr_DE.tud", "shop/index_asp_htm_DE.tud", "shop/notes_txt_FR.tud",
        "books/ch1_mif_FR.tud", "books/ch2_mif_DE.tud", "books/KAVO_va_mif_FR.tud", "books/KAVO_va_mif_DE.tud"})
    EXPECT_TRUE(has(std::string("work/") + tud)) << tud;
  EXPECT_FALSE(has("work/shop/logo.gif"));

  const Ran rebuilt = kavo({"rebuild", "work", "-r", "--output-dir", "site-{lang}"});
  EXPECT_EQ(rebuilt.code, 0) << rebuilt.errors;
  for (const char* const language : {"FR", "DE"})
    for (const char* const name : {"index.asp", "shop/index.asp", "shop/notes.txt", "books/ch1.mif", "books/ch2.mif"})
      EXPECT_EQ(get("site-" + std::string(language) + "/" + name), source.at(name)) << language << ' ' << name;
  EXPECT_EQ(tree("site"), source);
}

// Pages and parts of pages that hosts do not know (docs/command.md).
TEST_F(Folders, PagesOfOtherNamesAreSourcesToo) {
  put("site/index.php", "<p>Welcome</p><?php echo \"Hello there\" ?>\n");
  put("site/header.inc", "<p>The shop</p><% x = 1 %>\n");
  put("site/logo.gif", "GIF89a");
  EXPECT_TRUE(holds(prepare({}, "FR").output, "2 documents prepared, 0 up to date"));
  EXPECT_TRUE(has("work/index_php_htm_FR.tud"));
  EXPECT_TRUE(has("work/header_inc_htm_FR.tud"));
  EXPECT_TRUE(holds(prepare({}, "FR").output, "0 documents prepared, 2 up to date"));
  const Ran rebuilt = kavo({"rebuild", "work", "--output-dir", "out", "--copy-rest", "site"});
  EXPECT_EQ(rebuilt.code, 0) << rebuilt.errors;
  for (const char* const name : {"index.php", "header.inc", "logo.gif"})
    EXPECT_EQ(get("out/" + std::string(name)), get("site/" + std::string(name))) << name;

  // Files that their preparation leaves beside them are not sources.
  ASSERT_EQ(kavo({"prepare", "site", "--source", "EN", "--target", "FR"}).code, 0);
  const Ran again = kavo({"prepare", "site", "--source", "EN", "--target", "FR", "--json"});
  EXPECT_FALSE(holds(again.output, "_htm.htm")) << again.output;
  EXPECT_FALSE(has("site/index_php_htm_htm_FR.tud"));
}

TEST_F(Folders, ARepeatedRunDoesOnlyWhatIsMissingOrChanged) {
  put_site();
  ASSERT_EQ(prepare().code, 0);
  const auto before = tree("work");
  const Ran again = prepare();
  EXPECT_EQ(again.output, "0 documents prepared, 5 up to date\n");
  EXPECT_EQ(again.code, 0) << again.errors;
  EXPECT_EQ(tree("work"), before);

  put("site/shop/notes.txt", "One\nThree\n");
  fs::remove(path("work/index_asp_scr_DE.tud"));
  const Ran third = prepare();
  EXPECT_EQ(third.code, 0) << third.errors;
  EXPECT_TRUE(holds(third.output, "2 documents prepared, 3 up to date")) << third.output;
  EXPECT_TRUE(holds(get("work/shop/notes_txt_FR.tud"), "Three"));
  EXPECT_TRUE(has("work/index_asp_scr_DE.tud"));

  // One manual of a book brings the whole book.
  put("site/books/ch2.mif", manual("Cherry"));
  const Ran book = prepare();
  EXPECT_EQ(book.code, 0) << book.errors;
  EXPECT_TRUE(holds(book.output, "2 documents prepared, 3 up to date")) << book.output;
  EXPECT_TRUE(holds(get("work/books/KAVO_va_mif_FR.tud"), "Cherry"));
}

// The state that a run leaves when it is killed while its files take their names: new files in its own folder, and a
// journal of them.
class StoppedRun : public Folders {
 protected:
  // Puts the old files back into a folder, "" for none.
  void take_back(const std::string& where, const std::map<std::string, std::string>& old_files) const {
    std::string journal("KAVO run 1\0placing\0", 19);
    const auto add = [&](const std::string& field) { journal += field + '\0'; };
    for (const auto& [name, old] : old_files) {
      const std::string scratch = where + "/.kavo-run/1/" + name;
      put(scratch, get(where + "/" + name));
      if (old.empty())
        fs::remove(path(where + "/" + name));
      else
        put(where + "/" + name, old);
      add("change");
      add(path(where + "/" + name).make_preferred().string());
      add(path(scratch).make_preferred().string());
      add("");
    }
    add("end");
    put(where + "/.kavo-run/journal", journal);
  }
};

TEST_F(StoppedRun, IsCompletedBeforeItsDocumentsCountAsUpToDate) {
  put("site/index.asp", page("Welcome"));
  ASSERT_EQ(prepare().code, 0);
  const std::string old = get("work/index_asp_scr_FR.tud");
  put("site/index.asp", page("Welcome to <%= city %> all"));
  ASSERT_EQ(prepare().code, 0);
  const auto whole = tree("work");
  take_back("work", {{"index_asp_scr_FR.tud", old}});
  const Ran next = prepare();
  EXPECT_EQ(next.code, 0) << next.errors;
  EXPECT_TRUE(holds(next.output, "0 documents prepared, 1 up to date")) << next.output;
  EXPECT_TRUE(holds(next.errors, "was stopped before its end")) << next.errors;
  EXPECT_EQ(tree("work"), whole);
}

TEST_F(StoppedRun, IsCompletedBeforeAFolderIsListed) {
  put("site/index.asp", page("Welcome"));
  const std::vector<std::string> in_place{"prepare", "site", "--source", "EN-US", "--target", "FR"};
  ASSERT_EQ(kavo(in_place).code, 0);
  const auto whole = tree("site");
  const std::map<std::string, std::string> all{{"index_asp.scr", ""},
                                               {"index_asp_htm_FR.tud", ""},
                                               {"index_asp_htm_FR.tud.skl", ""},
                                               {"index_asp_scr_FR.tud", ""},
                                               {"index_asp_scr_FR.tud.skl", ""}};
  // Without its script file the protected page looks like a page of the author's.
  take_back("site", all);
  Ran next = kavo(in_place);
  EXPECT_EQ(next.code, 0) << next.errors;
  EXPECT_TRUE(holds(next.output, "0 documents prepared, 1 up to date")) << next.output;
  EXPECT_EQ(tree("site"), whole);
  // And without the bilingual documents there would be nothing to rebuild.
  take_back("site", all);
  next = kavo({"rebuild", "site", "--output-dir", "out"});
  EXPECT_EQ(next.code, 0) << next.errors;
  EXPECT_TRUE(holds(next.errors, "was stopped before its end")) << next.errors;
  EXPECT_TRUE(has("out/index.asp"));
  EXPECT_EQ(tree("site"), whole);
}

TEST_F(Folders, AnotherLanguageLeavesThoseThatAreThere) {
  put_site();
  ASSERT_EQ(prepare({}, "FR").code, 0);
  ASSERT_EQ(kavo({"pseudo", "work", "-r"}).code, 0);
  const std::string french = get("work/shop/index_asp_htm_FR.tud");
  const Ran more = prepare({}, "JA");
  EXPECT_EQ(more.code, 0) << more.errors;
  EXPECT_TRUE(has("work/shop/index_asp_htm_JA.tud"));
  EXPECT_EQ(get("work/shop/index_asp_htm_FR.tud"), french);
}

TEST_F(Folders, PatternsSayWhichFilesAreMeant) {
  put_site();
  put("site/.hidden/a.txt", "One\n");
  put("site/old/a.txt", "One\n");
  const Ran ran =
      prepare({"--include", "*.txt", "--include", "index.asp", "--exclude", "shop/*.asp", "--exclude", "old"});
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_TRUE(holds(ran.output, "2 documents prepared")) << ran.output;
  EXPECT_TRUE(has("work/index_asp_htm_FR.tud"));
  EXPECT_TRUE(has("work/shop/notes_txt_FR.tud"));
  EXPECT_FALSE(has("work/shop/index_asp_htm_FR.tud"));
  const Ran none = prepare({"--include", "*.jsp"});
  EXPECT_EQ(none.code, 1);
  EXPECT_TRUE(holds(none.errors, "there is nothing to work on")) << none.errors;
}

TEST_F(Folders, FilesMadeByPreparingAndRebuildingAreNotSources) {
  put_site();
  const auto prepare_in_place = [&] { return kavo({"prepare", "site", "-r", "--source", "EN-US", "--target", "FR"}); };
  const Ran first = prepare_in_place();
  EXPECT_EQ(first.code, 0) << first.errors;
  ASSERT_EQ(kavo({"rebuild", "site", "-r"}).code, 0);
  ASSERT_TRUE(has("site/shop/index_FR.asp"));
  const Ran second = prepare_in_place();
  EXPECT_EQ(second.code, 0) << second.errors;
  EXPECT_EQ(second.output, "0 documents prepared, 5 up to date\n");
}

TEST_F(Folders, NamesThatWouldMeetAreRefusedBeforeAnythingIsWritten) {
  const struct {
    const char* name;
    const char* first;
    const char* second;
  } cases[] = {
      {"a page that has the name of a protected one", "index.asp", "index_asp.htm"},
      {"letter case", "index.asp", "Index.asp"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    fs::remove_all(path("site"));
    put(std::string("site/") + c.first, page("One"));
    put(std::string("site/") + c.second, page("Two"));
    if (tree("site").size() < 2) continue;  // the two names are one file here
    const Ran ran = prepare();
    EXPECT_EQ(ran.code, 1);
    EXPECT_TRUE(holds(ran.errors, c.first) && holds(ran.errors, c.second)) << ran.errors;
    EXPECT_TRUE(holds(ran.errors, "would both need the name")) << ran.errors;
    EXPECT_FALSE(has("work"));
  }
}

TEST_F(Folders, AFileThatTheCommandDidNotMakeIsNotReplaced) {
  put("site/a.txt", "One\n");
  put("work/a.txt", "my own\n");
  const Ran ran = prepare();
  EXPECT_EQ(ran.code, 1);
  EXPECT_TRUE(holds(ran.errors, "was not made by this command")) << ran.errors;
  EXPECT_EQ(get("work/a.txt"), "my own\n");
  EXPECT_EQ(prepare({"--overwrite"}).code, 0);
  EXPECT_EQ(get("work/a.txt"), "One\n");
}

TEST_F(Folders, LanguagesThatWouldShareAFileAreRefused) {
  put("site/a.txt", "One\n");
  ASSERT_EQ(prepare().code, 0);
  const Ran ran = kavo({"rebuild", "work", "--output-dir", "out"});
  EXPECT_EQ(ran.code, 1);
  EXPECT_TRUE(holds(ran.errors, "put {lang} into --output-dir")) << ran.errors;
  EXPECT_FALSE(has("out"));
  EXPECT_EQ(kavo({"rebuild", "work", "--output-dir", "out", "--target", "DE"}).code, 0);
  EXPECT_EQ(get("out/a.txt"), "One\n");
}

TEST_F(Folders, TheOtherVerbsTakeFoldersToo) {
  put_site();
  ASSERT_EQ(prepare().code, 0);
  const Ran stats = kavo({"stats", "work", "-r", "--include", "*_FR.tud"});
  EXPECT_EQ(stats.code, 0) << stats.errors;
  EXPECT_TRUE(holds(stats.output, "  total")) << stats.output;
  EXPECT_EQ(kavo({"pseudo", "work", "-r", "--include", "*_FR.tud"}).code, 0);
  EXPECT_EQ(kavo({"export", "work", "-r", "--include", "*_FR.tud"}).code, 0);
  EXPECT_TRUE(has("work/shop/index_asp_htm_FR.xlf"));
  EXPECT_FALSE(has("work/shop/index_asp_htm_DE.xlf"));
  const Ran verified = kavo({"verify", "site", "-r"});
  EXPECT_EQ(verified.code, 0) << verified.errors;
  EXPECT_TRUE(holds(verified.output, "5 of 5 files survive")) << verified.output;
}

}  // namespace
}  // namespace kavo::test
