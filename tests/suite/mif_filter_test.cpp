#include "suite/filters/mif/mif_filter.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "common/block_reader.h"
#include "suite/filters/mif/mif_extraction.h"
#include "suite/suite_fixture.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

using namespace std::string_view_literals;

class MifFilterTest : public SuiteTest {
 protected:
  static Road mif_road(unsigned code_page = 1252) { return {.filter = u"K19MIF", .source_code_page = code_page}; }

  // The texts, of a document that comes back unchanged.
  std::vector<std::u16string> checked_texts_of(std::string_view document, const Road& road = mif_road()) {
    put(u"a.mif", document);
    const std::u16string tud = convert(u"a.mif", road);
    EXPECT_EQ(rebuild(tud, road), document);
    return sources(tud);
  }
  std::string translated_document(std::string_view document, const Translate& translate,
                                  const Road& road = mif_road()) {
    return translated(u"a.mif", document, translate, road);
  }
};

std::u16string to_x(std::u16string text) {
  std::replace(text.begin(), text.end(), u'x', u'X');
  return text;
}

// A paragraph of one line.
std::string para(std::string_view line) { return "<Para <ParaLine" + std::string(line) + ">>"; }

struct Case {
  const char* name;
  std::string document;
  std::vector<std::u16string> texts;
  std::string expected;  // with "X" for every "x" in the texts; "" for the same as `document`
};

const Case kStructure[] = {
    {"empty", "", {}, ""},
    {"no MIF at all", std::string("x\0<`y'", 6), {}, ""},
    {"a paragraph",
     "<TextFlow \n <Para \n  <PgfTag `x'>\n  <ParaLine \n   <String `One x'>\n  > # end\n > # end of Para\n>\n",
     {u"One x"},
     "<TextFlow \n <Para \n  <PgfTag `x'>\n  <ParaLine \n   <String `One X'>\n  > # end\n > # end of Para\n>\n"},
    {"the lines of a paragraph are joined",
     "<Para \n <ParaLine \n  <String `One '>\n >\n <ParaLine \n  <String `and x'>\n > # end\n>",
     {u"One and x"},
     "<Para \n <ParaLine \n  <String `One and X'>\n > # end\n>"},
    {"a hyphen at the end of a line is none of the text",
     "<Para <ParaLine <String `hy'> <Char SoftHyphen >> <ParaLine <String `phen x'>>>",
     {u"hyphen x"},
     "<Para <ParaLine <String `hyphen X'>>>"},
    {"nor is it as an escape",
     "<Para <ParaLine <String `hy\\x06 '>> <ParaLine <String `phen x'>>>",
     {u"hyphen x"},
     "<Para <ParaLine <String `hyphen X'>>>"},
    {"several statements on a line",
     para("<String `a x'><Char Tab><String `b'>"),
     {u"a x\tb"},
     para("<String `a X\\tb'>")},
    {"empty paragraphs", para("") + para("<String `'>") + para("<String ` \\t'>") + para("<Char Tab>"), {}, ""},
    {"paragraphs of codes alone",
     para("<TextRectID 8><Marker <MText `x'>>") + para("<Variable <VariableName `x'>>"),
     {},
     ""},
    {"catalogues are left alone",
     "<PgfCatalog <Pgf <PgfTag `x'> <PgfNumFormat `x'>>> <VariableFormats <VariableFormat <VariableDef `x'>>>"
     "<String `x'> <ParaLine <String `x'>>",
     {},
     ""},
    {"a table",
     "<Tbls <Tbl <TblTitle <TblTitleContent " + para("<String `x'>") + ">> <TblBody <Row <Cell <CellContent " +
         para("<String `y'>") + ">>>>>>",
     {u"x", u"y"},
     "<Tbls <Tbl <TblTitle <TblTitleContent " + para("<String `X'>") + ">> <TblBody <Row <Cell <CellContent " +
         para("<String `y'>") + ">>>>>>"},
    {"a footnote and its reference",
     "<TextFlow <Notes <FNote <ID 1>" + para("<String `x'>") + ">>" + para("<String `a'><FNote 1><String `b x'>") + ">",
     {u"x", u"a<1/>b x"},
     "<TextFlow <Notes <FNote <ID 1>" + para("<String `X'>") + ">>" + para("<String `a'><FNote 1><String `b X'>") +
         ">"},
    {"a text line on a drawing",
     "<Page <TextLine <TLOrigin 1\" 2\"> <TLAlignment Left> <Font <FTag `'>> <String `x'> > <TextLine>>",
     {u"x"},
     "<Page <TextLine <TLOrigin 1\" 2\"> <TLAlignment Left> <Font <FTag `'>> <String `X'> > <TextLine>>"},
    {"comments",
     "# <Para <ParaLine <String `x'>>>\n" + para("<String `a x'>") + " # `\n" + para("<String `b'>"),
     {u"a x", u"b"},
     "# <Para <ParaLine <String `x'>>>\n" + para("<String `a X'>") + " # `\n" + para("<String `b'>")},
    {"object data",
     "<ImportObject\n=FrameVector\n&%v `\n&<Para <ParaLine <String `x'>>>\n=EndInset\n>" + para("<String `#a x'>"),
     {u"#a x"},
     "<ImportObject\n=FrameVector\n&%v `\n&<Para <ParaLine <String `x'>>>\n=EndInset\n>" + para("<String `#a X'>")},
    {"a text that looks like a statement",
     para("<String `<Para\\> x'>"),
     {u"<<Para> x"},
     para("<String `<Para\\> X'>")},
    {"statements about a paragraph between its lines part it",
     "<Para <ParaLine <String `a x'>> <PgfEndCond Yes> <ParaLine <String `b'>>>",
     {u"a x", u"b"},
     "<Para <ParaLine <String `a X'>> <PgfEndCond Yes> <ParaLine <String `b'>>>"},
};

