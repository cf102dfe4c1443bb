#include "suite/filters/rtf/rtf_filter.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "common/block_reader.h"
#include "suite/filters/rtf/rtf_extraction.h"
#include "suite/suite_fixture.h"
#include "support/failures.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

class RtfFilterTest : public SuiteTest {
 protected:
  static Road rtf_road(unsigned code_page = 1252) { return {.filter = u"K19RTF", .source_code_page = code_page}; }

  std::string translated_document(std::string_view document, const Translate& translate) {
    return translated(u"a.rtf", document, translate, rtf_road());
  }
  // The texts, of a document that comes back unchanged.
  std::vector<std::u16string> checked_texts_of(std::string_view document) {
    put(u"a.rtf", document);
    const std::u16string tud = convert(u"a.rtf", rtf_road());
    EXPECT_EQ(rebuild(tud, rtf_road()), document);
    return sources(tud);
  }
};

std::u16string to_x(std::u16string text) {
  std::replace(text.begin(), text.end(), u'x', u'X');
  return text;
}

constexpr std::string_view kHead =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\froman\\fcharset0 Times;}{\\f1\\fcharset2 Symbol;}"
    "{\\f2\\fcharset0 Arial;}{\\f36\\fcharset238 Times CE;}{\\f40\\fcharset128 "
    "Gothic;}}{\\colortbl;\\red0\\green0\\blue0;}";

struct Case {
  const char* name;
  std::string body;  // between kHead and the end
  std::vector<std::u16string> texts;
  std::string expected;  // with "X" for every "x" in the texts; "" for the same as `body`
};

const Case kStructure[] = {
    {"empty", "", {}, ""},
    {"paragraphs", "\\pard One x\\par\r\nTwo\\par}", {u"One x", u"Two"}, "\\pard One X\\par\r\nTwo\\par}"},
    {"the ends of paragraphs",
     "a\\cell b\\row c\\sect d\\page e\\\nf x\\nestcell}",
     {u"a", u"b", u"c", u"d", u"e", u"f x"},
     "a\\cell b\\row c\\sect d\\page e\\\nf X\\nestcell}"},
    {"blanks in front stay outside", "\\par   x \\par}", {u"x "}, "\\par   X \\par}"},
    {"line ends in a text", "a\r\n x\\par}", {u"a x"}, "a X\\par}"},
    {"a line break and a tab in numbers are codes, too",
     "a\\u10?b\\u9 ?c\\'09d\\u13?x\\par}",
     {u"a<1/>b<2/>c<3/>d<4/>x"},
     "a\\u10?\n{}b\\u9 ?\n{}c\\'09d\\u13?\n{}X\\par}"},
    {"a line break and a tab are codes", "a\\line b\\tab x\\par}", {u"a<1/>b<2/>x"}, "a\\line b\\tab X\\par}"},
    {"destinations of data",
     "{\\stylesheet{x;}}{\\*\\unknown x}{\\*\\generator x;}{\\info{\\author x}}{\\listtext x}{\\pict x}"
     "{\\nonesttables x}{\\generator x}a x\\par}",
     {u"a x"},
     "{\\stylesheet{x;}}{\\*\\unknown x}{\\*\\generator x;}{\\info{\\author x}}{\\listtext x}{\\pict x}"
     "{\\nonesttables x}{\\generator x}a X\\par}"},
    {"information",
     "{\\info{\\title x}{\\subject S}{\\keywords K}{\\doccomm D}{\\comment x}{\\operator x}}}",
     {u"x", u"S", u"K", u"D"},
     "{\\info{\\title X}{\\subject S}{\\keywords K}{\\doccomm D}{\\comment x}{\\operator x}}}"},
    {"headers and footers",
     "{\\header \\pard x\\par}{\\footerf F\\chpgn}{\\*\\ftnsep x\\chftnsep}a\\par}",
     {u"x", u"F", u"a"},
     "{\\header \\pard X\\par}{\\footerf F\\chpgn}{\\*\\ftnsep x\\chftnsep}a\\par}"},
    {"what follows the end", "a x\\par}x {x} \\par", {u"a x"}, "a X\\par}x {x} \\par"},
    {"an end that is missing", "a x\\par b", {u"a x", u"b"}, "a X\\par b"},
    {"\\* counts at the beginning of a group only", "{\\b0\\*\\cs7 x}\\par}", {u"x"}, "{\\b0\\*\\cs7 X}\\par}"},
    {"a text that looks like syntax", "a \\{x\\}\\\\\\par}", {u"a {x}\\"}, "a \\{X\\}\\\\\\par}"},
};

