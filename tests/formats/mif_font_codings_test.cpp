#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "formats/mif/font_codings.h"

namespace kavo::mif {
namespace {

// The code pages of all strings of lines, as the document is read.
std::vector<unsigned> code_pages(std::string_view document, unsigned code_page) {
  FontCodings codings(coding_of(document, code_page));
  MifTokenScanner scanner;
  std::vector<unsigned> pages;
  bool is_line_string = false;
  MifToken token;
  for (std::size_t at = 0; at < document.size(); at += token.bytes.size()) {
    scanner.next(document.substr(at), true, token);
    codings.take(token);
    if (token.kind == MifTokenKind::kOpen) is_line_string = token.name() == "String";
    if (token.kind == MifTokenKind::kString && is_line_string) pages.push_back(codings.current_code_page());
  }
  return pages;
}

struct Case {
  const char* name;
  std::string document;  // after its version
  std::vector<unsigned> expected;
  unsigned code_page = 1252;
};

const Case kCases[] = {
    {"no font", "<Para <ParaLine <String `a'>>>", {1252}},
    {"the names of the codings",
     "<Para <ParaLine <Font <FEncoding `JISX0208.ShiftJIS'>> <String `a'> <Font <FEncoding `BIG5'>> <String `a'>"
     " <Font <FEncoding `GB2312-80.EUC'>> <String `a'> <Font <FEncoding `KSC5601-1992'>> <String `a'>"
     " <Font <FEncoding `FrameRoman'>> <String `a'> <Font <FEncoding `Klingon'>> <String `a'>>>",
     {932, 950, 936, 949, 1252, 1252}},
    {"a Western font in a document that the user calls Japanese",
     "<Para <ParaLine <Font <FEncoding `FrameRoman'>> <String `a'> <Font <FTag `'>> <String `b'>>>",
     {1252, 932},
     932},
    {"a Western font in a document of another Western code page",
     "<Para <ParaLine <Font <FEncoding `FrameRoman'>> <String `a'>>>",
     {1250},
     1250},
    {"a font holds until the next one, over the end of a line",
     "<Para <ParaLine <String `a'> <Font <FEncoding `BIG5'>>> <ParaLine <String `b'> <Font <FTag `'>> <String `c'>>>",
     {1252, 950, 1252}},
    {"and not into the next paragraph",
     "<Para <ParaLine <Font <FEncoding `BIG5'>> <String `a'>>><Para <ParaLine <String `b'>>>",
     {950, 1252}},
    {"nor into a text line", "<TextLine <Font <FEncoding `BIG5'>> <String `a'>><TextLine <String `b'>>", {950, 1252}},
    {"a paragraph that was never closed ends with the next one",
     "<Para <ParaLine <Font <FEncoding `BIG5'>> <String `a'>><Para <ParaLine <String `b'>>>",
     {950, 1252}},
    {"the font of the paragraph's format",
     "<PgfCatalog <Pgf <PgfTag `J'> <PgfFont <FTag `'> <FEncoding `JISX0208.ShiftJIS'>>> <Pgf <PgfTag `E'> <PgfFont "
     "<FEncoding `FrameRoman'>>>>"
     "<Para <PgfTag `J'> <ParaLine <String `a'>>><Para <PgfTag `E'> <ParaLine <String `b'>>>",
     {932, 1252}},
    {"the paragraph's own format counts more than the catalogue's",
     "<PgfCatalog <Pgf <PgfTag `J'> <PgfFont <FEncoding `JISX0208.ShiftJIS'>>>>"
     "<Para <PgfTag `J'> <Pgf <PgfFont <FEncoding `FrameRoman'>>> <ParaLine <String `a'>>>"
     "<Para <PgfTag `J'> <Pgf <PgfAlignment Left>> <ParaLine <String `b'>>>",
     {1252, 932}},
    {"a character format by its tag",
     "<FontCatalog <Font <FTag `J'> <FEncoding `JISX0208.ShiftJIS'>> <Font <FTag `Bold'> <FWeight `Bold'>>>"
     "<Para <ParaLine <Font <FTag `J'>> <String `a'> <Font <FTag `Bold'>> <String `b'> <Font <FTag `J'> <FEncoding "
     "`BIG5'>> <String `c'>>>",
     {932, 1252, 950}},
    {"back to the paragraph's own font",
     "<PgfCatalog <Pgf <PgfTag `J'> <PgfFont <FEncoding `JISX0208.ShiftJIS'>>>>"
     "<Para <PgfTag `J'> <ParaLine <Font <FEncoding `FrameRoman'>> <String `a'> <Font <FTag `'>> <String `b'>>>",
     {1252, 932}},
    {"ends without a beginning", ">>><Para <ParaLine <String `a'>>>>>", {1252}},
};

TEST(FontCodingsTest, EachStringHasTheCodingOfItsFont) {
  for (const Case& c : kCases)
    EXPECT_EQ(code_pages("<MIFFile 7.00>\n" + c.document, c.code_page), c.expected) << c.name;
}

TEST(FontCodingsTest, FontsDoNotCountFromVersion8OnOrAfterADeclaration) {
  const std::string text = "<Para <ParaLine <Font <FEncoding `BIG5'>> <String `a'>>>";
  EXPECT_EQ(code_pages("<MIFFile 8.00>\n" + text, 1252), std::vector<unsigned>{kUtf8CodePage});
  EXPECT_EQ(code_pages("<MIFFile 7.00>\n<MIFEncoding `\x93\xFA\x96\x7B\x8C\xEA'>\n" + text, 1252),
            std::vector<unsigned>{932});
}

TEST(FontCodingsTest, ACodingThatIsAskedForTwiceIsOne) {
  const FontCodings codings(coding_of("<MIFFile 7.00>", 1252));
  EXPECT_EQ(&codings.of(1252), &codings.document());
  EXPECT_EQ(&codings.of(932), &codings.of(932));
  EXPECT_TRUE(codings.of(932).is_double_byte());
}

}  // namespace
}  // namespace kavo::mif