const Case kCodes[] = {
    {"a font around a whole paragraph stays outside",
     para("<Font <FTag `Bold'> <FLocked No>> <String `x'> <Font <FTag `'> <FLocked No>>"),
     {u"x"},
     para("<Font <FTag `Bold'> <FLocked No>> <String `X'> <Font <FTag `'> <FLocked No>>")},
    {"a font inside",
     para("<String `a '><Font <FTag `Bold'>><String `x'><Font <FTag `'>><String ` b'>"),
     {u"a <1>x</1> b"},
     para("<String `a '><Font <FTag `Bold'>><String `X'><Font <FTag `'>><String ` b'>")},
    {"fonts that differ in spacing, kerning and language alone are one run",
     para("<String `Do'><Font <FTag `'> <FSpread 1> <FLocked No>><String ` not'><Font <FTag `'> <FPairKern No>>"
          "<String ` spray'><Font <FTag `'> <FLanguage NoLanguage>><String ` x'>"),
     {u"Do not spray x"},
     para("<String `Do not spray X'>")},
    {"so are those of a format",
     para("<String `a '><Font <FTag `B'>><String `x'><Font <FTag `B'><FDW 2%>><String `y'><Font <FTag `'><FDX 1>>"
          "<String ` b'>"),
     {u"a <1>xy</1> b"},
     para("<String `a '><Font <FTag `B'>><String `Xy'><Font <FTag `'><FDX 1>><String ` b'>")},
    {"a spacing in front of the text stays there",
     para("<Font <FTag `'><FDW 2%>><String `x'>"),
     {u"x"},
     para("<Font <FTag `'><FDW 2%>><String `X'>")},
    {"fonts that differ in what a reader sees are several",
     para("<Font <FTag `B'>><String `a'><Font <FTag `B'><FAngle `Italic'>><String `b'><Font <FTag `B'>><String `x'>"),
     {u"a<1/>b<2/>x"},
     para("<Font <FTag `B'>><String `a'><Font <FTag `B'><FAngle `Italic'>><String `b'><Font <FTag `B'>><String `X'>")},
    {"a font that begins a paragraph and ends in it",
     para("<Font <FTag `'> <FAngle `Italic'>><String `a'><Font <FTag `'>><String ` x'>"),
     {u"<1>a</1> x"},
     para("<Font <FTag `'> <FAngle `Italic'>><String `a'><Font <FTag `'>><String ` X'>")},
    {"a font that nothing ends",
     para("<String `a'><Font <FTag `B'>><String `x'>"),
     {u"a<1/>x"},
     para("<String `a'><Font <FTag `B'>><String `X'>")},
    {"markers",
     para("<Marker <MText `x'>><String `a '><Marker <MText `x'>><String `x'><Marker <MText `x'>>"),
     {u"a <1/>x"},
     para("<Marker <MText `x'>><String `a '><Marker <MText `x'>><String `X'><Marker <MText `x'>>")},
    {"a reference shows its text",
     para("<String `see '><XRef <XRefName `x'>><String `page x'><XRefEnd ><String `.'>"),
     {u"see <1>page x</1>."},
     para("<String `see '><XRef <XRefName `x'>><String `page X'><XRefEnd ><String `.'>")},
    {"variables are a part of the text",
     para("<Variable <VariableName `Product'>><String ` for x'><Variable <VariableName `y'>>"),
     {u"<1/> for x<2/>"},
     para("<Variable <VariableName `Product'>><String ` for X'><Variable <VariableName `y'>>")},
    {"anchors",
     para("<ATbl 1><String `x'><AFrame 2><String `y'><ATbl 3>"),
     {u"x<1/>y"},
     para("<ATbl 1><String `X'><AFrame 2><String `y'><ATbl 3>")},
    {"conditions",
     para("<Conditional <InCondition `C'>><String `x'><Unconditional ><String `y'>"),
     {u"<1>x</1>y"},
     para("<Conditional <InCondition `C'>><String `X'><Unconditional ><String `y'>")},
    {"elements",
     para("<ElementBegin <ETag `p'>><String `x'><ElementBegin <ETag `b'>><String `y'><ElementEnd `b'>"
          "<String `z'><ElementEnd `p'>"),
     {u"x<1>y</1>z"},
     para("<ElementBegin <ETag `p'>><String `X'><ElementBegin <ETag `b'>><String `y'><ElementEnd `b'>"
          "<String `z'><ElementEnd `p'>")},
    {"statements that nobody knows",
     para("<String `a'><New <Thing `x'> 3><String `x'>"),
     {u"a<1/>x"},
     para("<String `a'><New <Thing `x'> 3><String `X'>")},
    {"where a frame's text begins stays in front of it",
     para("<Font <FTag `B'>><TextRectID 8><String `x'><Font <FTag `'>><String `y'>"),
     {u"x<1/>y"},
     para("<Font <FTag `B'>><TextRectID 8><String `X'><Font <FTag `'>><String `y'>")},
    {"where other frames begin is no part of the text and stays behind it",
     "<Para\n <ParaLine\n  <String `a '>\n > # end\n <ParaLine\n  <TextRectID 9 >\n  <String `b '>\n >\n"
     " <ParaLine\n  <TextRectID 10>\n  <String `x'>\n  <Marker <MText `m'>>\n >\n>\n",
     {u"a b x"},
     "<Para\n <ParaLine\n  <String `a b X'>\n  >\n  <ParaLine \n  <TextRectID 9 >\n  >\n  <ParaLine \n  <TextRectID "
     "10>\n  <Marker <MText `m'>>\n >\n>\n"},
    {"the number of a frame inside a code stays there",
     "<Para <ParaLine <String `a'> <New <TextRectID 9>> <String `x'>>>",
     {u"a<1/>x"},
     "<Para <ParaLine <String `a'> <New <TextRectID 9>> <String `X'>>>"},
};