const Case kFormatting[] = {
    {"what a reader does not see",
     "{\\langfe1033\\insrsid1 a }{\\insrsid2\\kerning8\\rtlch\\af0 \\ltrch x}{\\noproof b}\\par}",
     {u"a xb"},
     "{\\langfe1033\\insrsid1 a Xb}\\par}"},
    {"bold in braces", "a {\\b x} b\\par}", {u"a <1>x</1> b"}, "a {\\b X} b\\par}"},
    {"bold on and off", "a \\b x\\b0  b\\par}", {u"a <1>x</1> b"}, "a {\\b X} b\\b \\b0 \\par}"},
    {"around all of it", "{\\b\\fs40 x}\\par}", {u"x"}, "{\\b\\fs40 X}\\par}"},
    {"at the beginning", "{\\b a} x\\par}", {u"a<1> x</1>"}, "{\\b a{\\b0  X}}\\par}"},
    {"inside one another",
     "a {\\b b {\\i c} x} d\\par}",
     {u"a <1>b <2>c</2> x</1> d"},
     "a {\\b b }{\\b\\i c}{\\b  X} d\\par}"},
    {"behind one another", "a {\\b b}{\\i x} c\\par}", {u"a <1>b</1><2>x</2> c"}, "a {\\b b}{\\i X} c\\par}"},
    {"groups that replace one another",
     "{\\insrsid1 a }{\\b\\insrsid2 x}{\\insrsid3  b}\\par}",
     {u"a <1>x</1> b"},
     "{\\insrsid1 a {\\b X} b}\\par}"},
    {"fonts of one look", "a {\\f36 \\'e8} x\\par}", {u"a \u010D x"}, "a \\u269? X\\par}"},
    {"another font", "a {\\f2 x}\\par}", {u"a <1>x</1>"}, "a {\\f2 X}\\par}"},
    {"the font of Western text in a style",
     "\\loch\\af2\\hich\\af2\\dbch\\af40 {\\hich\\af2\\dbch\\af40\\loch\\f2 a }{\\dbch\\af0 x}\\par}",
     {u"a x"},
     "\\loch\\af2\\hich\\af2\\dbch\\af40 {\\hich\\af2\\dbch\\af40\\loch\\f2 a X}\\par}"},
    {"a tab in other formatting", "a{\\ul\\tab }x\\par}", {u"a<1/>x"}, "a{\\ul\\tab }X\\par}"},
    {"a tab that shows another look", "a\\ul\\tab\\ulnone x\\par}", {u"a<1/>x"}, "a{\\ul\\tab}X\\ul\\ulnone \\par}"},
    {"symbols", "a {\\f1\\'b7} x\\par}", {u"a <1/> x"}, "a {\\f1\\'b7} X\\par}"},
    {"hidden text", "a {\\v x}\\par}", {u"a <1>x</1>"}, "a {\\v X}\\par}"},
    {"a deleted text is none", "a {\\deleted x} x\\par}", {u"a <1/> x"}, "a {\\deleted x} X\\par}"},
    {"an inserted one is", "a {\\revised x}\\par}", {u"a x"}, "a X\\par}"},
    {"properties of the paragraph stay behind the text", "a\\qc x\\par}", {u"ax"}, "aX\\qc \\par}"},
};

