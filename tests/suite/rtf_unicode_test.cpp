// Characters that RTF writes as numbers, with every count of bytes after them that programs use.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "platform/unicode.h"
#include "suite/rtf_filter_property.h"

namespace kavo::test {
namespace {

// Writes texts as a program might: each UTF-16 unit as a number, \ucN anywhere, line ends anywhere.
class Writer {
 public:
  explicit Writer(unsigned seed) : random_(seed) {}
  unsigned below(unsigned count) { return static_cast<unsigned>(random_() % count); }

  // `fallback` is the count of bytes after each number before the text, and then after it.
  std::string write(std::u16string_view text, unsigned& fallback) {
    std::string rtf;
    for (const char16_t unit : text) {
      if (below(3) == 0) {
        fallback = below(4);
        rtf += "\\uc" + std::to_string(fallback) + (below(2) == 0 ? " " : "");
      }
      if (below(8) == 0) rtf += "\r\n";
      rtf += "\\u" + std::to_string(below(2) == 0 ? static_cast<std::int16_t>(unit) : static_cast<int>(unit));
      if (fallback == 0) rtf += ' ';
      for (unsigned i = 0; i < fallback; ++i) rtf += below(2) == 0 ? "?" : "\\'3f";
    }
    return rtf;
  }

 private:
  std::mt19937 random_;
};

TEST(RtfUnicode, TextsBeyond16BitsComeWholeAndGoBack) {
  constexpr std::u16string_view kCharacters[] = {u"\U0001F600", u"\U00020000", u"\U0010FFFD",
                                                 u"\u65E5",     u"\u00E9",     u"a"};
  Writer writer(7);
  for (int round = 0; round < 300; ++round) {
    std::vector<std::u16string> wanted(3);
    for (std::u16string& text : wanted)
      for (unsigned i = 0, count = 1 + writer.below(6); i < count; ++i) text += kCharacters[writer.below(6)];
    unsigned fallback = 1;
    std::string document = "{\\rtf1\\ansi\\ansicpg1252 A" + writer.write(wanted[0], fallback);
    unsigned inner = fallback;
    document +=
        "\\par{\\b B" + writer.write(wanted[1], inner) + "}\\par C" + writer.write(wanted[2], fallback) + "\\par}";
    SCOPED_TRACE(document);
    FilterRoad road(u"K19RTF", u".rtf", 1252);
    ASSERT_EQ(road.take_apart(document),
              (std::vector<std::string>{"A" + to_utf8(wanted[0]), "B" + to_utf8(wanted[1]), "C" + to_utf8(wanted[2])}));
    // What a text leaves behind must hold for the next one, also when only the first is translated.
    const std::string changed = road.put_together({"x"});
    EXPECT_EQ(FilterRoad(u"K19RTF", u".rtf", 1252).take_apart(changed),
              (std::vector<std::string>{"x", "B" + to_utf8(wanted[1]), "C" + to_utf8(wanted[2])}));
    for (const unsigned block : {1u, 7u, 4096u}) {
      const BlockSizeScope scope(block);
      EXPECT_EQ(broken_rtf_property(document, 1252), "");
    }
  }
}

}  // namespace
}  // namespace kavo::test
