// Pages and script files that do not match: what HTML2ASP reports, and that it writes nothing if it must refuse gaps.
#include <gtest/gtest.h>

#include "asp2html_run.h"
#include "platform/unicode.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

struct GapCase {
  const char* name;
  std::string_view html;
  std::string_view script;
  std::string_view warnings;  // one a line; {html} and {script} stand for the names
  bool loses_script = true;
};

std::ostream& operator<<(std::ostream& out, const GapCase& c) { return out << c.name; }

constexpr std::string_view kHtml = "a<!-- ASP2HTML 1 -->b\r\n<!-- ASP2HTML 2 -->c<!-- ASP2HTML 3 -->\r\n";
constexpr std::string_view kScript =
    "\r\n<!-- ASP2HTML 1 -->\r\n<%=one%>\r\n<!-- ASP2HTML 2 -->\r\n<% two\r\nlines %>\r\n"
    "<!-- ASP2HTML 3 -->\r\n<%=three%>\r\n";

constexpr GapCase kCases[] = {
    {"AllFits", kHtml, kScript, "", false},
    {"NoScriptAtAll", "<p>a</p>\r\n", "\r\n", "", false},
    {"NoScriptAtAllAndTheBlankOfPreparation", "<p>a</p>\r\n", " \r\n", "", false},
    {"OtherOrder", "<!-- ASP2HTML 3 --><!-- ASP2HTML 1 --><!-- ASP2HTML 2 -->", kScript, "", false},
    {"EmptyScriptFile", kHtml, "",
     "{html}, line 1, has the placeholder <!-- ASP2HTML 1 --> and 2 more, for which {script} has no script\n"},
    {"OnePlaceholderTooMany", "<!-- ASP2HTML 1 --><!-- ASP2HTML 2 -->\n<p>x<!-- ASP2HTML 9 --><!-- ASP2HTML 3 -->",
     kScript, "{html}, line 2, has the placeholder <!-- ASP2HTML 9 -->, for which {script} has no script\n"},
    {"PageCutShort", "a<!-- ASP2HTML 1 -->b\r\n", kScript,
     "{script}, line 4, has the script of <!-- ASP2HTML 2 --> and 1 more, for which {html} has no placeholder\n"},
    {"PageCutShortInAPlaceholder", "a<!-- ASP2HTML 1 -->b\r\n<!-- ASP2HTML 2 -->c<!-- ASP2HTML 3", kScript,
     "{script}, line 7, has the script of <!-- ASP2HTML 3 -->, for which {html} has no placeholder\n"},
    {"EmptyPage", "", kScript,
     "{script}, line 2, has the script of <!-- ASP2HTML 1 --> and 2 more, for which {html} has no placeholder\n"},
    {"DroppedPlaceholderOfOtherOrder", "<!-- ASP2HTML 3 --><!-- ASP2HTML 1 -->", kScript,
     "{script}, line 4, has the script of <!-- ASP2HTML 2 -->, for which {html} has no placeholder\n"},
    {"DamagedPlaceholder", "<!-- ASP2HTML 1 --><!--ASP2HTML 2--><!-- ASP2HTML 3-->", kScript,
     "{html}, line 1, has the placeholder <!-- ASP2HTML 3-->, for which {script} has no script\n"
     "{script}, line 4, has the script of <!-- ASP2HTML 2 --> and 1 more, for which {html} has no placeholder\n"},
    {"DamagedLineOfTheScriptFile", "<!-- ASP2HTML 1 --><!-- ASP2HTML 2 -->",
     "\r\n<!-- ASP2HTML 1 -->\r\n<%=one%>\r\n<!-- ASP2HTML 2 --\r\n<%=two%>\r\n",
     "{html}, line 1, has the placeholder <!-- ASP2HTML 2 -->, for which {script} has no script\n"
     "{script}, line 4, has the script of <!-- ASP2HTML 2 --, for which {html} has no placeholder\n"},
    {"DoubledPlaceholder", "<!-- ASP2HTML 1 --><!-- ASP2HTML 1 --><!-- ASP2HTML 2 --><!-- ASP2HTML 3 -->", kScript,
     "Placeholders that occur more than once: 1; their script is written at each place\n", false},
    {"DoubledInThePlaceOfAnother", "<!-- ASP2HTML 1 --><!-- ASP2HTML 1 --><!-- ASP2HTML 3 -->", kScript,
     "{script}, line 4, has the script of <!-- ASP2HTML 2 -->, for which {html} has no placeholder\n"
     "Placeholders that occur more than once: 1; their script is written at each place\n"},
    {"ScriptFileCutShortInABlock", "<!-- ASP2HTML 1 --><!-- ASP2HTML 2 -->",
     "\r\n<!-- ASP2HTML 1 -->\r\n<%=one%>\r\n<!-- ASP2HTML 2 -->\r\n<% tw",
     "{script} ends inside its last script: it is cut short\n"},
    {"ScriptFileCutShortBehindAPlaceholder", "<!-- ASP2HTML 1 --><!-- ASP2HTML 2 -->",
     "\r\n<!-- ASP2HTML 1 -->\r\n<%=one%>\r\n<!-- ASP2HTML 2 -->\r\n",
     "{script} ends inside its last script: it is cut short\n"},
    {"ScriptFileCutShortOfAnotherOrder", "<!-- ASP2HTML 2 --><!-- ASP2HTML 1 -->",
     "\r\n<!-- ASP2HTML 1 -->\r\n<%=one%>\r\n<!-- ASP2HTML 2 -->",
     "{script} ends inside its last script: it is cut short\n"},
    {"LastLineEndDroppedByAnEditor", "<!-- ASP2HTML 1 -->", "\r\n<!-- ASP2HTML 1 -->\r\n<%=one%>", "", false},
    {"ScriptThatThePageNeverEnds", "a<!-- ASP2HTML 1 -->", "\r\n<!-- ASP2HTML 1 -->\r\n<% one\r\n", "", false},
    {"EmptyScriptInTheMiddleAndAtTheEnd", "<!-- ASP2HTML 1 --><!-- ASP2HTML 2 -->",
     "\r\n<!-- ASP2HTML 1 -->\r\n\r\n<!-- ASP2HTML 2 -->\r\n\r\n", "", false},
};

