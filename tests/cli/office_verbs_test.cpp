// kavo rtf, word, powerpoint and excel as their users see them.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

constexpr std::string_view kLetter = "{\\rtf1 a{\\pict\\bin3 }\x81}b}\r\n{\\object c}d}";
constexpr std::string_view kMarked = "{\\rtf1 a{\\v\\mor OBJ 1 }\r\n{\\v\\mor OBJ 2 }d}";

class OfficeVerbs : public testing::Test {
 protected:
  std::string put(std::u16string_view name, std::string_view bytes) { return path_to_host(folder.write(name, bytes)); }
  std::string path(std::u16string_view name) { return path_to_host(folder.path(name)); }
  TempFolder folder;
};

TEST_F(OfficeVerbs, RtfExtractAndInsertGiveTheDocumentBack) {
  Ran ran = run_kavo({"rtf", "extract", put(u"letter.rtf", kLetter)});
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_TRUE(ran.output.starts_with(path(u"letter.rtf") + "\t2\t")) << ran.output;
  EXPECT_NE(ran.output.find(path(u"letter.obj") + "\t0\t"), std::string::npos) << ran.output;
  EXPECT_EQ(folder.read(u"letter.rtf"), kMarked);
  ran = run_kavo({"rtf", "insert", path(u"letter.rtf")});
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_EQ(folder.read(u"letter.rtf"), kLetter);
  EXPECT_EQ(folder.entry_count(), 2u);
}

TEST_F(OfficeVerbs, RtfJsonCountsTheMovedObjects) {
  const Ran ran = run_kavo({"rtf", "extract", "--json", put(u"letter.rtf", kLetter), path(u"missing.rtf")});
  EXPECT_EQ(ran.code, 1);
  const std::size_t end = ran.output.find('\n');
  const auto first = nlohmann::json::parse(ran.output.substr(0, end));
  const auto second = nlohmann::json::parse(ran.output.substr(end + 1));
  EXPECT_EQ(first["verb"], "rtf extract");
  EXPECT_EQ(first["objects"], 2);
  EXPECT_EQ(first["produced"].size(), 2u);
  EXPECT_EQ(second["result"], 1);
  EXPECT_EQ(second["messages"].size(), 1u);
}

TEST_F(OfficeVerbs, RtfObjectFileCanBeChosenForOneDocument) {
  put(u"letter.rtf", kLetter);
  EXPECT_EQ(run_kavo({"rtf", "extract", path(u"letter.rtf"), "--objects", path(u"pictures.bin")}).code, 0);
  EXPECT_FALSE(folder.exists(u"letter.obj"));
  EXPECT_EQ(run_kavo({"rtf", "insert", path(u"letter.rtf"), "--objects", path(u"pictures.bin")}).code, 0);
  EXPECT_EQ(folder.read(u"letter.rtf"), kLetter);
  EXPECT_EQ(run_kavo({"rtf", "extract", "--objects", path(u"x"), path(u"letter.rtf"), path(u"b.rtf")}).code, 2);
}

TEST_F(OfficeVerbs, RtfInsertWithoutItsObjectsFailsAndKeepsTheMarkers) {
  const Ran ran = run_kavo({"rtf", "insert", put(u"letter.rtf", kMarked)});
  EXPECT_EQ(ran.code, 1);
  EXPECT_TRUE(ran.errors.starts_with(path(u"letter.rtf") + ": The object file cannot be opened: ")) << ran.errors;
  EXPECT_EQ(folder.read(u"letter.rtf"), kMarked);
}

TEST_F(OfficeVerbs, RtfSecondExtractionIsRefused) {
  put(u"letter.rtf", kMarked);
  put(u"letter.obj", "objects");
  const Ran ran = run_kavo({"rtf", "extract", path(u"letter.rtf")});
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.errors.find("already holds object markers"), std::string::npos) << ran.errors;
  EXPECT_EQ(folder.read(u"letter.obj"), "objects");
}

TEST_F(OfficeVerbs, RtfExtractionKeepsAFileThatHoldsSomethingElse) {
  put(u"letter.rtf", kLetter);
  put(u"keep.txt", "my notes");
  Ran ran = run_kavo({"rtf", "extract", path(u"letter.rtf"), "--objects", path(u"keep.txt")});
  EXPECT_EQ(ran.code, 1);
  EXPECT_EQ(ran.errors.find(path(u"letter.rtf") + ": The object file " + path(u"keep.txt") + " is not replaced. "), 0u)
      << ran.errors;
  EXPECT_EQ(folder.read(u"letter.rtf"), kLetter);
  EXPECT_EQ(folder.read(u"keep.txt"), "my notes");
  EXPECT_EQ(folder.entry_count(), 2u);
  ran = run_kavo({"rtf", "extract", path(u"letter.rtf"), "--objects", path(u"keep.txt"), "--overwrite"});
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_EQ(folder.read(u"letter.rtf"), kMarked);
  EXPECT_EQ(run_kavo({"rtf", "insert", path(u"letter.rtf"), "--overwrite"}).code, 2);
}