const Case kCharacters[] = {
    {"escapes of strings", para("<String `\\tx\\>\\q\\Q\\\\'>"), {u"\tx>'`\\"}, para("<String `\\tX\\>\\q\\Q\\\\'>")},
    {"a string that ends in a backslash",
     para("<String `C:\\\\'><String ` x'>"),
     {u"C:\\ x"},
     para("<String `C:\\\\ X'>")},
    {"a lone backslash at the end", para("<String `x\\'>"), {u"x\\"}, para("<String `X\\\\'>")},
    {"named characters",
     para("<String `a'><Char EmDash><Char Bullet><Char Cent><String `x'><Char Tab>"),
     {u"a\u2014\u2022\u00A2x"},
     para("<String `a\\xd1 \\xa5 \\xa2 X'><Char Tab>")},
    {"spaces and hyphens of a kind are written by name",
     para("<String `a'><Char HardSpace><String `\\x12 x'><Char HardHyphen>"),
     {u"a\u00A0\u2009x\u2011"},
     para("<String `a'><Char HardSpace><Char ThinSpace><String `X'><Char HardHyphen>")},
    {"a line break is a code",
     para("<String `a'><Char HardReturn><String `x'>"),
     {u"a<1/>x"},
     para("<String `a'><Char HardReturn><String `X'>")},
    {"the format's own characters",
     para("<String `caf\\x8e  \\xd2 x\\xd3 '>"),
     {u"caf\u00E9 \u201Cx\u201D"},
     para("<String `caf\\x8e  \\xd2 X\\xd3 '>")},
    {"an escape without its blank",
     para("<String `\\xd2x\\xD3'>"),
     {u"\u201Cx\u201D"},
     para("<String `\\xd2 X\\xd3 '>")},
    {"bytes of the code page", para("<String `caf\xE9 x'>"), {u"caf\u00E9 x"}, para("<String `caf\\x8e  X'>")},
    {"a hexadecimal tab, and a forced return, which is none",
     para("<String `a\\x09 x\\x08 b'>"),
     {u"a<1/>x\tb"},
     para("<String `a\\x09 X\\tb'>")},
    {"escapes that mean nothing",
     para("<String `a\\nx\\x05b\\x'>"),
     {u"a<1/>x<2/>b<3/>"},
     para("<String `a\\nX\\x05 b\\x'>")},
    {"Unicode escapes",
     para("<String `\\u00e9x\\uD83D'>"),
     {u"\u00E9x<1/>D83D"},
     para("<String `\\x8e X\\u'><String `D83D'>")},
    {"a line end in a string is one of the file", para("<String `a\nx'>"), {u"a x"}, para("<String `a X'>")},
    {"control characters", para("<String `a\x01x'>"), {u"a<1/>x"}, para("<String `a\x01X'>")},
};