class GapsTest : public testing::TestWithParam<GapCase> {};

std::string with_names(std::string text) {
  const auto replace = [&](std::string_view name, std::u16string_view path) {
    for (std::size_t at = 0; (at = text.find(name)) != std::string::npos;)
      text.replace(at, name.size(), path_to_host(path));
  };
  replace("{html}", u"C:\\WORK\\page_asp.htm");
  replace("{script}", u"C:\\WORK\\page_asp.scr");
  return text;
}

std::string lines_of(const MessageList& messages, std::size_t first) {
  std::string lines;
  for (std::size_t i = first; i < messages.size(); ++i) lines += to_utf8(messages[i].text) + "\n";
  return lines;
}

TEST_P(GapsTest, AreReportedForEveryCutAndRefusedWhenAsked) {
  const GapCase& c = GetParam();
  constexpr std::string_view kOld = "the page as it was";
  const std::string reported = same_for_every_block_size(c.html.size() + c.script.size(), [&](std::size_t size) {
    MemoryRun run;
    const BlockSizeScope blocks(size);
    run.files.put(u"C:\\WORK\\page_asp.htm", c.html);
    run.files.put(u"C:\\WORK\\page_asp.scr", c.script);
    run.files.put(u"C:\\WORK\\page.asp", kOld);
    const auto names = run.files.all_files();
    clsASP2HTML converter;
    converter.HTMFile(u"C:\\WORK\\page_asp.htm");
    converter.refuse_gaps(true);
    const bool refused = converter.HTML2ASP() != 0;
    EXPECT_EQ(refused, c.loses_script);
    EXPECT_EQ(run.files.get(u"C:\\WORK\\page.asp") == kOld, c.loses_script);
    EXPECT_EQ(run.files.all_files(), names);
    EXPECT_EQ(lines_of(converter.ErrorList(), 1), c.loses_script ? lines_of(converter.warnings(), 0) : "");

    converter.refuse_gaps(false);
    EXPECT_EQ(converter.HTML2ASP(), 0);
    EXPECT_NE(run.files.get(u"C:\\WORK\\page.asp"), kOld);
    EXPECT_EQ(converter.ErrorList().size(), 1u);
    return lines_of(converter.warnings(), 0);
  });
  EXPECT_EQ(reported, with_names(std::string(c.warnings)));
}

INSTANTIATE_TEST_SUITE_P(Cases, GapsTest, testing::ValuesIn(kCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(GapsOfARunTest, AreForgottenByTheNext) {
  MemoryRun run;
  run.files.put(u"C:\\WORK\\a_asp.htm", "<!-- ASP2HTML 1 -->");
  run.files.put(u"C:\\WORK\\a_asp.scr", "");
  clsASP2HTML converter;
  converter.HTMFile(u"C:\\WORK\\a_asp.htm");
  EXPECT_EQ(converter.HTML2ASP(), 0);
  EXPECT_EQ(converter.warnings().size(), 1u);
  run.files.remove_file(u"C:\\WORK\\a_asp.scr");
  EXPECT_EQ(converter.HTML2ASP(), 1);
  EXPECT_EQ(converter.warnings().size(), 0u);
}

}  // namespace
}  // namespace kavo::test
