// What is repaired, page by page: before, after, and the messages.
#include <gtest/gtest.h>

#include <ostream>

#include "html_validate_run.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

struct RepairCase {
  const char* name;
  std::string_view page;
  std::string_view repaired;
  std::vector<std::int32_t> numbers;
};

void PrintTo(const RepairCase& value, std::ostream* out) { *out << value.name; }

class HtmlValidateRepair : public testing::TestWithParam<RepairCase> {};

TEST_P(HtmlValidateRepair, GivesThePageAndItsMessages) {
  const RepairCase& expected = GetParam();
  const Validated result = validate(expected.page);
  EXPECT_EQ(result.result, 0);
  EXPECT_EQ(result.page, expected.repaired);
  EXPECT_EQ(result.numbers, expected.numbers);
  EXPECT_EQ(result.repairs == 0, expected.page == expected.repaired);
}

TEST_P(HtmlValidateRepair, IsTheSameForEveryBlockSize) {
  const RepairCase& expected = GetParam();
  same_for_every_block_size(expected.page.size(), [&](std::size_t size) { return validate(expected.page, size); });
}

TEST_P(HtmlValidateRepair, RepairsARepairedPageNoFurther) {
  const Validated again = validate(GetParam().repaired);
  EXPECT_EQ(again.page, GetParam().repaired);
  EXPECT_EQ(again.repairs, 0u);
}

using namespace std::string_view_literals;

