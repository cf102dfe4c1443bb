// ASP2HTML on single cases: what the page and the script file hold afterwards.
#include <gtest/gtest.h>

#include "asp2html_run.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

struct ProtectCase {
  const char* name;
  std::string_view page;
  std::string_view html;
  std::string_view script;  // after its leading CR LF
};

std::ostream& operator<<(std::ostream& out, const ProtectCase& c) { return out << c.name; }

// "\n" in a case stands for each line end in turn; "|" for CR LF, which stays.
std::string expand(std::string_view text, const LineEnd& line_end) {
  std::string result = with_line_end(text, line_end);
  for (std::size_t at = 0; (at = result.find('|', at)) != std::string::npos;) result.replace(at, 1, "\r\n");
  return result;
}

constexpr ProtectCase kCases[] = {
    {"EmptyPage", "", "", ""},
    {"NoScriptAtAll", "<p>plain\n", "<p>plain\n", ""},
    {"BlockInText", "a<%=x%>b", "a<!-- ASP2HTML 1 -->b", "<!-- ASP2HTML 1 -->|<%=x%>|"},
    {"AttributeValueWithoutQuotes", "<a href=<%=x%>>", "<a href=\"<!-- ASP2HTML 1 Q -->\">",
     "<!-- ASP2HTML 1 Q -->|<%=x%>|"},
    {"AttributeValueWithoutQuotesAfterBlanks", "<a href=  <%=x%>>", "<a href=  \"<!-- ASP2HTML 1 Q -->\">",
     "<!-- ASP2HTML 1 Q -->|<%=x%>|"},
    {"BlockInThePlaceOfAnAttribute", "<td <%=a%>>", "<td ASP2HTML=\"<!-- ASP2HTML 1 Q -->\">",
     "<!-- ASP2HTML 1 Q -->|<%=a%>|"},
    {"ValueOnTheNextLineCountsAsAnAttribute", "<td a=\n<%=a%>>", "<td a=\nASP2HTML=\"<!-- ASP2HTML 1 Q -->\">",
     "<!-- ASP2HTML 1 Q -->|<%=a%>|"},
    {"BlockInsideQuotedValueKeepsTheQuotes", "<a href=\"x<%=y%>z\">", "<a href=\"x<!-- ASP2HTML 1 -->z\">",
     "<!-- ASP2HTML 1 -->|<%=y%>|"},
    {"BlockInsideApostrophesKeepsThem", "<a href='<%=y%>'>", "<a href='<!-- ASP2HTML 1 -->'>",
     "<!-- ASP2HTML 1 -->|<%=y%>|"},
    {"ScriptInsideACommentIsNotProtected", "<!-- <%a%> <?php b ?> <script>c</script> -->",
     "<!-- <%a%> <?php b ?> <script>c</script> -->", ""},
    {"CommentEndSplitOverTwoLinesDoesNotEndIt", "<!-- a --\n> <%b%>", "<!-- a --\n> <%b%>", ""},
    {"ShortestComment", "<!--><%a%>", "<!--><!-- ASP2HTML 1 -->", "<!-- ASP2HTML 1 -->|<%a%>|"},
    {"NewBlockInsideAnOpenOneStartsANewNumber", "<% a <% b %>", "<!-- ASP2HTML 1 --><!-- ASP2HTML 2 -->",
     "<!-- ASP2HTML 1 -->|<% a |<!-- ASP2HTML 2 -->|<% b %>|"},
    {"NewBlockOnALaterLineOfAnOpenOne", "<% a\n<% b %>c", "<!-- ASP2HTML 1 --><!-- ASP2HTML 2 -->c",
     "<!-- ASP2HTML 1 -->|<% a\n|<!-- ASP2HTML 2 -->|<% b %>|"},
    {"NewPhpBlockInsideAnOpenOne", "<?php a <?PHP b ?>", "<!-- ASP2HTML 1 --><!-- ASP2HTML 2 -->",
     "<!-- ASP2HTML 1 -->|<?php a |<!-- ASP2HTML 2 -->|<?PHP b ?>|"},
    {"NewScriptInsideAnOpenOne", "<script>w('<script>')</script>", "<!-- ASP2HTML 1 --><!-- ASP2HTML 2 -->",
     "<!-- ASP2HTML 1 -->|<script>w('|<!-- ASP2HTML 2 -->|<script>')</script>|"},
    {"BlockOverSeveralLines", "a <% b\nc\nd %> e\nf", "a <!-- ASP2HTML 1 --> e\nf",
     "<!-- ASP2HTML 1 -->|<% b\nc\nd %>|"},
    {"PhpBlock", "<?PhP echo '%>' ?>x", "<!-- ASP2HTML 1 -->x", "<!-- ASP2HTML 1 -->|<?PhP echo '%>' ?>|"},
    {"OtherProcessingInstructionsStay", "<?xml version=\"1.0\"?><?= x ?>", "<?xml version=\"1.0\"?><?= x ?>", ""},
    {"ScriptElement", "<SCRIPT lang=js>a < b</Script>t", "<!-- ASP2HTML 1 -->t",
     "<!-- ASP2HTML 1 -->|<SCRIPT lang=js>a < b</Script>|"},
    {"ScriptElementKeepsServerBlocks", "<script>x=<%=y%>;</script>", "<!-- ASP2HTML 1 -->",
     "<!-- ASP2HTML 1 -->|<script>x=<%=y%>;</script>|"},
    {"JavaElement", "<java>a</JAVA>b", "<!-- ASP2HTML 1 -->b", "<!-- ASP2HTML 1 -->|<java>a</JAVA>|"},
    {"ScriptElementEndsAsJavaToo", "<script>a</java>b", "<!-- ASP2HTML 1 -->b",
     "<!-- ASP2HTML 1 -->|<script>a</java>|"},
    {"ScriptInATagIsNeverWrapped", "<td <script>a</script> <%b%>>", "<td <!-- ASP2HTML 1 --> <!-- ASP2HTML 2 -->>",
     "<!-- ASP2HTML 1 -->|<script>a</script>|<!-- ASP2HTML 2 -->|<%b%>|"},
    {"CommentOpenedInAScriptGoesOnBehindIt", "<script><!-- a</script><%b%>--><%c%>",
     "<!-- ASP2HTML 1 --><%b%>--><!-- ASP2HTML 2 -->",
     "<!-- ASP2HTML 1 -->|<script><!-- a</script>|<!-- ASP2HTML 2 -->|<%c%>|"},
    {"ShortestBlock", "<%><%%>", "<!-- ASP2HTML 1 --><!-- ASP2HTML 2 -->",
     "<!-- ASP2HTML 1 -->|<%>|<!-- ASP2HTML 2 -->|<%%>|"},
    {"BlockEndInsideABlockOfAnotherKind", "<% ?> %><?php %> ?>", "<!-- ASP2HTML 1 --><!-- ASP2HTML 2 -->",
     "<!-- ASP2HTML 1 -->|<% ?> %>|<!-- ASP2HTML 2 -->|<?php %> ?>|"},
    {"BlockThatNeverEndsRunsToTheEndOfTheFile", "a\n<% b\nc</p>", "a\n<!-- ASP2HTML 1 -->",
     "<!-- ASP2HTML 1 -->|<% b\nc</p>|"},
    {"BlockThatNeverEndsOnACompleteLine", "<% b\n", "<!-- ASP2HTML 1 -->", "<!-- ASP2HTML 1 -->|<% b\n|"},
    {"LessThanInTextIsNoTag", "a < <%=b%> <3 <%=c%>", "a < <!-- ASP2HTML 1 --> <3 <!-- ASP2HTML 2 -->",
     "<!-- ASP2HTML 1 -->|<%=b%>|<!-- ASP2HTML 2 -->|<%=c%>|"},
    {"ClosingTagIsATag", "</p <%=b%>>", "</p ASP2HTML=\"<!-- ASP2HTML 1 Q -->\">", "<!-- ASP2HTML 1 Q -->|<%=b%>|"},
    {"BracketInQuotesDoesNotEndATag", "<a b=\">\" <%=c%>>", "<a b=\">\" ASP2HTML=\"<!-- ASP2HTML 1 Q -->\">",
     "<!-- ASP2HTML 1 Q -->|<%=c%>|"},
    {"OpenTagsAreCounted", "<a <b> <%=c%>><%=d%>", "<a <b> ASP2HTML=\"<!-- ASP2HTML 1 Q -->\"><!-- ASP2HTML 2 -->",
     "<!-- ASP2HTML 1 Q -->|<%=c%>|<!-- ASP2HTML 2 -->|<%=d%>|"},
    {"QuoteCharacterOutlivesAScriptInsideAValue", "<a b='<script></script> <c d='<%=e%>'>",
     "<a b='<!-- ASP2HTML 1 --> <c d='ASP2HTML=\"<!-- ASP2HTML 2 Q -->\"'>",
     "<!-- ASP2HTML 1 -->|<script></script>|<!-- ASP2HTML 2 Q -->|<%=e%>|"},
    {"CommentInsideATagEndsTheTagToo", "<a <!-- b --><%=c%>", "<a <!-- b --><!-- ASP2HTML 1 -->",
     "<!-- ASP2HTML 1 -->|<%=c%>|"},
    {"ShiftJisTextWithLettersAsTrailBytes", "\x83\x41\x83<%\x83\x25\x8E>%>\x83\x7C",
     "\x83\x41\x83<!-- ASP2HTML 1 -->\x83\x7C", "<!-- ASP2HTML 1 -->|<%\x83\x25\x8E>%>|"},
};

class ProtectTest : public testing::TestWithParam<ProtectCase> {};

TEST_P(ProtectTest, GivesPageAndScriptFileForEveryCutAndLineEnd) {
  const ProtectCase& c = GetParam();
  for (const LineEnd& line_end : kLineEnds) {
    const std::string page = with_line_end(c.page, line_end);
    const Protected expected{with_line_end(c.html, line_end), "\r\n" + expand(c.script, line_end)};
    EXPECT_EQ(twin_protect(page), expected) << "twin, " << line_end.name;
    const Protected result =
        same_for_every_block_size(page.size(), [&](std::size_t size) { return protect(page, size); });
    EXPECT_EQ(result.page, expected.page) << line_end.name;
    EXPECT_EQ(result.script, expected.script) << line_end.name;
    EXPECT_EQ(round_trip(page), page) << line_end.name;
  }
}

INSTANTIATE_TEST_SUITE_P(Cases, ProtectTest, testing::ValuesIn(kCases),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace kavo::test
