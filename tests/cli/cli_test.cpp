// The command as its users see it: exit codes, standard output, standard error.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <vector>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

constexpr std::string_view kServerPage =
    "<html><body>\r\n<p class=<%=c%>>Hello</p>\r\n<% Dim x\r\nx = 1 %>\r\n</body></html>\r\n";
constexpr std::string_view kBrokenPage = "<p>\r\n<b>A > <i>B</b></i></p>\r\n";
constexpr std::string_view kGoodPage = "<p><b>A</b></p>\r\n";

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    lines.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return lines;
}

std::vector<nlohmann::json> json_lines(const std::string& text) {
  std::vector<nlohmann::json> objects;
  for (const std::string& line : lines_of(text)) objects.push_back(nlohmann::json::parse(line));
  return objects;
}

class Command : public testing::Test {
 protected:
  std::string put(std::u16string_view name, std::string_view bytes) { return path_to_host(folder.write(name, bytes)); }
  std::string path(std::u16string_view name) { return path_to_host(folder.path(name)); }
  TempFolder folder;
};

TEST_F(Command, PreprocessPrintsProducedFilesAndTypes) {
  const Ran ran = run_kavo({"preprocess", put(u"index.asp", kServerPage)});
  EXPECT_EQ(ran.code, 0);
  EXPECT_EQ(ran.output, path(u"index_asp.htm") + "\t3\tHTML page\n" + path(u"index_asp.scr") + "\t7\tplain text\n");
  EXPECT_EQ(ran.errors, "");
  EXPECT_EQ(folder.read(u"index.asp"), kServerPage);
}

TEST_F(Command, PreprocessPassesOtherTypesThrough) {
  const Ran ran = run_kavo({"preprocess", path(u"missing.rc")});
  EXPECT_EQ(ran.code, 0);
  EXPECT_EQ(ran.output, path(u"missing.rc") + "\t6\tresource script\n");
}

TEST_F(Command, MissingPageFailsWithAReasonOnStandardError) {
  const Ran ran = run_kavo({"preprocess", path(u"missing.asp")});
  EXPECT_EQ(ran.code, 1);
  EXPECT_EQ(ran.output, "");
  EXPECT_TRUE(ran.errors.starts_with(path(u"missing.asp") + ": ")) << ran.errors;
  EXPECT_EQ(ran.errors.find("<<"), std::string::npos) << "no button caption: " << ran.errors;
  EXPECT_EQ(ran.errors.find("missing.asp"), ran.errors.rfind("missing.asp")) << "named once: " << ran.errors;
  EXPECT_EQ(lines_of(ran.errors).size(), 1u);
  EXPECT_EQ(folder.entry_count(), 0u);
}

TEST_F(Command, ProtectAndRestoreGiveThePageBack) {
  put(u"shop.php", kServerPage);
  Ran ran = run_kavo({"html", "protect", path(u"shop.php")});
  EXPECT_EQ(ran.code, 0);
  EXPECT_EQ(ran.output, path(u"shop_php.htm") + "\t3\tHTML page\n" + path(u"shop_php.scr") + "\t7\tplain text\n");
  EXPECT_EQ(folder.read(u"shop_php.htm").find("<%"), std::string::npos);
  ran = run_kavo({"html", "restore", path(u"shop_php.htm"), "--output", path(u"back.php")});
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_EQ(ran.output, path(u"back.php") + "\t4\tserver page\n");
  EXPECT_EQ(folder.read(u"back.php"), kServerPage);
}

TEST_F(Command, RestoreNamesThePageAfterTheProtectedOne) {
  put(u"index.asp", kServerPage);
  ASSERT_EQ(run_kavo({"html", "protect", path(u"index.asp")}).code, 0);
  folder.write(u"index.asp", "translated over");
  const Ran ran = run_kavo({"html", "restore", path(u"index_asp.htm")});
  EXPECT_EQ(ran.code, 0);
  EXPECT_EQ(ran.output, path(u"index.asp") + "\t4\tserver page\n");
  EXPECT_EQ(folder.read(u"index.asp"), kServerPage);
}

TEST_F(Command, ValidateRepairsInPlaceAndSaysWhere) {
  const Ran ran = run_kavo({"html", "validate", "--backup", put(u"page.htm", kBrokenPage)});
  EXPECT_EQ(ran.code, 0);
  EXPECT_NE(folder.read(u"page.htm"), kBrokenPage);
  EXPECT_EQ(folder.read(u"page.htm.bak"), kBrokenPage);
  const std::vector<std::string> messages = lines_of(ran.errors);
  ASSERT_GE(messages.size(), 2u);
  EXPECT_TRUE(messages[0].starts_with(path(u"page.htm") + ":2:6: ")) << messages[0];
  EXPECT_EQ(messages[0].find("ine 2"), std::string::npos) << "the place is told once: " << messages[0];
}

