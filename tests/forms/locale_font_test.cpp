#include "forms/locale_font.h"

#include <gtest/gtest.h>

namespace kavo::test {
namespace {

TEST(LocaleFont, EveryAnsiCodePageHasItsCharacterSet) {
  struct Case {
    unsigned code_page;
    std::int32_t character_set;
    std::u16string_view face;
  };
  for (const Case& test :
       {Case{874, 222, u"Tahoma"}, Case{932, 128, u"MS UI Gothic"}, Case{936, 134, u"SimSun"}, Case{949, 129, u"Gulim"},
        Case{950, 136, u"PMingLiU"}, Case{1250, 238, u"Tahoma"}, Case{1251, 204, u"Tahoma"}, Case{1253, 161, u"Tahoma"},
        Case{1254, 162, u"Tahoma"}, Case{1255, 177, u"Tahoma"}, Case{1256, 178, u"Tahoma"}, Case{1257, 186, u"Tahoma"},
        Case{1258, 163, u"Tahoma"}, Case{1361, 130, u"Gulim"}}) {
    const ControlFont font = locale_font({u"Tahoma", 8, 0}, test.code_page);
    EXPECT_EQ(font.character_set, test.character_set) << test.code_page;
    EXPECT_EQ(font.face, test.face) << test.code_page;
    EXPECT_EQ(font.size, 9) << test.code_page;
  }
}

TEST(LocaleFont, Western1252LeavesTheFontUnchanged) {
  const ControlFont font{u"Tahoma", 8, 0};
  EXPECT_EQ(locale_font(font, 1252), font);
  EXPECT_EQ(locale_font(font, 65001), font);
  EXPECT_EQ(locale_font(font, 437), font);
}

TEST(LocaleFont, ASymbolFontIsLeftAlone) {
  const ControlFont font{u"Wingdings", 8, 2};
  EXPECT_EQ(locale_font(font, 932), font);
}

TEST(LocaleFont, ALargerSizeAndTheSystemsOwnAreKept) {
  EXPECT_EQ(locale_font({u"", 12, 1}, 950).size, 12);
  EXPECT_EQ(locale_font({u"", 0, 1}, 950).size, 0);
}

}  // namespace
}  // namespace kavo::test
