// HTML2ASP on single cases: pages as translation and editors leave them.
#include <gtest/gtest.h>

#include "asp2html_run.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

struct RestoreCase {
  const char* name;
  std::string_view html;
  std::string_view page;
  // Where the documented rules, taken word for word, would lose text; the name says which text stays.
  bool differs_from_twin = false;
};

std::ostream& operator<<(std::ostream& out, const RestoreCase& c) { return out << c.name; }

constexpr std::string_view kScript =
    "\r\n"
    "<!-- ASP2HTML 1 -->\r\n<%=one%>\r\n"
    "<!-- ASP2HTML 2 -->\r\n<% two\r\nlines %>\r\n"
    "<!-- ASP2HTML 3 Q -->\r\n<%=three%>\r\n"
    "<!-- ASP2HTML 4 -->\r\n<!-- a comment --><%=four%>\r\n"
    "<!-- ASP2HTML 5 -->\r\n\r\n"
    "<!-- ASP2HTML 1 -->\r\n<%=another one%>\r\n"
    "<!-- ASP2HTML 12 -->\r\n<%=twelve%>\r\n";

constexpr RestoreCase kCases[] = {
    {"NothingToRestore", "<p>x < y & z\n", "<p>x < y & z\n"},
    {"InOrder", "<!-- ASP2HTML 1 -->a<!-- ASP2HTML 2 -->\nb", "<%=one%>a<% two\r\nlines %>\nb"},
    {"PlaceholdersReorderedByTranslation", "<!-- ASP2HTML 12 --> <!-- ASP2HTML 2 --> <!-- ASP2HTML 4 -->",
     "<%=twelve%> <% two\r\nlines %> <!-- a comment --><%=four%>"},
    {"PlaceholderThatTheScriptFileDoesNotHoldIsRemoved", "a<!-- ASP2HTML 99 -->b<!-- ASP2HTML 2 -->",
     "ab<% two\r\nlines %>"},
    {"NumberIsComparedWhole", "<!-- ASP2HTML 12 -->", "<%=twelve%>"},
    {"PlaceholderUsedTwiceFindsTheNextOfItsNumber", "<!-- ASP2HTML 1 --><!-- ASP2HTML 1 --><!-- ASP2HTML 1 -->",
     "<%=one%><%=another one%><%=one%>"},
    {"WrappedValueLosesItsQuotes", "<a href=\"<!-- ASP2HTML 3 Q -->\">", "<a href=<%=three%>>"},
    {"WrappedAttributeLosesItsName", "<td ASP2HTML=\"<!-- ASP2HTML 3 Q -->\">", "<td <%=three%>>"},
    {"WrappedAttributeAtTheStartOfALine", "ASP2HTML=\"<!-- ASP2HTML 3 Q -->\">", "<%=three%>>"},
    {"WrappedWithOtherQuotesKeepsThem", "<a href='<!-- ASP2HTML 3 Q -->'>", "<a href='<%=three%>'>"},
    {"WrappedAtTheEndOfThePage", "<a href=\"<!-- ASP2HTML 3 Q -->\"", "<a href=<%=three%>"},
    {"WrappedWithoutQuotes", "<!-- ASP2HTML 3 Q -->", "<%=three%>"},
    {"EmptyBlock", "a<!-- ASP2HTML 5 -->b", "ab"},
    {"EscapedPlaceholder", "&LT;!-- ASP2HTML 1 --&GT;", "<%=one%>"},
    {"EscapedPlaceholderInAnyCase", "&lt;!-- asp2html 2 --&gt; &Lt;!-- Asp2Html 1 --&Gt;",
     "<% two\r\nlines %> <%=another one%>"},
    {"EscapedStartAlone", "&lt;!-- ASP2HTML 1 -->", "<%=one%>"},
    {"EscapedEndElsewhereInTheLine", "&lt;!-- ASP2HTML 1 -->a--&gt;b--&gt;\nc--&gt;", "<%=one%>a-->b--&gt;\nc--&gt;"},
    {"EscapedEndsInTurn", "&lt;!-- ASP2HTML 1 --&gt;&lt;!-- ASP2HTML 2 --&gt;--&gt;",
     "<%=one%><% two\r\nlines %>--&gt;"},
    {"OtherEscapesStay", "&lt;!-- x --&gt; &lt;b&gt;", "&lt;!-- x --&gt; &lt;b&gt;"},
    {"CommentThatDoesNotEndOnItsLineStays", "<!-- ASP2HTML 1\n--> x", "<!-- ASP2HTML 1\n--> x"},
    {"EscapedCommentThatDoesNotEndOnItsLine", "&lt;!-- ASP2HTML 1\n--&gt; x", "<!-- ASP2HTML 1\n--&gt; x"},
    {"CommentThatNeverEnds", "<!-- ASP2HTML 1", "<!-- ASP2HTML 1"},
    {"CommentWithoutANumberIsRemoved", "a<!-- ASP2HTML-->b<!-- ASP2HTML x -->c", "abc"},
    {"QuotesAroundAPlainPlaceholderStay", "<a b=\"<!-- ASP2HTML 1 -->\">", "<a b=\"<%=one%>\">"},
    {"AttributeNameBeforeAPlainPlaceholderStays", "<a ASP2HTML=\"<!-- ASP2HTML 1 -->\">", "<a ASP2HTML=\"<%=one%>\">",
     true},
    {"AttributeWhoseClosingQuoteIsGone", "<a ASP2HTML=\"<!-- ASP2HTML 3 Q -->>", "<a ASP2HTML=\"<%=three%>>", true},
};