TEST_F(Command, ValidateCheckChangesNothingAndExitsWith3WhenItWould) {
  put(u"page.htm", kBrokenPage);
  EXPECT_EQ(run_kavo({"html", "validate", "--check", path(u"page.htm")}).code, 3);
  EXPECT_EQ(folder.read(u"page.htm"), kBrokenPage);
  EXPECT_EQ(run_kavo({"html", "validate", "--check", put(u"good.htm", kGoodPage)}).code, 0);
  EXPECT_EQ(run_kavo({"html", "validate", "--check", path(u"good.htm"), path(u"page.htm")}).code, 3);
  EXPECT_EQ(run_kavo({"html", "validate", "--check", path(u"page.htm"), path(u"missing.htm")}).code, 1);
  EXPECT_EQ(folder.entry_count(), 2u);
}

TEST_F(Command, SeveralFilesAreAllDoneAndFailuresListedAtTheEnd) {
  put(u"a.asp", kServerPage);
  put(u"c.asp", kServerPage);
  const Ran ran = run_kavo({"preprocess", path(u"a.asp"), path(u"missing.asp"), path(u"c.asp")});
  EXPECT_EQ(ran.code, 1);
  EXPECT_EQ(lines_of(ran.output).size(), 4u) << "two files each for a and c";
  EXPECT_TRUE(folder.exists(u"c_asp.htm"));
  const std::vector<std::string> errors = lines_of(ran.errors);
  ASSERT_EQ(errors.size(), 3u);
  EXPECT_EQ(errors[1], "kavo: 1 of 3 files failed:");
  EXPECT_TRUE(errors[2].starts_with("  " + path(u"missing.asp") + ": ")) << errors[2];
}

TEST_F(Command, JsonIsOneObjectALineForEachFile) {
  put(u"page.htm", kBrokenPage);
  const Ran ran = run_kavo({"html", "validate", "--json", path(u"page.htm"), path(u"missing.htm")});
  EXPECT_EQ(ran.code, 1);
  const auto objects = json_lines(ran.output);
  ASSERT_EQ(objects.size(), 2u);
  EXPECT_EQ(objects[0]["verb"], "html validate");
  EXPECT_EQ(objects[0]["file"], path(u"page.htm"));
  EXPECT_EQ(objects[0]["result"], 0);
  EXPECT_EQ(objects[0]["done"], true);
  EXPECT_GE(objects[0]["repair_count"], 1);
  EXPECT_GE(objects[0]["seconds"], 0.0);
  ASSERT_GE(objects[0]["messages"].size(), 2u);
  EXPECT_EQ(objects[0]["messages"][0]["number"], 3011);
  EXPECT_EQ(objects[0]["messages"][0]["line"], 2);
  EXPECT_EQ(objects[0]["messages"][0]["column"], 6);
  EXPECT_EQ(objects[1]["result"], 1);
  EXPECT_EQ(objects[1]["done"], false);
  EXPECT_EQ(objects[1]["produced"].size(), 0u);
  EXPECT_FALSE(objects[1]["messages"].empty());
}

TEST_F(Command, JsonOfPreprocessHoldsProducedFilesWithTypes) {
  put(u"index.jsp", kServerPage);
  const auto objects = json_lines(run_kavo({"preprocess", "--json", path(u"index.jsp"), path(u"a.txt")}).output);
  ASSERT_EQ(objects.size(), 2u);
  ASSERT_EQ(objects[0]["produced"].size(), 2u);
  EXPECT_EQ(objects[0]["produced"][0]["file"], path(u"index_jsp.htm"));
  EXPECT_EQ(objects[0]["produced"][0]["type"], 3);
  EXPECT_EQ(objects[0]["produced"][1]["type"], 7);
  EXPECT_EQ(objects[1]["produced"][0]["type"], 7);
}

TEST_F(Command, QuietKeepsResultsAndFailuresOnly) {
  Ran ran = run_kavo({"html", "validate", "-q", put(u"page.htm", kBrokenPage)});
  EXPECT_EQ(ran.code, 0);
  EXPECT_EQ(ran.errors, "");
  EXPECT_EQ(lines_of(ran.output).size(), 1u);
  ran = run_kavo({"html", "validate", "--quiet", path(u"missing.htm")});
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.errors, "");
}

TEST_F(Command, WrongUsageExitsWith2AndSaysWhy) {
  put(u"page.htm", kGoodPage);
  const std::vector<std::vector<std::string>> cases{
      {},
      {"unknown"},
      {"html"},
      {"preprocess"},
      {"html", "validate", "--unknown", path(u"page.htm")},
      {"html", "validate", "--progress", "sometimes", path(u"page.htm")},
      {"html", "validate", "--code-page", "no such page", path(u"page.htm")},
      {"html", "restore", "--output", path(u"x"), path(u"page.htm"), path(u"page.htm")},
  };
  for (const auto& arguments : cases) {
    const Ran ran = run_kavo(arguments);
    EXPECT_EQ(ran.code, 2) << testing::PrintToString(arguments);
    EXPECT_EQ(ran.output, "");
    EXPECT_NE(ran.errors, "");
  }
  EXPECT_EQ(folder.entry_count(), 1u);
}

