// What a rebuilt page has of the target: its coding, its language, the colours of its segments.
#include <gtest/gtest.h>

#include <algorithm>

#include "suite/filters/html/html_extraction.h"
#include "suite/html_filter_fixture.h"
#include "suite/html_filter_property.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

using namespace std::string_view_literals;

std::u16string to_x(std::u16string text) {
  std::replace(text.begin(), text.end(), u'x', u'X');
  return text;
}

TEST_F(HtmlFilterTest, ThePageDeclaresItsCoding) {
  const struct {
    const char* name;
    std::string_view page;
    std::u16string text;
  } cases[] = {
      {"meta charset", "<meta charset=windows-1252>\xE9", u"\u00E9"},
      {"http-equiv", "<META CONTENT='text/html; charset = iso-8859-1' HTTP-EQUIV=Content-Type>\xE9", u"\u00E9"},
      {"XML declaration", "<?xml version='1.0' encoding='windows-1251'?>\xE9", u"\u0439"},
      {"Japanese", "<meta charset=\"Shift_JIS\">\x83\x5C\x83\x7C", u"\u30BD\u30DD"},
      {"Japanese EUC", "<meta charset=EUC-JP>\xA5\xBD\x8E\xB1\x8F\xB0\xA1x", u"\u30BD\uFF71<1/>x"},
      {"not in a comment", "<!-- <meta charset=windows-1252> -->\xC3\xA9", u"\u00E9"},
      {"not in a script", "<script>'<meta charset=windows-1252>'</script>\xC3\xA9", u"\u00E9"},
      {"unknown", "<meta charset='<%= x %>'>\xC3\xA9", u"\u00E9"},
      {"a page that says UTF-16 and can be read is UTF-8", "<meta charset=utf-16>\xC3\xA9", u"\u00E9"},
      {"UTF-8 mark", "\xEF\xBB\xBF<meta charset=windows-1252>\xC3\xA9", u"\u00E9"},
      {"UTF-16", "\xFF\xFE<\0p\0>\0\xE9\0&\0l\0t\0;\0<\0/\0p\0>\0"sv, u"\u00E9<<"},
      {"UTF-16 big endian", "\xFE\xFF\0<\0p\0>\xD8\x3D\xDE\x00\0x\xD8\x3D\0y"sv, u"\U0001F600x<1/>y"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const auto texts = same_for_every_block_size(c.page.size(), [&](std::size_t block) {
      const BlockSizeScope scope(block);
      EXPECT_EQ(unchanged(c.page), c.page);
      return texts_of(c.page);
    });
    EXPECT_EQ(texts, std::vector<std::u16string>{c.text});
  }
}

TEST_F(HtmlFilterTest, Utf16PagesComeBackWithAnOddByte) {
  EXPECT_EQ(unchanged("\xFF\xFEx\0<\0b\0>\0\x3C"sv), "\xFF\xFEx\0<\0b\0>\0\x3C"sv);
  EXPECT_EQ(translated_page("\xFF\xFEx\0 \0&\0"sv, to_x), "\xFF\xFEX\0 \0&\0a\0m\0p\0;\0"sv);
}

TEST_F(HtmlFilterTest, TrailBytesThatLookLikeSyntax) {
  // Each character's second byte is "\", "|" or "`".
  const std::string_view page = "<meta charset=shift_jis><p title='\x83\x5C'>\x83\x7C\x83\x60 x</p>";
  EXPECT_EQ(texts_of(page), (std::vector<std::u16string>{u"\u30BD", u"\u30DD\u30C1 x"}));
  EXPECT_EQ(translated_page(page, to_x), "<meta charset=shift_jis><p title='\x83\x5C'>\x83\x7C\x83\x60 X</p>");
}

TEST_F(HtmlFilterTest, JapaneseEucIsWrittenAgain) {
  const auto longer = [](std::u16string text) { return text + u"\u30C1\uFF71\u00E9"; };
  EXPECT_EQ(translated_page("<meta charset=euc-jp><p>\xA5\xBD</p>", longer),
            "<meta charset=euc-jp><p>\xA5\xBD\xA5\xC1\x8E\xB1&#233;</p>");
}

TEST_F(HtmlFilterTest, CharactersThatTheCodingLacksBecomeReferences) {
  const auto russian = [](std::u16string) { return u"\u0416 \u00E9 \U0001F600"; };
  EXPECT_EQ(translated_page("<meta charset=windows-1252><p title=x>x", russian),
            "<meta charset=windows-1252><p title=\"&#1046; \xE9 &#128512;\">&#1046; \xE9 &#128512;");
}

TEST_F(HtmlFilterTest, AnotherCodePage) {
  const Road road{.filter = u"K19HTM", .target_code_page = 1251};
  const std::string_view page =
      "<?xml version='1.0' encoding=\"iso-8859-1\"?><meta http-equiv=content-type content='text/html; "
      "charset=iso-8859-1'><meta charset = latin1><!-- \xE9 --><p>x <img alt='y' src='\xE9'> z";
  EXPECT_EQ(translated_page(
                page, [](std::u16string text) { return text.starts_with(u"x") ? u"\u0416 <1/>" : text; }, road),
            "<?xml version='1.0' encoding=\"windows-1251\"?><meta http-equiv=content-type content='text/html; "
            "charset=windows-1251'><meta charset = windows-1251><!-- &#233; --><p>\xC6 <img alt='y' src='&#233;'>");
}

TEST_F(HtmlFilterTest, NoReferenceCanStandInAScript) {
  const Road road{.filter = u"K19HTM", .target_code_page = 1251};
  EXPECT_EQ(unchanged("<meta charset=latin1><script>'\xAB'</script>", road),
            "<meta charset=windows-1251><script>'\xAB'</script>");
  put(u"a.htm", "<meta charset=latin1><script>'\xE9'</script>x");
  const std::u16string tud = convert(u"a.htm", road);
  EXPECT_TRUE(reason_of([&] { rebuild(tud, road); }).starts_with(u"Code page 1251 has no character"));
}

TEST_F(HtmlFilterTest, AMarkOrAnUnknownCodingStays) {
  const Road road{.filter = u"K19HTM", .source_code_page = 1252, .target_code_page = 1251};
  EXPECT_EQ(translated_page(
                "\xEF\xBB\xBF<meta charset=utf-8>x", [](std::u16string) { return u"\u0416"; }, road),
            "\xEF\xBB\xBF<meta charset=utf-8>\xD0\x96");
  EXPECT_EQ(translated_page(
                "<meta charset=koi8-r>x", [](std::u16string) { return u"\u0416\u00E9"; }, road),
            "<meta charset=koi8-r>&#1046;&#233;");
}

TEST_F(HtmlFilterTest, TheLanguageOfThePage) {
  EXPECT_EQ(unchanged("<html lang=en xml:lang='en-US'><meta content=en http-equiv=Content-Language><p lang=en>x"),
            "<html lang=fr xml:lang='fr'><meta content=fr http-equiv=Content-Language><p lang=en>x");
  // A value that a script writes is left to the script.
  EXPECT_EQ(unchanged("<html lang=\"<!-- ASP2HTML 1 -->\"><p>x"), "<html lang=\"<!-- ASP2HTML 1 -->\"><p>x");
}

TEST_F(HtmlFilterTest, LineEndsOfPreformattedText) {
  for (const LineEnd& line_end : kLineEnds) {
    SCOPED_TRACE(line_end.name);
    const std::string page = with_line_end("<pre>\na\n\n x</pre>\n<p>b\nx</p>", line_end);
    EXPECT_EQ(texts_of(page), (std::vector<std::u16string>{u"a\n\n x", u"b x"}));
    EXPECT_EQ(unchanged(page), page);
    EXPECT_EQ(translated_page(page, [](std::u16string text) { return text + u"\ny"; }),
              with_line_end("<pre>\na\n\n x\ny</pre>\n", line_end) + "<p>b x\ny</p>");
  }
}

TEST_F(HtmlFilterTest, PlacesOfSegments) {
  for (const LineEnd& line_end : kLineEnds) {
    SCOPED_TRACE(line_end.name);
    put(u"a.htm", with_line_end("<p>a\n</p>\n\n <p title='b'> c <img alt=d>e", line_end));
    const std::u16string tud = convert(u"a.htm", html_road());
    std::vector<std::string> places;
    const std::string xml = files.get(tud);
    for (const auto& [line, column] : {std::pair(1, 4), std::pair(4, 12), std::pair(4, 27), std::pair(4, 16)}) {
      const BilingualDocument document(tud);
      const BilingualSegment segment = document.segment(places.size());
      EXPECT_EQ(segment.line, static_cast<std::uint32_t>(line));
      EXPECT_EQ(segment.column, static_cast<std::uint32_t>(column));
      places.emplace_back(segment.source);
    }
  }
}

TEST_F(HtmlFilterTest, ColoursOfSegments) {
  Road road = html_road();
  road.colours = SegmentColours{0x0000FF, 0x00FF00, 0xFF0000, 0x332211};
  put(u"a.htm", "<title>a</title><p>b<td><option>c</option><img alt='d'><p>e</p>");
  const std::u16string tud = convert(u"a.htm", road);
  BilingualDocument document(tud);
  document.set_segment(4, "E", TranslationStatus::kTranslated, 0);
  document.save();
  EXPECT_EQ(rebuild(tud, road),
            "<title>a</title><p><font color=\"#FF0000\">b</font><td><option>c</option><img alt='d'>"
            "<p><font color=\"#112233\">E</font></p>");
}

TEST_F(HtmlFilterTest, ScriptMustStayInTheTranslation) {
  const auto drop = [](std::u16string) { return u"X"; };
  EXPECT_EQ(reason_of([&] { translated_page("<p>a <!-- ASP2HTML 1 --> x", drop); }).empty(), false);
}

TEST_F(HtmlFilterTest, LongParagraphsAreCutTheSameWayEverywhere) {
  std::string page = "<p>";
  while (page.size() < 3 * html::kLongestParagraph) page += "ein Wort &eacute;\xC3\xA9<b>fett</b> ";
  page += "<p>" + std::string(2 * html::kLongestParagraph, 'x') + "<p>a<img alt='" +
          std::string(html::kLongestToken + 10, 'y') + "'>b<!--" + std::string(html::kLongestToken, '-') +
          "-->c<i translate=no>" + std::string(html::kLongestParagraph, 'n') + "</i>d";
  std::vector<std::u16string> expected;
  for (const std::size_t block : {std::size_t{1} << 24, std::size_t{4096}, std::size_t{1000}, std::size_t{77777}}) {
    const BlockSizeScope scope(block);
    EXPECT_EQ(unchanged(page), page);
    const auto texts = texts_of(page);
    if (expected.empty()) expected = texts;
    EXPECT_TRUE(texts == expected) << "with blocks of " << block;
  }
  EXPECT_EQ(expected.back(), u"<1/>d");
  EXPECT_EQ(expected[expected.size() - 2], u"c<1/>");
  EXPECT_GE(expected.size(), 9u);
}

}  // namespace
}  // namespace kavo::test