const Case kCodes[] = {
    {"our marker", "a {\\v\\mor OBJ 1 } x\\par}", {u"a <1/> x"}, "a {\\v\\mor OBJ 1 } X\\par}"},
    {"a picture", "a {\\pict x{\\*\\y}\\bin3 }}}} x\\par}", {u"a <1/> x"}, "a {\\pict x{\\*\\y}\\bin3 }}}} X\\par}"},
    {"what stands in front of all text stays outside",
     "{\\pict x}{\\*\\bkmkstart x}\\tab a x\\tab\\par}",
     {u"a x"},
     "{\\pict x}{\\*\\bkmkstart x}\\tab a X\\tab\\par}"},
    {"bookmarks",
     "a {\\*\\bkmkstart x}x{\\*\\bkmkend x}\\par}",
     {u"a <1/>x"},
     "a {\\*\\bkmkstart x}X{\\*\\bkmkend x}\\par}"},
    {"a link",
     "a {\\field{\\*\\fldinst{HYPERLINK \"x\"}}{\\fldrslt{\\ul x}}} b\\par}",
     {u"a <1><2>x</2></1> b"},
     "a {\\field{\\*\\fldinst{HYPERLINK \"x\"}}{\\fldrslt{\\ul X}}} b\\par}"},
    {"the look of a link ends with it",
     "a {\\field{\\*\\fldinst HYPERLINK x}{\\fldrslt\\ul\\cf1 x}} b\\par c\\par}",
     {u"a <1><2>x</2></1> b", u"c"},
     "a {\\field{\\*\\fldinst HYPERLINK x}{\\fldrslt{\\ul\\cf1 X}}} b\\par c\\par}"},
    {"a link at the beginning",
     "{\\field{\\*\\fldinst HYPERLINK x}{\\fldrslt x}} b\\par}",
     {u"<1>x</1> b"},
     "{\\field{\\*\\fldinst HYPERLINK x}{\\fldrslt X}} b\\par}"},
    {"a link over the end of a paragraph",
     "a {\\field{\\*\\fldinst HYPERLINK x}{\\fldrslt b\\par x}} c\\par}",
     {u"a ", u"b", u"x", u" c"},
     "a {\\field{\\*\\fldinst HYPERLINK x}{\\fldrslt b\\par X}} c\\par}"},
    {"what is computed",
     "Page {\\field{\\*\\fldinst PAGE }{\\fldrslt x}} of x\\par}",
     {u"Page <1/> of x"},
     "Page {\\field{\\*\\fldinst PAGE }{\\fldrslt x}} of X\\par}"},
    {"a table of contents",
     "{\\field{\\*\\fldinst TOC \\\\o}{\\fldrslt x\\par x\\par}}\\par a x\\par}",
     {u"a x"},
     "{\\field{\\*\\fldinst TOC \\\\o}{\\fldrslt x\\par x\\par}}\\par a X\\par}"},
    {"a footnote",
     "a{\\super\\chftn{\\footnote \\pard\\chftn  x\\par}} b x\\par}",
     {u" x", u"a<1/> b x"},
     "a{\\super\\chftn{\\footnote \\pard\\chftn  X\\par}} b X\\par}"},
    {"an endnote",
     "a{\\super\\chftn{\\footnote\\ftnalt\\pard\\chftn  x\\par}} b x\\par}",
     {u" x", u"a<1/> b x"},
     "a{\\super\\chftn{\\footnote\\ftnalt\\pard\\chftn  X\\par}} b X\\par}"},
    {"an entry of a table of contents", "{\\v{\\tc x}}a x\\par}", {u"x", u"a x"}, "{\\v{\\tc X}}a X\\par}"},
    {"a footnote at the end", "a x{\\footnote x}\\par}", {u"a x", u"x"}, "a X{\\footnote X}\\par}"},
    {"an annotation",
     "a{\\*\\atnid x}{\\*\\annotation{\\*\\atndate x}x} b\\par}",
     {u"x", u"a<1/><2/> b"},
     "a{\\*\\atnid x}{\\*\\annotation{\\*\\atndate x}X} b\\par}"},
    {"a text box, once",
     "{\\shp{\\*\\shpinst{\\sp{\\sn x}{\\sv x}}{\\shptxt \\pard x\\par b\\par}}{\\shprslt{\\*\\do{\\dptxbxtext "
     "x}}}}a\\par}",
     {u"x", u"b", u"a"},
     "{\\shp{\\*\\shpinst{\\sp{\\sn x}{\\sv x}}{\\shptxt \\pard X\\par b\\par}}{\\shprslt{\\*\\do{\\dptxbxtext "
     "x}}}}a\\par}"},
    {"a text box of an older program",
     "{\\*\\do{\\dptxbx{\\dptxbxtext x}}}\\par}",
     {u"x"},
     "{\\*\\do{\\dptxbx{\\dptxbxtext X}}}\\par}"},
    {"index entries", "a {\\v{\\xe{x\\:y}}}x\\par}", {u"x<1/>y", u"a <1/>x"}, "a {\\v{\\xe{X\\:y}}}X\\par}"},
    {"form fields",
     "a {\\field{\\*\\fldinst FORMTEXT{\\*\\formfield{\\*\\ffname x}{\\*\\ffdeftext x}{\\*\\ffl b}}}{\\fldrslt "
     "x}}\\par}",
     {u"x", u"b", u"a <1>x</1>"},
     "a {\\field{\\*\\fldinst FORMTEXT{\\*\\formfield{\\*\\ffname x}{\\*\\ffdeftext X}{\\*\\ffl b}}}{\\fldrslt "
     "X}}\\par}"},
};