TEST_F(Command, HelpOfEveryVerbShowsAnExample) {
  const std::vector<std::vector<std::string>> verbs{
      {"preprocess"}, {"html", "protect"}, {"html", "restore"}, {"html", "validate"}};
  for (std::vector<std::string> arguments : verbs) {
    std::string example = "Example:\n  kavo";
    for (const std::string& word : arguments) example += ' ' + word;
    arguments.push_back("--help");
    const Ran ran = run_kavo(arguments);
    EXPECT_EQ(ran.code, 0);
    EXPECT_NE(ran.output.find(example), std::string::npos) << ran.output;
    EXPECT_NE(ran.output.find("--code-page"), std::string::npos);
    EXPECT_EQ(ran.errors, "");
  }
  const Ran ran = run_kavo({"--help"});
  EXPECT_EQ(ran.code, 0);
  EXPECT_NE(ran.output.find("preprocess"), std::string::npos);
  EXPECT_NE(ran.output.find("html"), std::string::npos);
}

TEST_F(Command, VersionIsPrinted) {
  const Ran ran = run_kavo({"--version"});
  EXPECT_EQ(ran.code, 0);
  EXPECT_TRUE(ran.output.starts_with("kavo 1.")) << ran.output;
}

TEST_F(Command, NamesOfAnyCharactersWork) {
  for (const std::u16string_view name : {u"\u65E5\u672C \u00E9\U0001F600.asp", u"with space & %1.asp", u"-dash.asp"}) {
    folder.write(name, kServerPage);
    std::u16string page(name.substr(0, name.size() - 4));
    const Ran ran = run_kavo({"preprocess", "--", path(name)});
    EXPECT_EQ(ran.code, 0) << ran.errors;
    EXPECT_TRUE(folder.exists(page + u"_asp.htm"));
    EXPECT_TRUE(ran.output.starts_with(path(page + u"_asp.htm") + "\t3")) << ran.output;
  }
}

TEST_F(Command, RelativeNamesStayRelative) {
  put(u"index.asp", kServerPage);
  const Ran ran = run_kavo({"preprocess", "index.asp"}, &folder);
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_EQ(ran.output, "index_asp.htm\t3\tHTML page\nindex_asp.scr\t7\tplain text\n");
}

TEST_F(Command, EveryCodePageIsAccepted) {
  put(u"page.htm", kGoodPage);
  for (const char* name : {"utf-8", "65001", "932", "936", "949", "950", "874", "1250", "1251", "1252", "1253", "1254",
                           "1255", "1256", "1257", "1258"})
    EXPECT_EQ(run_kavo({"html", "validate", "--code-page", name, path(u"page.htm")}).code, 0) << name;
}

TEST_F(Command, DoubleByteTextIsCarriedThrough) {
  // The trail byte of the first character is a backslash, that of the second a letter.
  const std::string page = "<p>\x83\x5C\x83\x41</p>\r\n<% x = \"\x95\x5C\" %>\r\n";
  put(u"index.asp", page);
  ASSERT_EQ(run_kavo({"html", "protect", "--code-page", "932", path(u"index.asp")}).code, 0);
  ASSERT_EQ(run_kavo({"html", "restore", "--code-page", "932", path(u"index_asp.htm"), "-o", path(u"b.asp")}).code, 0);
  EXPECT_EQ(folder.read(u"b.asp"), page);
}

std::string large_page(std::size_t size) {
  std::string text;
  text.reserve(size + kServerPage.size());
  while (text.size() < size) text += kServerPage;
  return text;
}

TEST_F(Command, ProgressBarIsDrawnWhenAskedForAndTheRunIsLong) {
  // Not a terminal here, so "auto" shows none.
  const std::string page = put(u"page.asp", large_page(2 << 20));
  EXPECT_EQ(run_kavo({"html", "protect", page}).errors, "");
  EXPECT_EQ(run_kavo({"html", "protect", "--progress", "none", page}).errors, "");
  const Ran quick = run_kavo({"html", "protect", "--progress", "bar", put(u"small.asp", kServerPage)});
  EXPECT_EQ(quick.errors, "") << "a quick run needs no bar";
}

TEST_F(Command, InterruptionExitsWith130AndLeavesNothingHalfWritten) {
  std::vector<std::string> arguments{"html", "protect"};
  put(u"page.asp", large_page(32 << 20));
  for (int i = 0; i < 40; ++i) arguments.push_back(path(u"page.asp"));
  const auto ran = run_kavo_interrupted(arguments, [] { std::this_thread::sleep_for(std::chrono::milliseconds(250)); });
  if (!ran) GTEST_SKIP() << "no Ctrl+C can be sent to another process here";
  EXPECT_EQ(ran->code, 130);
  EXPECT_EQ(ran->errors, "kavo: interrupted\n");
  // Whole pages of the files done before, nothing temporary.
  const std::size_t pairs = folder.exists(u"page_asp.htm") ? 1 : 0;
  EXPECT_EQ(folder.entry_count(), 1 + 2 * pairs);
}

}  // namespace
}  // namespace kavo::test