TEST_F(OfficeVerbs, RtfThatIsNotRtfIsAFailureThatMakesNothing) {
  for (const char* verb : {"extract", "insert"}) {
    for (const std::string_view content : {std::string_view(""), kLetter.substr(1), kMarked.substr(1)}) {
      const Ran ran = run_kavo({"rtf", verb, put(u"letter.rtf", content)});
      EXPECT_EQ(ran.code, 1);
      EXPECT_EQ(ran.errors.find(path(u"letter.rtf") + ": This is not an RTF document"), 0u) << ran.errors;
      EXPECT_EQ(ran.output, "");
      EXPECT_EQ(folder.read(u"letter.rtf"), content);
      EXPECT_EQ(folder.entry_count(), 1u);
    }
  }
}

TEST_F(OfficeVerbs, RtfAfterAByteOrderMarkOrWhiteSpaceIsExtracted) {
  for (const std::string start : {"\xEF\xBB\xBF", "\r\n ", "\xEF\xBB\xBF\n"}) {
    Ran ran = run_kavo({"rtf", "extract", put(u"letter.rtf", start + std::string(kLetter))});
    EXPECT_EQ(ran.code, 0) << ran.errors;
    EXPECT_EQ(folder.read(u"letter.rtf"), start + std::string(kMarked));
    ran = run_kavo({"rtf", "insert", path(u"letter.rtf")});
    EXPECT_EQ(ran.code, 0) << ran.errors;
    EXPECT_EQ(folder.read(u"letter.rtf"), start + std::string(kLetter));
  }
}

struct Conversion {
  const char* group;
  const char* verb;
  const char16_t* source;
  const char16_t* target;
};
constexpr Conversion kConversions[] = {{"word", "to-rtf", u"report.doc", u"report_doc.rtf"},
                                       {"word", "to-doc", u"report_doc.rtf", u"report.doc"},
                                       {"powerpoint", "to-xml", u"deck.ppt", u"deck_ppt.xml"},
                                       {"excel", "to-xml", u"book.xls", u"book_xls.xml"}};

TEST_F(OfficeVerbs, AResultThatIsThereAlreadyIsReplacedOnlyOnRequest) {
  for (const Conversion& c : kConversions) {
    SCOPED_TRACE(std::string(c.group) + " " + c.verb);
    const std::string source = put(c.source, "source");
    put(c.target, "mine");
    const Ran ran = run_kavo({c.group, c.verb, source});
    EXPECT_EQ(ran.code, 1);
    EXPECT_EQ(ran.errors, source + ": " + path(c.target) + " exists already: --overwrite replaces it\n");
    EXPECT_EQ(folder.read(c.target), "mine");
    EXPECT_EQ(folder.read(c.source), "source");
  }
}

TEST_F(OfficeVerbs, ADocumentIsNotConvertedIntoItself) {
  const std::string source = put(u"report.doc", "source");
  for (const std::string& option : {std::string("--overwrite"), std::string("--json")}) {
    const Ran ran = run_kavo({"word", "to-doc", option, source});
    EXPECT_EQ(ran.code, 1);
    EXPECT_EQ(folder.read(u"report.doc"), "source");
    EXPECT_EQ(folder.entry_count(), 1u);
  }
}

TEST_F(OfficeVerbs, MissingFilesOfTheOfficeVerbsAreReported) {
  const std::vector<std::vector<std::string>> verbs{
      {"word", "to-rtf", path(u"a.doc")},       {"word", "to-doc", path(u"a.rtf")},
      {"powerpoint", "to-xml", path(u"a.ppt")}, {"powerpoint", "to-ppt", path(u"a_ppt.xml")},
      {"excel", "to-xml", path(u"a.xls")},      {"excel", "to-xls", path(u"a_xls.xml")}};
  for (const auto& arguments : verbs) {
    const Ran ran = run_kavo(arguments);
    EXPECT_EQ(ran.code, 1) << testing::PrintToString(arguments);
    EXPECT_EQ(ran.errors.find(arguments[2] + ": File not found"), 0u) << ran.errors;
    EXPECT_EQ(ran.output, "");
  }
}

}  // namespace
}  // namespace kavo::test