class RtfFilterCases : public RtfFilterTest {
 protected:
  void check(const Case& c) {
    SCOPED_TRACE(c.name);
    const std::string document = std::string(kHead) + c.body;
    const auto texts = same_for_every_block_size(document.size(), [&](std::size_t block) {
      const BlockSizeScope scope(block);
      return checked_texts_of(document);
    });
    EXPECT_EQ(texts, c.texts);
    EXPECT_EQ(translated_document(document, to_x), std::string(kHead) + (c.expected.empty() ? c.body : c.expected));
  }
};

TEST_F(RtfFilterCases, Structure) {
  for (const Case& c : kStructure) check(c);
}
TEST_F(RtfFilterCases, Formatting) {
  for (const Case& c : kFormatting) check(c);
}
TEST_F(RtfFilterCases, Codes) {
  for (const Case& c : kCodes) check(c);
}

TEST_F(RtfFilterTest, OtherFormatsAreRefused) {
  put(u"a.rtf", "x {\\rtf1 a}");
  const auto refusal = failure_of([&] { convert(u"a.rtf", rtf_road()); });
  ASSERT_TRUE(refusal);
  EXPECT_NE(refusal->description().find(u"not an RTF document"), std::u16string::npos);
  EXPECT_EQ(checked_texts_of("\xEF\xBB\xBF \r\n{\\rtf1 a\\par}"), std::vector<std::u16string>{u"a"});
}

TEST_F(RtfFilterTest, TheCodePageIsTheDocumentsThenTheUsers) {
  EXPECT_EQ(checked_texts_of("{\\rtf1\\ansi\\ansicpg1251 \\'e4}"), std::vector<std::u16string>{u"\u0434"});
  put(u"a.rtf", "{\\rtf1\\ansi \\'e4}");
  EXPECT_EQ(sources(convert(u"a.rtf", rtf_road(1251))), std::vector<std::u16string>{u"\u0434"});
  EXPECT_EQ(sources(convert(u"a.rtf", rtf_road(65001))), std::vector<std::u16string>{u"\u00E4"});
}

TEST_F(RtfFilterTest, ACodePageThatIsNotSupportedLeavesItsBytesAsCodes) {
  EXPECT_EQ(checked_texts_of("{\\rtf1\\ansicpg1361 caf\\'8e x}"), std::vector<std::u16string>{u"caf<1/> x"});
}