const Case kBroken[] = {
    {"a catalogue that never closes",
     "<PgfCatalog <Pgf <PgfTag `x'>" + para("<String `x'>"),
     {u"x"},
     "<PgfCatalog <Pgf <PgfTag `x'>" + para("<String `X'>")},
    {"a paragraph that never closes",
     "<Para <ParaLine <String `a x'>" + para("<String `b'>"),
     {u"a x", u"b"},
     "<Para <ParaLine <String `a X'>" + para("<String `b'>")},
    {"a line that never closes",
     "<Para <ParaLine <String `a x'> <ParaLine <String `b'>>>",
     {u"a x", u"b"},
     "<Para <ParaLine <String `a X'> <ParaLine <String `b'>>>"},
    {"a statement that never closes",
     para("<String `a x'><Font <FTag `B'><String `b'>"),
     {u"a x", u"b"},
     para("<String `a X'><Font <FTag `B'><String `b'>")},
    {"a statement about the paragraph that never closes",
     "<Para <Pgf <PgfTag `x'> <ParaLine <String `x'>>>",
     {u"x"},
     "<Para <Pgf <PgfTag `x'> <ParaLine <String `X'>>>"},
    {"a string that never closes",
     para("<String `a x'>") + "<Para <ParaLine <String `b",
     {u"a x"},
     para("<String `a X'>") + "<Para <ParaLine <String `b"},
    {"the end in a statement",
     "<Para <ParaLine <String `a x'><Font <FTag",
     {u"a x"},
     "<Para <ParaLine <String `a X'><Font <FTag"},
    {"too many ends", ">>>" + para("<String `x'>>>") + ">", {u"x"}, ">>>" + para("<String `X'>>>") + ">"},
    {"strings without quotes or with two", para("<String x><String `x' `y'><String `a'>"), {u"a"}, ""},
};

class MifFilterCases : public MifFilterTest {
 protected:
  void check(const Case& c, std::string_view header) {
    SCOPED_TRACE(c.name);
    const std::string document = std::string(header) + c.document;
    const auto texts = same_for_every_block_size(document.size(), [&](std::size_t block) {
      const BlockSizeScope scope(block);
      return checked_texts_of(document);
    });
    EXPECT_EQ(texts, c.texts);
    EXPECT_EQ(translated_document(document, to_x),
              std::string(header) + (c.expected.empty() ? c.document : c.expected));
  }
};

TEST_F(MifFilterCases, Structure) {
  for (const Case& c : kStructure) check(c, "<MIFFile 7.00>\n");
}
TEST_F(MifFilterCases, Codes) {
  for (const Case& c : kCodes) check(c, "<MIFFile 2019>\r\n");
}
TEST_F(MifFilterCases, Characters) {
  for (const Case& c : kCharacters) check(c, "<MIFFile 5.50> # x\n");
}
TEST_F(MifFilterCases, Broken) {
  for (const Case& c : kBroken) check(c, "");
}

TEST_F(MifFilterTest, LineEnds) {
  for (const LineEnd& line_end : kLineEnds) {
    SCOPED_TRACE(line_end.name);
    const std::string document = with_line_end(
        "<MIFFile 9.00> # `x'\n<TextFlow\n# <Para\n <Para\n  <ParaLine\n   <String `a '>\n   <ATbl 1>\n   "
        "<Font\n    <FTag `B'>\n   >\n  >\n  <ParaLine\n   <String `x'>\n  >\n >\n>\n",
        line_end);
    const auto texts = same_for_every_block_size(document.size(), [&](std::size_t block) {
      const BlockSizeScope scope(block);
      return checked_texts_of(document);
    });
    EXPECT_EQ(texts, std::vector<std::u16string>{u"a <1/><2/>x"});
    EXPECT_EQ(translated_document(document, to_x),
              with_line_end("<MIFFile 9.00> # `x'\n<TextFlow\n# <Para\n <Para\n  <ParaLine\n   <String `a '>\n   "
                            "<ATbl 1>\n   <Font\n    <FTag `B'>\n   >\n   <String `X'>\n  >\n >\n>\n",
                            line_end));
  }
}

