// kavo prepare when files are in the way.
#include <gtest/gtest.h>

#include <fstream>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

class PrepareGuard : public testing::Test {
 protected:
  std::string put(std::u16string_view name, std::string_view bytes) { return path_to_host(folder.write(name, bytes)); }
  std::string path(std::u16string_view name) { return path_to_host(folder.path(name)); }
  static Ran prepare(std::vector<std::string> files, bool overwrite = false) {
    files.insert(files.begin(), "prepare");
    files.insert(files.end(), {"--source", "EN-US", "--target", "FR"});
    if (overwrite) files.push_back("--overwrite");
    return run_kavo(files);
  }
  // With a variable, which is collected whatever markers the user's settings select.
  static std::string manual(const std::string& text) {
    return "<MIFFile 7.00>\r\n<VariableFormats \r\n <VariableFormat \r\n  <VariableName `Product'>\r\n"
           "  <VariableDef `" +
           text + "'>\r\n >\r\n>\r\n<TextFlow \r\n <Para \r\n  <ParaLine \r\n   <String `Text'>\r\n  >\r\n >\r\n>\r\n";
  }
  TempFolder folder;
};

TEST_F(PrepareGuard, TranslationsAreReplacedOnlyByAFreshStart) {
  const struct {
    const char* name;
    const char16_t* document;
    std::string bytes;
    std::u16string translated;  // the bilingual document that holds a translation
  } cases[] = {
      {"text", u"a.txt", "One\nTwo\n", u"a_txt_FR.tud"},
      {"page", u"p.asp", "<html><body><p>Hello</p><% MsgBox \"Hi\" %></body></html>\r\n", u"p_asp_htm_FR.tud"},
      {"script of a page", u"q.asp", "<html><body><p>Hello</p><% MsgBox \"Hi\" %></body></html>\r\n",
       u"q_asp_scr_FR.tud"},
      {"side file of a manual", u"m.mif", manual("Apple"), u"KAVO_va_mif_FR.tud"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string document = put(c.document, c.bytes);
    ASSERT_EQ(prepare({document}).code, 0);
    EXPECT_EQ(prepare({document}).code, 0) << "without a translation there is nothing to lose";
    ASSERT_EQ(run_kavo({"pseudo", path(c.translated)}).code, 0);
    const std::string translation = folder.read(c.translated);
    for (const bool overwrite : {false, true}) {
      EXPECT_EQ(prepare({document}, overwrite).code, 0);
      EXPECT_EQ(folder.read(c.translated), translation);
    }
    EXPECT_EQ(run_kavo({"prepare", document, "--source", "EN-US", "--target", "FR", "--fresh"}).code, 0);
    EXPECT_NE(folder.read(c.translated), translation);
  }
}

TEST_F(PrepareGuard, AFileThatIsNoBilingualDocumentIsNotReplaced) {
  const std::string document = put(u"a.txt", "One\n");
  put(u"a_txt_FR.tud", "my notes");
  for (const char* const option : {"", "--fresh"}) {
    std::vector<std::string> arguments{"prepare", document, "--source", "EN-US", "--target", "FR"};
    if (*option) arguments.push_back(option);
    const Ran ran = run_kavo(arguments);
    EXPECT_EQ(ran.code, 1);
    EXPECT_NE(ran.errors.find("--overwrite"), std::string::npos) << ran.errors;
    EXPECT_EQ(folder.read(u"a_txt_FR.tud"), "my notes");
  }
  EXPECT_EQ(prepare({document}, true).code, 0);
  EXPECT_NE(folder.read(u"a_txt_FR.tud"), "my notes");
}

TEST_F(PrepareGuard, ABilingualDocumentOfOtherThingsIsNotReplaced) {
  const std::string document = put(u"a.txt", "One\n");
  ASSERT_EQ(prepare({document}).code, 0);
  const std::string own = folder.read(u"a_txt_FR.tud");
  const struct {
    const char* name;
    const char* from;
    const char* to;
    const char* reason;
  } cases[] = {
      {"another document", "original=\"a.txt\"", "original=\"b.txt\"", "another document: b.txt"},
      {"another source language", "source-language=EN-US", "source-language=DE", "translates from DE to FR"},
      {"cut short", "</xliff>", "", "cannot be read"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    std::string changed = own;
    changed.replace(changed.find(c.from), std::string(c.from).size(), c.to);
    put(u"a_txt_FR.tud", changed);
    const Ran ran = prepare({document});
    EXPECT_EQ(ran.code, 1);
    EXPECT_NE(ran.errors.find(c.reason), std::string::npos) << ran.errors;
    const Ran anew = run_kavo({"prepare", document, "--source", "EN-US", "--target", "FR", "--fresh"});
    EXPECT_EQ(anew.code, 1) << "a fresh start gives up translations of this document only";
    EXPECT_NE(anew.errors.find(c.reason), std::string::npos) << anew.errors;
    EXPECT_EQ(folder.read(u"a_txt_FR.tud"), changed);
    const Ran replaced = prepare({document}, true);
    EXPECT_EQ(replaced.code, 0) << replaced.errors;
    EXPECT_EQ(folder.read(u"a_txt_FR.tud"), own);
    EXPECT_EQ(replaced.errors.find("is replaced, because it cannot be read") != std::string::npos,
              std::string_view(c.reason) == "cannot be read")
        << replaced.errors;
  }
}

TEST_F(PrepareGuard, ManualsOfOneCallShareTheirHiddenTexts) {
  const std::string first = put(u"ch1.mif", manual("Apple")), second = put(u"ch2.mif", manual("Pear"));
  const Ran ran = prepare({first, second});
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_EQ(ran.output, path(u"ch1_mif_FR.tud") + "\n" + path(u"KAVO_ix_mif_FR.tud") + "\n" +
                            path(u"KAVO_xr_mif_FR.tud") + "\n" + path(u"KAVO_va_mif_FR.tud") + "\n" +
                            path(u"ch2_mif_FR.tud") + "\n");
  ASSERT_EQ(run_kavo({"pseudo", path(u"KAVO_va_mif_FR.tud")}).code, 0);
  const Ran rebuilt = run_kavo({"rebuild", path(u"ch1_mif_FR.tud"), path(u"ch2_mif_FR.tud")});
  EXPECT_EQ(rebuilt.code, 0) << rebuilt.errors;
  EXPECT_EQ(rebuilt.errors, "");
  EXPECT_EQ(folder.read(u"ch1_FR.mif").find("`Apple'"), std::string::npos);
  EXPECT_EQ(folder.read(u"ch2_FR.mif").find("`Pear'"), std::string::npos);
}

TEST_F(PrepareGuard, AManualKeepsItsHiddenTextsWhenAnotherOneFollows) {
  const std::string first = put(u"ch1.mif", manual("Apple")), second = put(u"ch2.mif", manual("Pear"));
  ASSERT_EQ(prepare({first}).code, 0);
  const std::string variables = folder.read(u"KAVO_va_mif_FR.tud");
  const Ran refused = prepare({second});
  EXPECT_EQ(refused.code, 1);
  EXPECT_NE(refused.errors.find("ch1_mif_FR.tud shares"), std::string::npos) << refused.errors;
  EXPECT_EQ(folder.read(u"KAVO_va_mif_FR.tud"), variables);
  EXPECT_FALSE(folder.exists(u"ch2_mif_FR.tud"));

  EXPECT_EQ(prepare({second}, true).code, 0);
  const Ran rebuilt = run_kavo({"rebuild", path(u"ch1_mif_FR.tud")});
  EXPECT_EQ(rebuilt.code, 1) << "its hidden texts are those of another preparation";
  EXPECT_NE(rebuilt.errors.find("does not come from the same preparation"), std::string::npos) << rebuilt.errors;
  EXPECT_FALSE(folder.exists(u"ch1_FR.mif"));
}

TEST_F(PrepareGuard, DocumentsWhoseNamesDifferInLetterCaseOnlyAreRefused) {
  // Not by the port, to which the two names are one.
  const auto write = [&](std::u16string_view name, std::string_view bytes) {
    std::ofstream(path(name), std::ios::binary) << bytes;
    return path(name);
  };
  const std::string page = "<html><body><p>Hello</p></body></html>\r\n";
  const std::vector<std::string> pages{write(u"Z.asp", page), write(u"z.asp", page)};
  if (ports().files->find(folder.path(u"z.asp")).size() < 2) GTEST_SKIP() << "the two are one file here";
  const Ran ran = prepare(pages);
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.errors.find("differ in letter case only"), std::string::npos) << ran.errors;
  EXPECT_EQ(ran.output, "");
  EXPECT_EQ(run_kavo({"html", "protect", pages[0], pages[1]}).code, 1);
  EXPECT_FALSE(folder.exists(u"Z_asp.htm"));
  const std::vector<std::string> texts{write(u"Y.txt", "One\n"), write(u"y.txt", "Two\n")};
  EXPECT_EQ(prepare(texts).output, "");
}

}  // namespace
}  // namespace kavo::test