// What a translator does to codes never unbalances a document.
TEST_F(RtfFilterTest, CodesInAnyOrderKeepTheBracesBalanced) {
  const std::string document =
      std::string(kHead) +
      "{\\insrsid1 a }{\\b b}{\\field{\\*\\fldinst HYPERLINK y}{\\fldrslt{\\ul c}}}{\\i\\tab d}\\par}";
  ASSERT_EQ(checked_texts_of(document), std::vector<std::u16string>{u"a <1>b</1><2><3>c</3></2><4/><5>d</5>"});
  const auto written = [&](std::u16string_view text) {
    const std::string result =
        translated_document(document, [&](const std::u16string&) { return std::u16string(text); });
    return result.substr(kHead.size(), result.size() - kHead.size());
  };
  EXPECT_EQ(written(u"z"), "{\\insrsid1 z}\\par}") << "no codes";
  EXPECT_EQ(written(u"<2>z</2><1>y</1>"), "{\\insrsid1 {\\field{\\*\\fldinst HYPERLINK y}{\\fldrslt z}}{\\b y}}\\par}");
  EXPECT_EQ(written(u"<1>y<2>z</2></1><4/>"),
            "{\\insrsid1 {\\b y}{\\field{\\*\\fldinst HYPERLINK y}{\\fldrslt{\\b z}}}{\\i\\tab }}\\par}");
}

TEST_F(RtfFilterTest, AParagraphWithoutEndIsCut) {
  std::string document = "{\\rtf1 ";
  while (document.size() < 3 * rtf::kLongestParagraph) document += "some words and ";
  const auto texts = checked_texts_of(document);
  EXPECT_GT(texts.size(), 1u);
  for (const std::u16string& text : texts) EXPECT_LE(text.size(), rtf::kLongestParagraph + 100);
}

TEST_F(RtfFilterTest, AParagraphOfManyCodesIsCut) {
  std::string document = "{\\rtf1 ";
  for (std::size_t i = 0; i < 2 * rtf::kMostItems; ++i) document += "a\\tab ";
  const auto texts = checked_texts_of(document + "\\par}");
  EXPECT_GT(texts.size(), 3u);
  for (const std::u16string& text : texts) EXPECT_LE(text.size(), 8 * rtf::kMostItems);
  // \u and its fallback stay together.
  std::string numbers = "{\\rtf1\\uc1 ";
  for (std::size_t i = 0; i < rtf::kMostItems; ++i) numbers += "\\u8364\\emdash \\b \\b0 ";
  std::u16string all;
  for (const std::u16string& text : checked_texts_of(numbers + "\\par}")) all += text;
  EXPECT_EQ(all, std::u16string(rtf::kMostItems, u'\u20AC'));
}

TEST_F(RtfFilterTest, ALongPictureBetweenTextsIsACodeUpToALimit) {
  const std::string picture = "{\\pict " + std::string(rtf::kLongestData / 2, 'f') + "}";
  EXPECT_EQ(checked_texts_of("{\\rtf1 a " + picture + " b\\par}").size(), 1u);
  EXPECT_EQ(checked_texts_of("{\\rtf1 a " + picture + picture + picture + " b\\par}").size(), 2u);
}

TEST_F(RtfFilterTest, DeepGroups) {
  const std::string deep(1'000'000, '{');
  const std::string ends(1'000'000, '}');
  EXPECT_EQ(checked_texts_of("{\\rtf1 a" + deep + "x" + ends + " b\\par}").size(), 1u);
  EXPECT_EQ(checked_texts_of("{\\rtf1 " + deep).size(), 0u);
  std::string notes;
  for (int i = 0; i < 20'000; ++i) notes += "a{\\footnote ";
  checked_texts_of("{\\rtf1 " + notes);
  std::string fields;
  for (int i = 0; i < 20'000; ++i) fields += "a{\\field{\\*\\fldinst X}{\\fldrslt ";
  checked_texts_of("{\\rtf1 " + fields);
}

}  // namespace
}  // namespace kavo::test
