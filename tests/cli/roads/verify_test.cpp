// kavo verify, as its users see it.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/run_kavo.h"
#include "common/cRegistry.h"
#include "platform/files.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

class VerifyCommand : public testing::Test {
 protected:
  std::string put(std::u16string_view name, std::string_view bytes) { return path_to_host(folder.write(name, bytes)); }
  std::string path(std::u16string_view name) { return path_to_host(folder.path(name)); }
  nlohmann::json verify(const std::string& file) {
    const Ran ran = run_kavo({"verify", "--json", file});
    const auto told = nlohmann::json::parse(ran.output);
    EXPECT_EQ(ran.code, told["done"] == true ? 0 : 3);
    return told;
  }
  TempFolder folder;
};

TEST_F(VerifyCommand, ADocumentThatSurvives) {
  const std::string bytes = "One\r\n\r\nTwo\n";
  const std::string file = put(u"a.txt", bytes);
  const Ran ran = run_kavo({"verify", file});
  EXPECT_EQ(ran.code, 0);
  EXPECT_EQ(ran.output, "ok      " + file +
                            "\n        unchanged: came back, byte for byte\n"
                            "        translated: all came back, 2 texts in 1 bilingual document\n");
  EXPECT_EQ(ran.errors, "");
  EXPECT_EQ(folder.read(u"a.txt"), bytes);
  EXPECT_EQ(folder.entry_count(), 1u);
}

TEST_F(VerifyCommand, AServerPageWithItsScripts) {
  const auto told = verify(
      put(u"index.asp", "<html><body><p>Hello <%= name %></p>\r\n<% MsgBox \"Hi\"\r\nDim x %>\r\n</body></html>\r\n"));
  EXPECT_EQ(told["done"], true);
  EXPECT_EQ(told["unchanged"], "same");
  EXPECT_EQ(told["translated"], "same");
  EXPECT_EQ(told["documents"], 2);
  EXPECT_EQ(told["repairs"].size(), 0u);
  EXPECT_EQ(folder.entry_count(), 1u);
}

TEST_F(VerifyCommand, NoSettingOfTheUserChanges) {
  cRegistry map;
  map.SectionKey(u"Software\\MOR\\KAVO");
  map.ValueKey(u"RTFFontMapFile");
  map.SetValue(std::u16string(u"C:\\mine\\KAVO.FMP"));
  EXPECT_EQ(verify(put(u"a.txt", "One\n"))["done"], true);
  EXPECT_EQ(std::get<std::u16string>(map.Value()), u"C:\\mine\\KAVO.FMP");
}

TEST_F(VerifyCommand, TheLanguageOfAPageIsNoDifference) {
  EXPECT_EQ(verify(put(u"a.htm", "<html lang=en-US><p>Hello</p></html>\n"))["unchanged"], "same");
}

TEST_F(VerifyCommand, ARepairedPageShowsEachRepair) {
  const std::string file = put(u"broken.htm", "<html><body>\n<p><b>bold</p>\n</body></html>\n");
  const auto told = verify(file);
  EXPECT_EQ(told["done"], true);
  EXPECT_EQ(told["unchanged"], "repaired");
  ASSERT_GE(told["repairs"].size(), 1u);
  EXPECT_EQ(told["repairs"][0]["line"], 2);
  EXPECT_EQ(told["repair_count"], told["repairs"].size());
  // The same name and shape as where pages are repaired alone.
  const auto validated = nlohmann::json::parse(run_kavo({"html", "validate", "--check", "--json", file}).output);
  EXPECT_EQ(validated["repairs"], told["repairs"]);
  EXPECT_EQ(validated["repair_count"], told["repair_count"]);
  const Ran ran = run_kavo({"verify", file});
  EXPECT_EQ(ran.code, 0);
  EXPECT_NE(ran.output.find("repaired in "), std::string::npos);
  EXPECT_NE(ran.output.find("            2:"), std::string::npos);
  EXPECT_NE(ran.output.find("the repaired page came back, byte for byte"), std::string::npos);
  EXPECT_EQ(run_kavo({"verify", "--strict", file}).code, 3);
}

