#include "platform/unicode.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/case_fold.h"

namespace kavo {
namespace {

TEST(UnicodeTest, KnownTexts) {
  EXPECT_EQ(to_utf16("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"), u"a\u00E4\u20AC\U0001F600");
  EXPECT_EQ(to_utf8(u"a\u00E4\u20AC\U0001F600"), "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_EQ(to_utf16(std::string_view("a\0b", 3)), std::u16string_view(u"a\0b", 3));
}

TEST(UnicodeTest, InvalidBytesBecomeLoneSurrogates) {
  EXPECT_EQ(to_utf16("\xFFz"), std::u16string({0xDCFF, u'z'}));
  EXPECT_EQ(to_utf16("\xE2\x82"), std::u16string({0xDCE2, 0xDC82})) << "cut off";
  EXPECT_EQ(to_utf16("\xC0\x80"), std::u16string({0xDCC0, 0xDC80})) << "too long a form";
  EXPECT_EQ(to_utf16("\xED\xA0\x80"), std::u16string({0xDCED, 0xDCA0, 0xDC80})) << "an encoded surrogate";
  EXPECT_EQ(to_utf16("\xF4\x90\x80\x80"), std::u16string({0xDCF4, 0xDC90, 0xDC80, 0xDC80})) << "beyond U+10FFFF";
}

TEST(UnicodeTest, EveryCharacterComesBack) {
  for (char32_t c = 0; c < 0x110000; ++c) {
    if (c >= 0xD800 && c <= 0xDFFF) continue;
    std::u16string text;
    if (c < 0x10000) {
      text += static_cast<char16_t>(c);
    } else {
      text += static_cast<char16_t>(0xD7C0 + (c >> 10));
      text += static_cast<char16_t>(0xDC00 + (c & 0x3FF));
    }
    ASSERT_EQ(to_utf16(to_utf8(text)), text) << std::hex << static_cast<unsigned>(c);
  }
}

TEST(UnicodeTest, AnyBytesComeBack) {
  std::mt19937 random(3);
  for (int round = 0; round < 20000; ++round) {
    std::string bytes(random() % 12, '\0');
    for (char& c : bytes) c = static_cast<char>(random() % 2 ? random() : 0x80 + random() % 0x80);
    ASSERT_EQ(to_utf8(to_utf16(bytes)), bytes);
  }
}

TEST(UnicodeTest, AsciiCase) {
  EXPECT_EQ(ascii_upper(u"az{`\u00E4"), u"AZ{`\u00E4");
  EXPECT_EQ(ascii_lower(u"AZ[@\u00C4"), u"az[@\u00C4");
  EXPECT_TRUE(equal_ignoring_ascii_case(u"HeAd", u"hEaD"));
  EXPECT_FALSE(equal_ignoring_ascii_case(u"head", u"hea"));
  EXPECT_FALSE(equal_ignoring_ascii_case(u"\u00E4", u"\u00C4"));
  EXPECT_FALSE(equal_ignoring_ascii_case(u"@", u"`"));
}

TEST(CaseFoldTest, LettersOfManyScripts) {
  struct Case {
    char16_t lower;
    char16_t upper;
  };
  for (const Case& c :
       {Case{u'a', u'A'}, Case{u'z', u'Z'}, Case{0xE4, 0xC4}, Case{0xFF, 0x178}, Case{0x101, 0x100}, Case{0x17E, 0x17D},
        Case{0x3AC, 0x386}, Case{0x3C9, 0x3A9}, Case{0x436, 0x416}, Case{0x451, 0x401}, Case{0x561, 0x531},
        Case{0x1E01, 0x1E00}, Case{0x1EF9, 0x1EF8}, Case{0xFF41, 0xFF21}}) {
    EXPECT_EQ(upper_case(c.lower), c.upper);
    EXPECT_EQ(upper_case(c.upper), c.upper);
  }
  for (const char16_t unit : {u'`', u'{', u'[', u'@', u'0', u'\u00DF', u'\u00F7', u'\u0131', u'\u4E2D', u'\uFFFF'})
    EXPECT_EQ(upper_case(unit), unit);
}

TEST(CaseFoldTest, OrderAgreesWithEquality) {
  const LessIgnoringCase less;
  EXPECT_TRUE(equal_ignoring_case(u"\u00C4x", u"\u00E4X"));
  EXPECT_FALSE(less(u"\u00C4x", u"\u00E4X"));
  EXPECT_FALSE(less(u"\u00E4X", u"\u00C4x"));
  EXPECT_TRUE(less(u"ab", u"ABC"));
  EXPECT_FALSE(equal_ignoring_case(u"ab", u"abc"));
}

}  // namespace
}  // namespace kavo