class RestoreTest : public testing::TestWithParam<RestoreCase> {};

TEST_P(RestoreTest, GivesThePageForEveryCutAndLineEnd) {
  const RestoreCase& c = GetParam();
  for (const LineEnd& line_end : kLineEnds) {
    const std::string html = with_line_end(c.html, line_end);
    std::string expected(c.page);
    // Only the page's own line ends vary, not those of the script file.
    for (std::size_t at = 0; (at = expected.find('\n', at)) != std::string::npos; ++at)
      if (at == 0 || expected[at - 1] != '\r') expected.replace(at, 1, line_end.bytes), at += line_end.bytes.size() - 1;
    if (!c.differs_from_twin) {
      EXPECT_EQ(twin_restore(html, kScript), expected) << "twin, " << line_end.name;
    }
    const std::string result = same_for_every_block_size(
        html.size() + kScript.size(), [&](std::size_t size) { return restore(html, kScript, size); });
    EXPECT_EQ(result, expected) << line_end.name;
  }
}

INSTANTIATE_TEST_SUITE_P(Cases, RestoreTest, testing::ValuesIn(kCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(RestoreScriptFileTest, LineEndsChangedByAToolCostNoByteOfScript) {
  for (const LineEnd& line_end : kLineEnds) {
    std::string script = "\n<!-- ASP2HTML 1 -->\n<%=one%>\n<!-- ASP2HTML 2 -->\n<%=two%>\n";
    EXPECT_EQ(restore("<!-- ASP2HTML 2 -->,<!-- ASP2HTML 1 -->", with_line_end(script, line_end)), "<%=two%>,<%=one%>");
    script.pop_back();
    EXPECT_EQ(restore("<!-- ASP2HTML 1 -->,<!-- ASP2HTML 2 -->", with_line_end(script, line_end)), "<%=one%>,<%=two%>");
  }
}

TEST(RestoreScriptFileTest, EmptyScriptFileRemovesEveryPlaceholder) {
  EXPECT_EQ(restore("a<!-- ASP2HTML 1 -->b", ""), "ab");
  EXPECT_EQ(restore("a<!-- ASP2HTML 1 -->b", " \r\n"), "ab");
}

TEST(RestoreScriptFileTest, BlockLargerThanAnyWindow) {
  std::string block = "<%";
  while (block.size() < 3'000'000) block += "line of script <b>\n";
  block += "%>";
  EXPECT_EQ(restore("a<!-- ASP2HTML 1 -->b", "\r\n<!-- ASP2HTML 1 -->\r\n" + block + "\r\n"), "a" + block + "b");
}

TEST(RestorePlaceholderTest, CommentLongerThanAnyPlaceholderStays) {
  const std::string comment = "<!-- ASP2HTML " + std::string(300, 'x') + " -->";
  EXPECT_EQ(
      same_for_every_block_size(comment.size(), [&](std::size_t size) { return restore(comment, kScript, size); }),
      comment);
}

}  // namespace
}  // namespace kavo::test
