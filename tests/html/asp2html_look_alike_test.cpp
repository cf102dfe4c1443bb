// Pages whose own text looks like a placeholder: it is protected as blocks of its own and comes back.
#include <gtest/gtest.h>

#include "asp2html_run.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

struct LookAlikeCase {
  const char* name;
  std::string_view page;
  std::string_view html;
};

std::ostream& operator<<(std::ostream& out, const LookAlikeCase& c) { return out << c.name; }

constexpr LookAlikeCase kCases[] = {
    {"CommentOfThePage", "a<!-- ASP2HTML 1 -->b", "a<!-- ASP2HTML 1 --><!-- ASP2HTML 2 -->b"},
    {"CommentOverSeveralLines", "a<!-- ASP2HTML\n<!-- ASP2HTML 1\n-->b<%c%>",
     "a<!-- ASP2HTML 1 --><!-- ASP2HTML 2 --><!-- ASP2HTML 3 -->b<!-- ASP2HTML 4 -->"},
    {"InsideAComment", "<!-- a <!-- ASP2HTML 1 --> b", "<!-- a <!-- ASP2HTML 1 --><!-- ASP2HTML 2 --> b"},
    {"CommentThatNeverEnds", "a<!-- ASP2HTML 1\nb", "a<!-- ASP2HTML 1 --><!-- ASP2HTML 2 -->"},
    {"CommentInsideATag", "<td <!-- ASP2HTML 1 -->>",
     "<td ASP2HTML=\"<!-- ASP2HTML 1 Q -->\"ASP2HTML=\"<!-- ASP2HTML 2 Q -->\">"},
    {"ScriptThatHoldsItsOwnPlaceholder", "<% x = \"<!-- ASP2HTML 1 -->\" %>", "<!-- ASP2HTML 1 -->"},
    {"LineOfScriptThatBeginsAsAPlaceholder", "<% x = \"\n<!-- ASP2HTML 1 -->\n\" %>y",
     "<!-- ASP2HTML 1 --><!-- ASP2HTML 2 -->y"},
    {"LineOfWrappedScript", "<td <%\n<!-- ASP2HTML 1 -->\n%>>",
     "<td ASP2HTML=\"<!-- ASP2HTML 1 Q -->\"ASP2HTML=\"<!-- ASP2HTML 2 Q -->\">"},
    {"EscapedInText", "a &lt;!-- asp2html 1 --&gt; b", "a <!-- ASP2HTML 1 --> 1 --&gt; b"},
    {"EscapedInAComment", "<!-- a &lt;!-- ASP2HTML 1 --&gt; --> b", "<!-- a <!-- ASP2HTML 1 --> b"},
    {"EscapedInAQuotedValue", "<a b=\"&lt;!-- ASP2HTML 1\">", "<a b=\"<!-- ASP2HTML 1 --> 1\">"},
    {"EscapedInATag", "<a &lt;!-- ASP2HTML>", "<a ASP2HTML=\"<!-- ASP2HTML 1 Q -->\">"},
    {"EscapedStartBeforeAWrappedBlock", "<a &lt;!-- <%b%>>", "<a &lt;!-- \"<!-- ASP2HTML 1 Q -->\">"},
    {"OwnAttributeOfThatName", "<a ASP2HTML=\"<%b%>\">", "<a ASP2HTML=\"<!-- ASP2HTML 1 -->\">"},
    {"OwnAttributeOfThatNameWithoutQuotes", "<a ASP2HTML=<%b%>>", "<a ASP2HTML=ASP2HTML=\"<!-- ASP2HTML 1 Q -->\">"},
};

class LookAlikeTest : public testing::TestWithParam<LookAlikeCase> {};

TEST_P(LookAlikeTest, ComesBackForEveryCutAndLineEnd) {
  const LookAlikeCase& c = GetParam();
  for (const LineEnd& line_end : kLineEnds) {
    const std::string page = with_line_end(c.page, line_end);
    const Protected result =
        same_for_every_block_size(page.size(), [&](std::size_t size) { return protect(page, size); });
    EXPECT_EQ(result.page, with_line_end(c.html, line_end)) << line_end.name;
    const std::string restored =
        same_for_every_block_size(result.page.size() + result.script.size(),
                                  [&](std::size_t size) { return restore(result.page, result.script, size); });
    EXPECT_EQ(restored, page) << line_end.name;
  }
}

INSTANTIATE_TEST_SUITE_P(Cases, LookAlikeTest, testing::ValuesIn(kCases),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace kavo::test
