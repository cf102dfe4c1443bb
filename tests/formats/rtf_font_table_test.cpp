#include <gtest/gtest.h>

#include "formats/rtf/character_look.h"
#include "formats/rtf/font_table.h"

namespace kavo::rtf {
namespace {

FontTable table_of(std::string_view bytes) {
  FontTable table;
  FontTableReader reader(table);
  TokenScanner scanner;
  Token token;
  for (; !bytes.empty(); bytes.remove_prefix(token.bytes.size())) {
    scanner.next(bytes, true, nullptr, token);
    reader.take(token);
  }
  reader.finish();
  return table;
}

TEST(RtfFontTable, FontsInGroupsAndWithout) {
  for (const std::string_view bytes :
       {"{\\f0\\froman\\fcharset0{\\*\\panose 02}Times;}{\\f3\\fnil\\fcharset2 Symbol{\\*\\falt S;};}",
        "\\f0\\froman\\fcharset0 Times;\\f3\\fnil\\fcharset2 Symbol;",
        "\r\n {\\f0\\froman\\fcharset0\r\n Times;} {\\f3\\fnil\\fcharset2 Symbol}"}) {
    SCOPED_TRACE(bytes);
    const FontTable table = table_of(bytes);
    ASSERT_EQ(table.fonts().size(), 2u);
    EXPECT_EQ(table.fonts()[0].name, "Times");
    EXPECT_EQ(table.fonts()[0].look, "\\froman");
    EXPECT_EQ(table.fonts()[1].name, "Symbol");
    ASSERT_NE(table.find(3), nullptr);
    EXPECT_EQ(table.find(3)->charset, kSymbolCharset);
    EXPECT_EQ(table.find(1), nullptr);
    EXPECT_EQ(table.highest_number(), 3);
  }
}

TEST(RtfFontTable, FontsOfOneNameLookAlike) {
  const FontTable table =
      table_of("{\\f0 Arial;}{\\f1 Times;}{\\f36\\fcharset238 Arial CE;}{\\f37\\fcharset204 Arial Cyr;}");
  EXPECT_EQ(table.fonts()[2].same_as, 0u);
  EXPECT_EQ(table.fonts()[3].same_as, 0u);
  EXPECT_EQ(table.fonts()[1].same_as, 1u);
}

TEST(RtfFontTable, ATableOfAnyLengthTakesABoundedAmount) {
  std::string bytes;
  for (std::size_t i = 0; i < kMostFonts + 10; ++i)
    bytes += "{\\f" + std::to_string(i) + " F" + std::to_string(i) + ";}";
  const FontTable table = table_of(bytes);
  EXPECT_EQ(table.fonts().size(), kMostFonts);
  EXPECT_NE(table.find(static_cast<std::int32_t>(kMostFonts) - 1), nullptr);
  EXPECT_EQ(table.find(static_cast<std::int32_t>(kMostFonts)), nullptr);
  std::string words = "{\\f0";
  for (int i = 0; i < 100'000; ++i) words += "\\fprq2";
  EXPECT_LE(table_of(words + " Times;}").fonts()[0].look.size(), 1024u);
}

TEST(RtfFontTable, CodePages) {
  Font font;
  EXPECT_EQ(code_page_of(&font, 1251), 1251u) << "no character set";
  EXPECT_EQ(code_page_of(nullptr, 1250), 1250u);
  font.charset = 128;
  EXPECT_EQ(code_page_of(&font, 1252), 932u);
  font.charset = 1;
  EXPECT_EQ(code_page_of(&font, 1252), 1252u) << "the document's own";
  font.code_page = 936;
  EXPECT_EQ(code_page_of(&font, 1252), 936u);
  EXPECT_EQ(charset_of_code_page(1253), 161);
  EXPECT_EQ(charset_of_code_page(65001), kNoCharset);
  EXPECT_EQ(CodingSet().find(9999), nullptr);
}

struct Change {
  const char* name;
  std::string_view from;
  std::string_view to;
  std::string words;
};
const Change kChanges[] = {
    {"nothing", "\\b", "\\b1", ""},
    {"on", "", "\\b\\i", "\\b\\i"},
    {"off", "\\b\\ul\\super\\cf2", "", "\\b0\\ulnone\\nosupersub\\cf0"},
    {"another of a kind", "\\uldb", "\\ulw", "\\ulw"},
    {"numbers", "\\f1\\fs20", "\\f3\\fs28", "\\f3\\fs28"},
    {"raised and lowered", "\\up6", "\\dn4", "\\dn4"},
    {"not raised any more", "\\dn4", "", "\\up0"},
    {"a character style cannot be ended", "\\cs15\\b", "", "\\b0"},
    {"back to plain", "\\b\\fs40", "\\b\\i\\fs40\\plain", "\\fs24\\b0"},
};

TEST(RtfCharacterLook, ChangesAreTheFewestWords) {
  for (const Change& c : kChanges) {
    SCOPED_TRACE(c.name);
    const auto look_of = [](std::string_view words) {
      Look look;
      for (Token token; !words.empty(); words.remove_prefix(token.bytes.size())) {
        token = word_at(words);
        if (token.name == "plain")
          look.reset(0);
        else
          EXPECT_TRUE(look.apply(token)) << token.name;
      }
      return look;
    };
    std::string words;
    append_change(look_of(c.from), look_of(c.to), words);
    EXPECT_EQ(words, c.words);
  }
}

}  // namespace
}  // namespace kavo::rtf
