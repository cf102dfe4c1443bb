#include "mif/mif_coding.h"

#include <gtest/gtest.h>

#include "platform/ports.h"

namespace kavo::test {
namespace {

class MifCodingTest : public testing::Test {
 protected:
  void use(std::string_view name) {
    code_page = make_code_page(name);
    ports().code_page = code_page.get();
  }

  std::unique_ptr<CodePage> code_page;

 private:
  PortsScope scope;
};

TEST_F(MifCodingTest, NamesAreDecodedByTheFilesOwnCoding) {
  struct Case {
    const char* name;
    const char* code_page;
    std::string_view beginning, bytes;
    std::u16string_view expected;
  };
  const Case cases[] = {
      {"plain", "1252", "<MIFFile 7.00>", "Index", u"Index"},
      {"escape with its blank", "1252", "<MIFFile 7.00>", "Gloss\\x8a r", u"Gloss\u00E4r"},
      {"escape with capital digits", "1252", "<MIFFile 7.00>", "\\xD5 s", u"\u2019s"},
      {"escape without its blank", "1252", "<MIFFile 7.00>", "\\x8ar", u"\u00E4r"},
      {"short escapes", "1252", "<MIFFile 7.00>", "\\t\\>\\q\\Q\\\\", u"\t>'`\\"},
      {"unknown escapes stay", "1252", "<MIFFile 7.00>", "\\n\\xZZ \\x8\\", u"\\n\\xZZ \\x8\\"},
      {"codes without a character stay", "1252", "<MIFFile 7.00>", "a\\x09 \\x06 ", u"a\\x09 \\x06 "},
      {"a declared coding", "1252", "<MIFFile 6.00>\n<MIFEncoding `\x93\xFA\x96\x7B\x8C\xEA'>", "\x8D\xF5\x88\xF8",
       u"\u7D22\u5F15"},
      {"bytes that are no character stay apart", "1252", "<MIFFile 9.00>", "\xE4x", u"\xDCE4x"},
      {"raw bytes before 8.0 are ANSI", "1252", "<MIFFile 7.00>", "\xE4", u"\u00E4"},
      {"UTF-8 from 8.0 on", "1252", "<MIFFile 8.00>", "\xC3\xA4", u"\u00E4"},
      {"versions named by year", "1252", "<MIFFile 2019>", "\xC3\xA4", u"\u00E4"},
      {"a byte order mark tells UTF-8", "1252", "\xEF\xBB\xBF<MIFFile 5.50>", "\xC3\xA4", u"\u00E4"},
      {"no version at all", "1252", "", "\xE4", u"\u00E4"},
      {"double-byte", "932", "<MIFFile 5.50>", "\x8D\xF5\x88\xF8", u"\u7D22\u5F15"},
      {"a trail byte is no backslash", "932", "<MIFFile 5.50>", "\x83\x5Ct", u"\u30BDt"},
  };
  for (const Case& test : cases) {
    use(test.code_page);
    EXPECT_EQ(MifCoding::of(test.beginning).decode(test.bytes), test.expected) << test.name;
  }
}

TEST_F(MifCodingTest, LeadBytesPairUp) {
  use("932");
  const MifCoding coding = MifCoding::of("<MIFFile 5.50>");
  const auto is_trail = [&](std::string_view text) {
    return coding.is_trail_byte(text.data(), text.data() + text.size() - 1);
  };
  EXPECT_FALSE(is_trail("`"));
  EXPECT_FALSE(is_trail("a`"));
  EXPECT_TRUE(is_trail("\x8E`"));
  EXPECT_FALSE(is_trail("\x8E\x8E`"));
  EXPECT_TRUE(is_trail("\x8E\x8E\x8E`"));
  EXPECT_FALSE(is_trail("\xB1`"));
  EXPECT_FALSE(is_trail("\x8E\xB1`"));
  EXPECT_EQ(coding.incomplete_tail("a\x8E"), 1u);
  EXPECT_EQ(coding.incomplete_tail("a\x8E\x8E"), 0u);
  EXPECT_EQ(MifCoding::of("<MIFFile 8.00>").incomplete_tail("a\x8E"), 0u);
}

}  // namespace
}  // namespace kavo::test
