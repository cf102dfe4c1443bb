// Styles that are left out of RTF documents, variants of texts, and code pages that are not from Windows.
#include <gtest/gtest.h>

#include "common/block_reader.h"
#include "suite/suite_fixture.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

using Texts = std::vector<std::u16string>;

class RtfStylesTest : public SuiteTest {
 protected:
  static Road rtf_road(std::string excluded = {}) {
    Road road{.filter = u"K19RTF", .source_code_page = 1252};
    if (!excluded.empty()) road.options["rtf.excluded-styles"] = std::move(excluded);
    return road;
  }
  // The texts of a document that comes back unchanged, whatever the size of the blocks.
  Texts texts_of(std::string_view document, const Road& road) {
    return same_for_every_block_size(document.size(), [&](std::size_t block) {
      const BlockSizeScope scope(block);
      put(u"a.rtf", document);
      const std::u16string tud = convert(u"a.rtf", road);
      EXPECT_EQ(rebuild(tud, road), document);
      return sources(tud);
    });
  }
};

const std::string kStyles =
    "{\\rtf1\\ansi\\ansicpg1252{\\stylesheet{\\ql Normal;}{\\s1\\b heading 1,h1;}{\\s15\\f1 Code;}{\\*\\cs16 \\i "
    "Key\\'20Word;}"
    "{\\*\\ts11 Code;}}";

TEST_F(RtfStylesTest, TextsInExcludedStylesAreNotOffered) {
  const std::string document = kStyles +
                               "\\pard\\s15 int x;\\par int y;\\par\\pard\\s1 Title\\par\\pard Press {\\cs16 Enter} now"
                               "{\\s15 still}\\par}";
  EXPECT_EQ(texts_of(document, rtf_road()), (Texts{u"int x;", u"int y;", u"Title", u"Press <1>Enter</1> nowstill"}));
  EXPECT_EQ(texts_of(document, rtf_road("code")), (Texts{u"Title", u"Press <1>Enter</1> now"}));
  EXPECT_EQ(texts_of(document, rtf_road("Code, Key Word")), (Texts{u"Title", u"Press <1/> now"}));
  EXPECT_EQ(texts_of(document, rtf_road("H1")), (Texts{u"int x;", u"int y;", u"Press <1>Enter</1> nowstill"}));
  EXPECT_EQ(texts_of(document, rtf_road("Nobody")), texts_of(document, rtf_road()));
}

TEST_F(RtfStylesTest, AnExcludedTextInALineComesBackInATranslation) {
  EXPECT_EQ(translated(
                u"a.rtf", kStyles + "\\pard Press {\\cs16 Enter} now\\par}",
                [](std::u16string) { return u"Jetzt <1/>!"; }, rtf_road("Key Word")),
            kStyles + "\\pard Jetzt {\\cs16 Enter}!\\par}");
}

TEST_F(RtfStylesTest, ASegmentNamesItsDestination) {
  put(u"a.rtf", "{\\rtf1{\\info{\\title T}}{\\headerl H\\par}\\pard a{\\footnote F}b\\par}");
  const std::string tud = files.get(convert(u"a.rtf", rtf_road()));
  for (const char* element : {"title", "headerl", "footnote"})
    EXPECT_NE(tud.find("\"element\">" + std::string(element) + "</context>"), std::string::npos) << tud;
}

TEST_F(RtfStylesTest, TheUnicodeVariantOfTwoIsOffered) {
  const std::string document =
      "{\\rtf1\\ansi{\\info{\\upr{\\title ?x}{\\*\\ud{\\title \\u1046?x}}}}\\pard "
      "{\\upr{\\xe{a}}{\\*\\ud{\\xe{b}}}}c\\par}";
  EXPECT_EQ(texts_of(document, rtf_road()), (Texts{u"\u0416x", u"b", u"c"}));
}

TEST_F(RtfStylesTest, CodePagesOfDosAndOfTheMacintosh) {
  const struct {
    const char* name;
    std::string document;
    std::u16string text;
  } cases[] = {
      {"Macintosh", "{\\rtf1\\mac{\\fonttbl{\\f0 Times;}}\\pard caf\\'8e\\par}", u"caf\u00E9"},
      {"DOS", "{\\rtf1\\pc{\\fonttbl{\\f0 Times;}}\\pard caf\\'82\\par}", u"caf\u00E9"},
      {"DOS, Western", "{\\rtf1\\pca{\\fonttbl{\\f0 Times;}}\\pard caf\\'82 \\'9d\\par}", u"caf\u00E9 \u00D8"},
      {"a font of the Macintosh", "{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset77 Times;}}\\pard\\f0 caf\\'8e\\par}",
       u"caf\u00E9"},
      {"a font of Central Europe", "{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset88 Times;}}\\pard\\f0 \\'8b\\par}",
       u"\u010D"},
      {"a font of DOS", "{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset255 Terminal;}}\\pard\\f0 \\'9d\\par}", u"\u00D8"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(texts_of(c.document, rtf_road()), Texts{c.text});
    EXPECT_EQ(translated(
                  u"a.rtf", c.document, [](std::u16string text) { return text + text; }, rtf_road())
                  .find("\\u"),
              std::string::npos)
        << "what the code page has is written in it";
  }
}

}  // namespace
}  // namespace kavo::test