TEST_F(VerifyCommand, BlanksBesideACodeAtTheEdgeOfATextStayThere) {
  for (const char* text : {"<p><a href=a><b>A</b></a> \n &nbsp; \n<a href=b><b>B</b></a> \n &nbsp; \n</p>\n",
                           "<p>&nbsp;<b>A</b> &nbsp;</p>\n", "<p>A <%=x%> &nbsp; </p>\n", "<p>&nbsp;<%=x%> A</p>\n",
                           "<h3><a name=x>A</h3><pre><a href=b>B</a>\tC (d, <br>\t e)<br>\n</pre>\n"}) {
    const auto told = verify(put(u"a.asp", text));
    EXPECT_EQ(told["translated"], "same") << text << told.dump();
  }
}

TEST_F(VerifyCommand, APageThatEndsInsideAScriptSurvives) {
  const auto told = verify(put(u"a.htm", "<table><tr><td><p>One</p><script>x = 'y';\n"));
  EXPECT_EQ(told["done"], true) << told;
  EXPECT_EQ(told["unchanged"], "same");
}

TEST_F(VerifyCommand, AnEmptyDocumentSurvives) {
  EXPECT_EQ(verify(put(u"a.txt", ""))["texts"], 0);
  EXPECT_EQ(verify(put(u"a.htm", ""))["done"], true);
}

// Lines and columns are those of the author's page, not of files made from it.
TEST_F(VerifyCommand, PlacesAreThoseOfTheDocument) {
  const std::string page =
      "<html><body>\r\n<% a\r\nb %>x <b><i>1</b></i>\r\n"
      "<script>\r\nvar a = 'Two';\r\n</script><p>\x81(Thr > </p></body></html>\r\n";
  const Ran ran = run_kavo({"verify", "--json", "--code-page", "932", put(u"a.asp", page)});
  const auto told = nlohmann::json::parse(ran.output);
  ASSERT_EQ(told["repairs"].size(), 2u) << told;
  EXPECT_EQ(told["repairs"][0]["line"], 3);
  EXPECT_EQ(told["repairs"][0]["column"], 10);  // the <i>
  const auto& stray = told["repairs"][1];
  EXPECT_EQ(stray["line"], 6);
  EXPECT_EQ(stray["column"], 19);
  ASSERT_EQ(told["notes"].size(), 2u) << told;  // the </i>, and the broken character
  EXPECT_EQ(told["notes"][0]["column"], 18);
  EXPECT_EQ(told["notes"][1]["column"], 13);
  // The text with the broken character, after repairs and scripts.
  ASSERT_EQ(told["findings"].size(), 1u) << told;
  EXPECT_EQ(told["findings"][0]["line"], 6);
  EXPECT_EQ(told["findings"][0]["column"], 13);
}

// In a double-byte code page a broken lead byte takes the byte after it with it when that changes.
TEST_F(VerifyCommand, ATextThatDoesNotComeBackIsReported) {
  const std::string file = put(u"a.txt", "One\n\x81(Two\nThree\n");
  const Ran ran = run_kavo({"verify", "--json", "--code-page", "932", file});
  EXPECT_EQ(ran.code, 3);
  const auto told = nlohmann::json::parse(ran.output);
  EXPECT_EQ(told["unchanged"], "same");
  EXPECT_EQ(told["translated"], "different");
  ASSERT_EQ(told["findings"].size(), 1u);
  const auto& finding = told["findings"][0];
  EXPECT_EQ(finding["line"], 2);
  EXPECT_EQ(finding["column"], 1);
  EXPECT_EQ(finding["file"], file);
  EXPECT_NE(finding["expected"], "");
  const Ran text = run_kavo({"verify", "--code-page", "932", file});
  EXPECT_TRUE(text.output.starts_with("FAILED  " + file + "\n")) << text.output;
  EXPECT_NE(text.output.find(" of 3 texts in 1 bilingual document"), std::string::npos) << text.output;
  EXPECT_NE(text.output.find("            2:1  "), std::string::npos) << text.output;
}