TEST_F(MifFilterTest, PlacesOfSegments) {
  for (const LineEnd& line_end : kLineEnds) {
    SCOPED_TRACE(line_end.name);
    put(u"a.mif",
        with_line_end("<MIFFile 9.00>\n<Para\n <ParaLine\n  <String `a'>\n >>\n" + para("<String `b'>"), line_end));
    const BilingualDocument document(convert(u"a.mif", mif_road()));
    ASSERT_EQ(document.size(), 2u);
    EXPECT_EQ(document.segment(0).line, 4u);
    EXPECT_EQ(document.segment(0).column, 3u);
    EXPECT_EQ(document.segment(1).line, 6u);
    EXPECT_EQ(document.segment(1).column, 16u);
  }
}

TEST_F(MifFilterTest, TheVersionDecidesTheCoding) {
  const struct {
    const char* name;
    std::string document;
    unsigned code_page;
    std::u16string text;
    std::string written;  // the value of the translated string: "x" is "X", as everywhere
  } cases[] = {
      {"UTF-8 from 8.0 on", "<MIFFile 8.00>" + para("<String `\xC3\xA9\xE6\x9D\xB1x'>"), 1252, u"\u00E9\u6771x",
       "\xC3\xA9\xE6\x9D\xB1X"},
      {"escapes in UTF-8", "<MIFFile 10.0>" + para("<String `\\xd2 x\\u6771\\uD83D\\uDE00'>"), 1252,
       u"\u201Cx\u6771\U0001F600", "\xE2\x80\x9CX\xE6\x9D\xB1\xF0\x9F\x98\x80"},
      {"a book", "<Book 2019>" + para("<String `\xC3\xA9x'>"), 1252, u"\u00E9x", "\xC3\xA9X"},
      {"a byte order mark", "\xEF\xBB\xBF<MIFFile 7.00>" + para("<String `\xC3\xA9x'>"), 1252, u"\u00E9x", "\xC3\xA9X"},
      {"invalid UTF-8", "<MIFFile 9.00>" + para("<String `\xE9x'>"), 1252, u"<1/>x", "\xE9'><String `X"},
      {"no version", para("<String `\\x8e x'>"), 65001, u"\u00E9x", "\\x8e X"},
      {"Shift-JIS", "<MIFFile 7.00>\n<MIFEncoding `\x93\xFA\x96\x7B\x8C\xEA'>" + para("<String `\x83\x5C\x93\x60x'>"),
       1252, u"\u30BD\u4F1Dx", "\x83\x5C\x93\x60X"},
      {"hexadecimal Shift-JIS",
       "<MIFFile 6.00>\n<MIFEncoding `\\x93 \\xfa \\x96 \\x7b \\x8c \\xea '>" +
           para("<String `\\x93 \\xfa \\x96 \\x7b x\\xd2 '>"),
       1252, u"\u65E5\u672Cx\u201C", "\x93\xFA\x96\x7BX\x81\x67"},
      {"Japanese by the user's word", "<MIFFile 6.00>" + para("<String `\x93\xFA\\x96 \\x7b x'>"), 932,
       u"\u65E5\u672Cx", "\x93\xFA\x96\x7BX"},
      {"accents in a Japanese document must not become one character",
       "<MIFFile 6.00>" + para("<String `\\x8e '><String `\\x8f x'>"), 932, u"\u00E9\u00E8x",
       "\\x8e '><String `\\x8f X"},
      {"Japanese EUC",
       "<MIFFile 6.00>\n<MIFEncoding `\xC6\xFC\xCB\xDC\xB8\xEC'>" + para("<String `\xC6\xFC\\xcb \\xdc x'>"), 1252,
       u"\u65E5\u672Cx", "\xC6\xFC\xCB\xDCX"},
      {"Korean", "<MIFFile 7.00>\n<MIFEncoding `\xC7\xD1\xB1\xB9\xBE\xEE'>" + para("<String `\xC7\xD1x'>"), 1252,
       u"\uD55Cx", "\xC7\xD1X"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const Road road = mif_road(c.code_page);
    const auto texts = same_for_every_block_size(c.document.size(), [&](std::size_t block) {
      const BlockSizeScope scope(block);
      return checked_texts_of(c.document, road);
    });
    EXPECT_EQ(texts, std::vector<std::u16string>{c.text});
    const std::size_t begin = c.document.rfind("<Para <");
    EXPECT_EQ(translated_document(c.document, to_x, road),
              c.document.substr(0, begin) + para("<String `" + c.written + "'>"));
  }
}

// In its paragraph English text stands in the format's own set and Japanese text in Shift-JIS, as each font says.
TEST_F(MifFilterTest, OneParagraphMixesCodingsByItsFonts) {
  const std::string japanese = "<Font <FTag `'> <FEncoding `JISX0208.ShiftJIS'>>";
  const std::string own = "<Font <FTag `'>>";
  const std::string head = "<MIFFile 7.00>\n";
  const std::string document = head + para("<String `\\x8e x '>" + japanese +
                                           "<String `\x93\xFA\x96\x7B\\x8c \\xea x'>" + own + "<String ` x\\x8f '>");
  EXPECT_EQ(checked_texts_of(document), std::vector<std::u16string>{u"\u00E9x <1>\u65E5\u672C\u8A9Ex</1> x\u00E8"});
  EXPECT_EQ(translated_document(document, to_x),
            head + para("<String `\\x8e X '>" + japanese + "<String `\x93\xFA\x96\x7B\x8C\xEAX'>" + own +
                        "<String ` X\\x8f '>"));
  // What the translation moves is written in the coding of where it comes to stand.
  EXPECT_EQ(translated_document(document, [](std::u16string) { return u"<1>\u65E5</1>\u00E9"; }),
            head + para(japanese + "<String `\x93\xFA'>" + own + "<String `\\x8e '>"));
  EXPECT_NE(reason_of([&] {
              translated_document(document, [](std::u16string) { return u"\u65E5<1>x</1>"; });
            }).find(u"the document cannot hold \"\u65E5\""),
            std::u16string::npos);
}

TEST_F(MifFilterTest, AParagraphOfAJapaneseFormatIsReadAndWrittenInItsCoding) {
  const std::string head =
      "<MIFFile 7.00>\n<PgfCatalog <Pgf <PgfTag `J'> <PgfFont <FEncoding `JISX0208.ShiftJIS'>>>>\n<Para <PgfTag `J'> "
      "<ParaLine <String `";
  EXPECT_EQ(checked_texts_of(head + "\x83\x5C\x93\x60x'>>>"), std::vector<std::u16string>{u"\u30BD\u4F1Dx"});
  EXPECT_EQ(translated_document(head + "\x83\x5C\x93\x60x'>>>", to_x), head + "\x83\x5C\x93\x60X'>>>");
  EXPECT_EQ(checked_texts_of(head + "\x93\xFA\x96 x'>>>"), std::vector<std::u16string>{u"\u65E5<1/> x"})
      << "a byte that is no character is a code";
}

TEST_F(MifFilterTest, ACharacterThatTheVersionLacksNamesItsPlace) {
  const auto russian = [](std::u16string) { return u"\u0416"; };
  const std::u16string reason =
      reason_of([&] { translated_document("<MIFFile 7.00>\n" + para("<String `x'>"), russian); });
  EXPECT_TRUE(reason.starts_with(u"segment 1 (line 2, column 16)")) << testing::PrintToString(reason);
  EXPECT_NE(reason.find(u"\u0416"), std::u16string::npos);
  EXPECT_FALSE(has(u"a_FR.mif"));
  EXPECT_EQ(translated_document("<MIFFile 8.00>\n" + para("<String `x'>"), russian),
            "<MIFFile 8.00>\n" + para("<String `\xD0\x96'>"));
}

TEST_F(MifFilterTest, ADocumentKeepsItsCodePage) {
  const std::string document = "<MIFFile 7.00>\n# \xE9\n" + para("<String `x'>");
  EXPECT_EQ(
      translated_document(document, to_x, {.filter = u"K19MIF", .source_code_page = 1252, .target_code_page = 932}),
      "<MIFFile 7.00>\n# \xE9\n" + para("<String `X'>"));
}

TEST_F(MifFilterTest, TranslationsOfAllShapes) {
  const std::string document = para("<String `a'><ATbl 1><String `b'>");
  const struct {
    const char* name;
    std::u16string translation;
    std::string expected;
  } cases[] = {
      {"the code first", u"<1/>ab", para("<ATbl 1><String `ab'>")},
      {"the code last", u"ab<1/>", para("<String `ab'><ATbl 1>")},
      {"the code alone", u"<1/>", para("<ATbl 1>")},
      {"line ends", u"a\r\nb\r<1/>\n",
       para("<String `a'><Char HardReturn><String `b'><Char HardReturn><ATbl 1>"
            "<Char HardReturn>")},
      {"quotes", u"'a'<1/>`", para("<String `\\qa\\q'><ATbl 1><String `\\Q'>")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(translated_document(document, [&](std::u16string) { return c.translation; }), c.expected);
  }
  EXPECT_NE(reason_of([&] { translated_document(document, [](std::u16string) { return u"ab"; }); }), u"")
      << "a table without its anchor is lost";
}

TEST_F(MifFilterTest, SideTextsShowTheirTagAndStayOneString) {
  const std::string_view document =
      "<MIFFile 7.00>\r\n<KAVOSeg 1>\r\n<TextFlow \r\n <Para \r\n  <KAVOTag `page : x <$pagenum\\>'>\r\n  <ParaLine "
      "\r\n   <String `x\\x11 <$pagenum\\>'>\r\n  >\r\n >\r\n>\r\n";
  put(u"KAVO_xr.mif", document);
  const std::u16string tud = convert(u"KAVO_xr.mif", mif_road());
  EXPECT_EQ(sources(tud), std::vector<std::u16string>{u"x\u00A0<1/>"});
  EXPECT_NE(files.get(tud).find("<note>page : x &lt;$pagenum&gt;</note>"), std::string::npos);
  EXPECT_EQ(rebuild(tud, mif_road()), document);

  // A building block that is typed, or stands in a translation of earlier versions, is written as it is.
  BilingualDocument bilingual(tud);
  bilingual.set_segment(0, "\xC2\xA0\xE2\x80\x91X\n<$pagenum>", TranslationStatus::kTranslated, 0);
  bilingual.save();
  std::string expected(document);
  expected.replace(expected.find("x\\x11 "), 6, "\\x11 \\x15 X ");
  EXPECT_EQ(rebuild(tud, mif_road()), expected);
}

TEST_F(MifFilterTest, BuildingBlocksOfSideTextsAreCodes) {
  const struct {
    const char* name;
    std::string value;
    std::u16string text;  // "" for no segment
    std::string reversed;
  } cases[] = {
      {"of a reference", "see <$paratext\\> on page <$pagenum\\>", u"see <1/> on page <2/>",
       "<$pagenum\\><$paratext\\>see  on page "},
      {"of a number format, with a tab", "S:Step <n+\\>.\\t", u"S:Step <1/>.\t", "<n+\\>S:Step .\\t"},
      {"a counter that shows nothing", "A< =0\\>b", u"A<1/>b", "< =0\\>Ab"},
      {"a character format of several words, an end without its escape", "<Default Font>x<Bold\\>", u"<1/>x<2/>",
       "<Bold\\><Default Font>x"},
      {"alone", "<$lastpagenum\\>", u"", "<$lastpagenum\\>"},
      {"signs of comparison", "a < b \\> c", u"a << b > c", "a < b \\> c"},
      {"behind a backslash it means itself", "a \\\\<b\\>", u"a \\<<b>", "a \\\\<b\\>"},
      {"without an end", "a <b", u"a <<b", "a <b"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string head = "<MIFFile 9.00>\n<TextFlow <Para <KAVOTag `t'> <ParaLine <String `";
    const auto texts = same_for_every_block_size(head.size() + c.value.size(), [&](std::size_t block) {
      const BlockSizeScope scope(block);
      return checked_texts_of(head + c.value + "'>>>>");
    });
    EXPECT_EQ(texts, c.text.empty() ? std::vector<std::u16string>() : std::vector<std::u16string>{c.text});
    const auto codes_first = [](std::u16string text) {
      std::u16string codes, rest;
      for (std::size_t at = 0; at < text.size();) {
        const bool is_code = text[at] == u'<' && text[at + 1] != u'<';
        const std::size_t size = is_code ? text.find(u'>', at) + 1 - at : text[at] == u'<' ? 2 : 1;
        (is_code ? codes.insert(0, text.substr(at, size)) : rest.append(text, at, size));
        at += size;
      }
      return codes + rest;
    };
    EXPECT_EQ(translated_document(head + c.value + "'>>>>", codes_first), head + c.reversed + "'>>>>");
  }
}

TEST_F(MifFilterTest, BuildingBlocksAreShownAndTextsOfTheDocumentHoldNone) {
  put(u"KAVO_va.mif", "<MIFFile 9.00>\n<Para <KAVOTag `t'> <ParaLine <String `of <$lastpagenum\\>'>>>");
  EXPECT_NE(files.get(convert(u"KAVO_va.mif", mif_road())).find(">&lt;$lastpagenum&gt;</ph>"), std::string::npos);
  EXPECT_EQ(checked_texts_of("<MIFFile 9.00>\n" + para("<String `of <$lastpagenum\\>'>")),
            std::vector<std::u16string>{u"of <<$lastpagenum>"});
}

TEST_F(MifFilterTest, ASideTextOfAnOldVersionHoldsCharactersThatOnlyNewDocumentsHave) {
  const std::string document =
      "<MIFFile 7.00>\r\n<TextFlow \r\n <Para \r\n  <KAVOTag `p : \\u0436'>\r\n  <ParaLine \r\n   <String "
      "`\\u0436'>\r\n  >\r\n >\r\n>\r\n";
  put(u"KAVO_xr.mif", document);
  const std::u16string tud = convert(u"KAVO_xr.mif", mif_road());
  EXPECT_EQ(sources(tud), std::vector<std::u16string>{u"\u0436"});
  BilingualDocument bilingual(tud);
  bilingual.set_segment(0, "\u00E9\u0432\U0001F600", TranslationStatus::kTranslated, 0);
  bilingual.save();
  std::string expected(document);
  expected.replace(expected.rfind("\\u0436"), 6, "\\x8e \\u0432\\ud83d\\ude00");
  EXPECT_EQ(rebuild(tud, mif_road()), expected);
}

TEST_F(MifFilterTest, ColoursOfSegments) {
  Road road = mif_road();
  road.colours = SegmentColours{0x0000FF, 0x00FF00, 0xFF0000, 0x332211};
  const std::string definitions =
      " <Color <ColorTag `KAVO untranslated'> <ColorCyan 0.000000> <ColorMagenta 100.000000> <ColorYellow 100.000000> "
      "<ColorBlack 0.000000>>"
      " <Color <ColorTag `KAVO fuzzy'> <ColorCyan 100.000000> <ColorMagenta 0.000000> <ColorYellow 100.000000> "
      "<ColorBlack 0.000000>>"
      " <Color <ColorTag `KAVO exact match'> <ColorCyan 100.000000> <ColorMagenta 100.000000> <ColorYellow 0.000000> "
      "<ColorBlack 0.000000>>"
      " <Color <ColorTag `KAVO translated'> <ColorCyan 93.333333> <ColorMagenta 86.666667> <ColorYellow 80.000000> "
      "<ColorBlack 0.000000>>";
  const auto coloured = [&](std::string_view document) {
    put(u"a.mif", document);
    const std::u16string tud = convert(u"a.mif", road);
    BilingualDocument bilingual(tud);
    bilingual.set_segment(bilingual.size() - 1, "Z", TranslationStatus::kTranslated, 0);
    bilingual.save();
    return rebuild(tud, road);
  };

  const std::string last = para("<String `z'>");
  const std::string last_coloured =
      para("<Font <FTag `'> <FLocked No><FColor `KAVO translated'>><String `Z'><Font <FTag `'> <FLocked No>>");
  EXPECT_EQ(coloured("<ColorCatalog <Color <ColorTag `Red'>>>" + para("<String `a'>") + last),
            "<ColorCatalog" + definitions + " <Color <ColorTag `Red'>>>" +
                para("<Font <FTag `'> <FLocked No><FColor `KAVO untranslated'>><String `a'>"
                     "<Font <FTag `'> <FLocked No>>") +
                last_coloured)
      << "into the document's catalogue";
  EXPECT_EQ(
      coloured("<TextFlow " +
               para("<Font <FTag `B'><FColor `Red'>>\n <String `a'><Font <FTag `C'>><String `b'>"
                    "<Font <FTag `'>>") +
               last + ">"),
      "<ColorCatalog" + definitions + "> <TextFlow " +
          para("<Font <FTag `B'><FColor `Red'>>\n <Font <FTag `B'><FColor `KAVO untranslated'>>\n <String `a'>"
               "<Font <FTag `C'><FColor `KAVO untranslated'>><String `b'><Font <FTag `'><FColor `KAVO untranslated'>>"
               "\n <Font <FTag `'>>") +
          last_coloured + ">")
      << "a catalogue of their own; fonts keep what they set";
  EXPECT_EQ(coloured("<TextFlow <Para <KAVOTag `z'> <ParaLine <String `z'>>>>"),
            "<ColorCatalog" + definitions + "> <TextFlow <Para <KAVOTag `z'> <ParaLine <String `Z'>>>>")
      << "side texts are read by a program";
}

TEST_F(MifFilterTest, LongParagraphsAreCutTheSameWayEverywhere) {
  std::string document = "<MIFFile 9.00>\n<Para <ParaLine ";
  while (document.size() < 2 * mif::kLongestParagraph) document += "<String `some words \xC3\xA9 '>\n<AFrame 1>";
  document += "<String `last'>>>" +
              para("<String `a'><Marker <MText `" + std::string(300000, 'm') + "'>><String `b'>") +
              para("<String `" + std::string(mif::kLongestString, 'l') + "'><String `c'>") + "# " +
              std::string(300000, '`') + "\n" + para("<String `d'>\n # " + std::string(300000, '-') + "\n<String `e'>");
  std::vector<std::u16string> expected;
  for (const std::size_t block : {std::size_t{1} << 24, std::size_t{4096}, std::size_t{1000}, std::size_t{77777}}) {
    const BlockSizeScope scope(block);
    const auto texts = checked_texts_of(document);
    if (expected.empty()) expected = texts;
    EXPECT_TRUE(texts == expected) << "with blocks of " << block;
  }
  ASSERT_GE(expected.size(), 7u);
  EXPECT_EQ(std::vector<std::u16string>(expected.end() - 5, expected.end()),
            (std::vector<std::u16string>{u"a", u"b", u"c", u"d", u"e"}));
}

}  // namespace
}  // namespace kavo::test
