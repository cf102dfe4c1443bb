#include <gtest/gtest.h>

#include "formats/rtf/text_reader.h"

namespace kavo::rtf {
namespace {

struct Case {
  const char* name;
  std::string_view bytes;
  std::string text;  // with "[...]" for bytes that are no character
  unsigned code_page = 1252;
  unsigned fallback = 1;
};

const Case kCases[] = {
    {"plain", "abc", "abc"},
    {"escapes", "\\{\\\\\\}", "{\\}"},
    {"a line end means nothing", "a\r\nb", "ab"},
    {"hexadecimal", "caf\\'e9\\'41", "caf\u00E9A"},
    {"a raw byte", "caf\xE9", "caf\u00E9"},
    {"names", "\\ldblquote a\\rdblquote\\emdash\\~\\_\\-", "\u201Ca\u201D\u2014\u00A0\u2011\u00AD"},
    {"a number and its fallback", "\\u8364?x", "\u20ACx"},
    {"a fallback in hexadecimal", "\\u8364\\'80x", "\u20ACx"},
    {"a fallback of two bytes", "\\u26085\\'93\\'fax", "\u65E5x", 932, 2},
    {"a fallback with a name", "\\u8226\\bullet x", "\u2022x"},
    {"no fallback", "\\u8364 x", "\u20ACx", 1252, 0},
    {"a fallback behind a line end", "\\u8364\r\n?x", "\u20ACx"},
    {"two halves", "\\u-10179?\\u-8704?x", "\U0001F600x"},
    {"two halves with another count between them", "\\u-10179\\uc1\\u-8704?x", "\U0001F600x", 1252, 0},
    {"two halves, line ends and two counts", "\\u55357?\r\n\\uc0 \n\\uc2\r\\u56832\\'3f\\'3fx", "\U0001F600x"},
    {"another count in a text", "\\u8364?a\\uc2 \\u8364??b\\uc0\\u8364 c", "\u20ACa\u20ACb\u20ACc"},
    {"a first half and another count", "\\u-10179?\\uc0\\u8364 x", "[\\u-10179?]\u20ACx"},
    {"a first half and a count at the end", "\\u-10179?\\uc0", "[\\u-10179?]"},
    {"a number without a sign", "\\u62000?", "\uF230"},
    {"half a character", "\\u-10179?x", "[\\u-10179?]x"},
    {"a pair in hexadecimal", "\\'93\\'fa", "\u65E5", 932},
    {"a pair whose second byte is a backslash", "\\'95\\'5c\\'95\\\\", "\u8868\u8868", 932},
    {"a pair whose second byte is a brace", "\\'83\\'7b\\'83\\{", "\u30DC\u30DC", 932},
    {"a pair whose second byte is a letter",
     "\\'83\\'41\\'83"
     "A",
     "\u30A2\u30A2", 932},
    {"raw pairs",
     "\x95\x5C\x83\x7B\x83"
     "A",
     "\u8868\u30DC\u30A2", 932},
    {"a raw byte and one in hexadecimal", "\x95\\'5c", "\u8868", 932},
    {"a pair that a line end parts", "\\'93\r\n\\'fa", "\u65E5", 932},
    {"a first byte without a second one", "\\'93", "[\\'93]", 932},
    {"UTF-8 in hexadecimal", "\\'e2\\'82\\'ac\\'c3", "\u20AC[\\'c3]", 65001},
    {"a byte that the coding lacks", "\\'ffx", "[\\'ff]x", 65001},
    {"control characters", "a\x01\\'02", "a[\x01][\\'02]"},
};

TEST(RtfTextReader, ReadsCharacters) {
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    const TextCoding coding(c.code_page);
    TextReader reader(c.bytes, &coding, c.fallback);
    std::string text;
    std::string bytes;
    for (TextUnit unit; reader.next(unit);) {
      bytes += unit.bytes;
      text += unit.kind == TextUnit::Kind::kInvalid ? "[" + std::string(unit.bytes) + "]" : unit.text;
    }
    EXPECT_EQ(bytes, c.bytes);
    EXPECT_EQ(text, c.text);
  }
}

TEST(RtfTextReader, WithoutACodingOnlyAsciiIsText) {
  TextReader reader("a\\'e9", nullptr, 1);
  TextUnit unit;
  ASSERT_TRUE(reader.next(unit));
  EXPECT_EQ(unit.text, "a");
  ASSERT_TRUE(reader.next(unit));
  EXPECT_EQ(unit.kind, TextUnit::Kind::kInvalid);
}

}  // namespace
}  // namespace kavo::rtf