TEST_F(VerifyCommand, FilesThatCannotTakeTheRoadFail) {
  for (const std::string& file :
       {path(u"missing.txt"), put(u"a.xyz", "x"), put(u"utf16.htm", std::string_view("\xFF\xFE<\0p\0>", 7))}) {
    const Ran ran = run_kavo({"verify", file});
    EXPECT_EQ(ran.code, 1) << file;
    EXPECT_EQ(ran.output, "") << file;
    EXPECT_TRUE(ran.errors.starts_with(file + ": ")) << ran.errors;
    // Not the name of the copy.
    EXPECT_EQ(ran.errors.find("plain"), std::string::npos) << ran.errors;
  }
}

TEST_F(VerifyCommand, MifDocumentsOfSeveralVersionsAreCheckedTogether) {
  const auto document = [](const std::string& version, const std::string& word) {
    return "<MIFFile " + version + ">\n<XRefFormats <XRefFormat <XRefName `Page'> <XRefDef `" + word +
           " <$pagenum\\>'>>>\n<Marker <MTypeName `Index'> <MText `" + word + "'>>\n<Para <ParaLine <String `" + word +
           "'>>>\n";
  };
  const std::string old_word = "na\\x95 ve", new_word = "na\xC3\xAFve";
  const std::string a = put(u"a.mif", document("4.00", old_word)), b = put(u"b.mif", document("10.0", new_word)),
                    c = put(u"c.mif", document("7.00", old_word));
  const Ran ran = run_kavo({"verify", a, b, c});
  EXPECT_EQ(ran.code, 0) << ran.output << ran.errors;
  EXPECT_NE(ran.output.find("3 of 3 files survive, 9 texts"), std::string::npos) << ran.output;
  EXPECT_EQ(folder.entry_count(), 3u);
}

// A common side file cannot distinguish two entries with the same tag. Each document alone has only one of them.
TEST_F(VerifyCommand, AMergeThatGivesADocumentTheTextOfAnotherIsNoticed) {
  const std::string a = put(u"a.mif", "<MIFFile 7.00>\n<XRefFormats <XRefName `P : on'> <XRefDef `page'>>\n");
  const std::string b = put(u"b.mif", "<MIFFile 7.00>\n<XRefFormats <XRefName `P'> <XRefDef `on : page'>>\n");
  EXPECT_EQ(run_kavo({"verify", a}).code, 0);
  EXPECT_EQ(run_kavo({"verify", b}).code, 0);
  const Ran ran = run_kavo({"verify", a, b});
  EXPECT_EQ(ran.code, 3) << ran.errors;
  EXPECT_NE(ran.output.find("FAILED  " + b), std::string::npos) << ran.output;
  EXPECT_NE(ran.output.find("together with the other MIF documents: differs from its translation alone from line 2"),
            std::string::npos)
      << ran.output;
}

TEST_F(VerifyCommand, SeveralFilesAreSummedUp) {
  const Ran ran = run_kavo({"verify", put(u"a.txt", "One\n"), put(u"b.txt", "Two\nThree\n"), path(u"missing.txt")});
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.output.find("2 of 3 files survive, 3 texts\n"), std::string::npos) << ran.output;
}

TEST_F(VerifyCommand, LanguagesCanBeNamed) {
  EXPECT_EQ(
      run_kavo({"verify", "--source", "de", "--target", "ja", put(u"a.htm", "<html lang=de><p>Eins</p></html>")}).code,
      0);
}

}  // namespace
}  // namespace kavo::test