const RepairCase kCases[] = {
    // Order.
    {"BAndIClosedInTheWrongOrder", "<b>1<i>2</b>3</i>4", "<b>1<i>2</I></b><i>3</i>4", {3010, 3012}},
    {"ClosedEarlyAndNotUsedAgain", "<b><i>2</b></i>4", "<b><i>2</I></b></i>4", {3010, 3014}},
    {"OpeningTextIsKept", "<b><I Class='x'>2</b> 3</i>", "<b><I Class='x'>2</I></b><I Class='x'> 3</i>", {3010, 3012}},
    {"FontClosedOutOfOrderIsLeft", "<font size=2><b>1</font>2</b>", "<font size=2><b>1</font>2</b>", {}},
    {"AClosedOutOfOrderIsLeft", "<a href=x><b>1</a>2</b>", "<a href=x><b>1</a>2</b>", {}},
    {"FontAndAInsideAreLeft",
     "<b><font>1</b>2</font> <i><a href=x>1</i>2</a>",
     "<b><font>1</b>2</font> <i><a href=x>1</i>2</a>",
     {}},
    {"OverlappingInlineIsLeft", "<span><b>1</span>2</b>", "<span><b>1</span>2</b>", {}},
    {"FontInsideAClosedElementGoesWithIt",
     "<b><i><font color=red>1</b>2</font></i>",
     "<b><i><font color=red>1</FONT></I></b><i><font color=red>2</font></i>",
     {3010, 3010, 3012, 3012}},
    {"ThreeInterleaved",
     "<b><i><u>1</b>2</i>3</u>",
     "<b><i><u>1</U></I></b><i><u>2</U></i><u>3</u>",
     {3010, 3010, 3012, 3012, 3010, 3012}},
    {"AnotherOfTheSameNameAroundIsLeft", "<i><b><i>1</b>2</i>3</i>", "<i><b><i>1</b>2</i>3</i>", {3018}},
    {"InlineAroundABlockIsLeft", "<b><p>1</b>2</p>", "<b><p>1</b>2</p>", {3017}},
    {"PlaceholderRightBehindAnUnquotedValue",
     "<input type=checkboxASP2HTML=\"<!-- ASP2HTML 8 Q -->\"><b x=1ASP2HTML=\"<!-- ASP2HTML 9 Q -->\" y>1</b>",
     "<input type=checkboxASP2HTML=\"<!-- ASP2HTML 8 Q -->\"><b x=1ASP2HTML=\"<!-- ASP2HTML 9 Q -->\" y>1</b>",
     {}},
    {"HeadingClosedByAnother", "<h1>1</h2>", "<h1>1</H1></h2>", {3013, 3014}},
    {"HeadingInAHeading", "<h1>1<h2>2</h2>", "<h1>1</H1><h2>2</h2>", {3013}},
    {"AReplacedByA", "<a name=x>1<a href=y>2</a>", "<a name=x>1</A><a href=y>2</a>", {3013}},
    {"CaptionEndedByARow",
     "<table><caption>c<tr><td>1</td></tr></table>",
     "<table><caption>c</CAPTION><tr><td>1</td></tr></table>",
     {3013}},
    {"ColumnGroupEndedByARow",
     "<table><colgroup><col><tr><td>1</td></tr></table>",
     "<table><colgroup><col></COLGROUP><tr><td>1</td></tr></table>",
     {3013}},
    {"OmittedEndTagsOfTablePartsAreLeft",
     "<table><tr><td>1<td>2<tr><td>3</table>",
     "<table><tr><td>1<td>2<tr><td>3</table>",
     {}},
    {"ElementEndsWithItsCell",
     "<table><tr><td><b>1</td><td>2</td></tr></table>",
     "<table><tr><td><b>1</B></td><td>2</td></tr></table>",
     {3010}},
    {"ElementGoesOnInTheNextItem", "<ul><li><b>1<li>2</b></ul>", "<ul><li><b>1</B><li><b>2</b></ul>", {3013, 3012}},

    // Paragraphs.
    {"ParagraphEndedByAParagraph", "<p>1<p>2</p>", "<p>1</P><p>2</p>", {3015}},
    {"ParagraphEndedByABlock", "<p>1<div>2</div>", "<p>1</P><div>2</div>", {3015}},
    {"ParagraphEndedByItsParent", "<div><p>1</div>", "<div><p>1</P></div>", {3015}},
    {"ParagraphNotEndedByATableInQuirksMode",
     "<p>1<table><tr><td>2</td></tr></table></p>",
     "<p>1<table><tr><td>2</td></tr></table></p>",
     {}},
    {"ParagraphEndedByATable",
     "<!DOCTYPE html><p>1<table><tr><td>2</td></tr></table>",
     "<!DOCTYPE html><p>1</P><table><tr><td>2</td></tr></table>",
     {3015}},
    {"ParagraphEndClosesWhatIsInside", "<p><b>1</p><p>2</b></p>", "<p><b>1</B></p><p><b>2</b></p>", {3010, 3012}},
    {"ParagraphEndWithoutBeginning", "1</p>2", "1</p>2", {3014}},
    {"BodyEndClosesWhatIsInside",
     "<html><body><p><b>1</body></html>\n",
     "<html><body><p><b>1</B></P></body></html>\n",
     {3016, 3016}},
    {"HtmlEndClosesWhatIsInside", "<p><b>1</html>", "<p><b>1</B></P></html>", {3016, 3016}},
    {"TextBehindBodyEndIsStillInside", "<b>1</body></html>2", "<b>1</body></html>2</B>\r\n", {3016}},
    {"CommentBehindBodyEnd", "<b>1</body><!-- x --></html>", "<b>1</B></body><!-- x --></html>", {3016}},

    // The end.
    {"UnclosedElementsAtTheEnd", "<b><i>1", "<b><i>1</I>\r\n</B>\r\n", {3016, 3016}},
    {"UnclosedTableAtTheEnd",
     "<table><tr><td><b>1",
     "<table><tr><td><b>1</B>\r\n</TD>\r\n</TR>\r\n</TABLE>\r\n",
     {3016, 3016, 3016, 3016}},
    {"UnlistedFormattingInsideIsClosedByTheEndTagAroundIt", "<b><s>1", "<b><s>1</B>", {3016}},
    {"UnlistedFormattingBetweenListed", "<i><s><b><s>1", "<i><s><b><s>1</B></I>", {3016, 3016}},
    {"UnlistedFormattingBeforeTheEndOfTheBody", "<b><s>1</body></html>", "<b><s>1</B></body></html>", {3016}},
    {"UnlistedFormattingThatABlankWouldReopen",
     "<b><s>1</body>\n</html>",
     "<b><s>1</S></B></body>\n</html>",
     {3016, 3016}},
    {"UnlistedFormattingThatTextReopens",
     "<p><b><s>1</p>2",
     "<p><b><s>1</S></B></p><b><s>2</B>",
     {3010, 3010, 3012, 3012, 3016}},
    {"UnlistedFormattingThatEndsWithItsCell",
     "<table><tr><td><b><s>1</td></tr></table>",
     "<table><tr><td><b><s>1</B></td></tr></table>",
     {3010}},
    {"UnlistedBlockInsideFormatting", "<b><div>1", "<b><div>1</DIV>\r\n</B>\r\n", {3016, 3016}},
    {"UnlistedBlocksInsideAHeading", "<h1><ul><li>1", "<h1><ul><li>1</H1>\r\n", {3016}},
    {"UnlistedBlockInsideACell",
     "<table><tr><td><div>1",
     "<table><tr><td><div>1</TD>\r\n</TR>\r\n</TABLE>\r\n",
     {3016, 3016, 3016}},
    {"UnlistedFormInsideAHeading",
     "<h1><form><div>1",
     "<h1><form><div>1</DIV>\r\n</FORM>\r\n</H1>\r\n",
     {3016, 3016, 3016}},
    {"UnlistedElementsAloneAreNot", "<div><s>1", "<div><s>1", {}},
    {"UnclosedScript", "<body><script>x", "<body><script>x</SCRIPT>\r\n", {3016}},
    {"EndInsideATag", "<b>1<i", "<b>1<i", {3018}},
    {"EndInsideAComment", "<b>1<!-- x", "<b>1<!-- x", {3018}},
    {"EndInsidePlaintext", "<b>1<plaintext>x", "<b>1<plaintext>x", {3018}},

    // Strays.
    {"LessBeforeABlank", "a < b", "a &lt; b", {3009}},
    {"GreaterInText", "a > b", "a &gt; b", {3011}},
    {"LessAtTheEnd", "a <", "a &lt;", {3009}},
    {"LessBeforeADigit", "a <1 & <\xE4", "a &lt;1 & &lt;\xE4", {3009, 3009}},
    {"TwoGreater", "a >> b", "a &gt;&gt; b", {3011, 3011}},
    {"StraysInATitle", "<title>a < b > c</title>", "<title>a &lt; b &gt; c</title>", {3009, 3011}},
    {"StraysInATextArea",
     "<textarea>\na<1>\n></textarea>x",
     "<textarea>\na&lt;1&gt;\n&gt;</textarea>x",
     {3009, 3011, 3011}},
    {"WhatLooksLikeATagInATitle", "<title><b>a</b > < </i></title>", "<title><b>a</b > &lt; </i></title>", {3009}},
    {"TagInATitleThatNeverEnds",
     "<title>if a <b then > c</title>d > e",
     "<title>if a <b then > c</title>d &gt; e",
     {3011}},
    {"CommentsInATitle",
     "<title><!-- ASP2HTML 1 --> > <!-- > -- > --> ></title>",
     "<title><!-- ASP2HTML 1 --> &gt; <!-- > -- > --> &gt;</title>",
     {3011, 3011}},
    {"CommentInATitleThatNeverEnds", "<title><!-- > a</title>>", "<title><!-- > a</title>&gt;", {3011}},
    {"ServerCodeInATitle",
     "<title><%= a > b %> > <?php c > d < 1 ?> <</title>",
     "<title><%= a > b %> &gt; <?php c > d < 1 ?> &lt;</title>",
     {3011, 3009}},
    {"ServerCodeInATitleThatNeverEnds", "<title><%= a > b</title>c > d", "<title><%= a > b</title>c > d", {}},
    {"TitleThatNeverEnds", "<title>a < b", "<title>a &lt; b", {3009}},
    {"TitleOfADrawing", "<svg><title>a > <b>c</b></title></svg>", "<svg><title>a &gt; <b>c</b></title></svg>", {3011}},
    {"ClosingTagWithoutOpening", "1</b>2</table>3</div>", "1</b>2</table>3</div>", {3014, 3014}},

    // What is copied.
    {"TagsInComments", "<!-- <b> > <p> --><!--><b></b><!-- --!>x", "<!-- <b> > <p> --><!--><b></b><!-- --!>x", {}},
    {"TagsInScript", "<script>if (a<b) x='<b>' > 1</script>1", "<script>if (a<b) x='<b>' > 1</script>1", {}},
    {"EscapedScript",
     "<script><!-- <script> </script> <b> --></script>1",
     "<script><!-- <script> </script> <b> --></script>1",
     {}},
    {"RawText",
     "<style>a > b {}</style><textarea><b></textarea><xmp><i> > </xmp>",
     "<style>a > b {}</style><textarea><b></textarea><xmp><i> > </xmp>",
     {}},
    {"GreaterInAttributes", "<b title=\"a>b\" class='c>d'>1</b>", "<b title=\"a>b\" class='c>d'>1</b>", {}},
    {"QuoteThatOpensNoValue", "<b x=it's>1</b><img alt=\"it's\">", "<b x=it's>1</b><img alt=\"it's\">", {}},
    {"DoctypeAndInstructions",
     "<!doctype html><?xml version=\"1.0\"?><![if x]>1<![endif]></>",
     "<!doctype html><?xml version=\"1.0\"?><![if x]>1<![endif]></>",
     {}},
    {"Svg", "<svg><g/><a><![CDATA[ > < ]]></a></svg>1", "<svg><g/><a><![CDATA[ > < ]]></a></svg>1", {}},
    {"AspBlock", "<% if a > b then %>x > y", "<% if a > b then %>x &gt; y", {3011}},
    {"AspBlockInAnAttribute",
     "<a href=\"<%= f(\"x\") > 1 %>\">1</a> >",
     "<a href=\"<%= f(\"x\") > 1 %>\">1</a> &gt;",
     {3011}},
    {"PhpBlock",
     "<?php if ($a->b > 1) { echo \"<b>\"; } ?>1 > 2",
     "<?php if ($a->b > 1) { echo \"<b>\"; } ?>1 &gt; 2",
     {3011, 3018}},
    {"PhpBlockToTheEnd", "<b>1<?php echo \"x\" > 1;", "<b>1<?php echo \"x\" > 1;", {3018}},
    {"NullCharacters", "<b>1\0</b>"sv, "<b>1\0</b>"sv, {}},
    {"UnknownNames", "<o:p>1<x-y>2</o:p>", "<o:p>1<x-y>2</o:p>", {}},
    {"DoubleByteNames",
     "<b>\x83\x41\x95\x5C</b><x\x83\x41>1</x\x83\x61>",
     "<b>\x83\x41\x95\x5C</b><x\x83\x41>1</x\x83\x61>",
     {}},
    {"LineBreakAfterPre", "<p><b>1</p><pre>\n2</b></pre>", "<p><b>1</B></p><pre>\n<b>2</b></pre>", {3010, 3012}},
    {"TextInATable",
     "<p><b>1</p><table> x</b><tr><td>2</td></tr></table>",
     "<p><b>1</B></p><table><b> x</b><tr><td>2</td></tr></table>",
     {3010, 3012}},
};

INSTANTIATE_TEST_SUITE_P(Cases, HtmlValidateRepair, testing::ValuesIn(kCases),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace kavo::test
