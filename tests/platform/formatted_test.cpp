#include "platform/formatted.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace kavo {
namespace {

using namespace std::literals;

TEST(Formatted, PutsTextsAndNumbersIntoTheirPlaces) {
  EXPECT_EQ(formatted(u"{}, line {}, column {}", u"page.asp"s, 12u, std::uint64_t{18446744073709551615u}),
            u"page.asp, line 12, column 18446744073709551615");
  EXPECT_EQ(formatted("{}{}{}", "a"sv, -7, "b"), "a-7b");
  EXPECT_EQ(formatted(u"{}", std::int16_t{-32768}), u"-32768");
}

TEST(Formatted, ConvertsTheOtherCodingOfText) {
  EXPECT_EQ(formatted(u"<{}|{}>", "\xC3\xA9"s, u"\u00E9"sv), u"<\u00E9|\u00E9>");
  EXPECT_EQ(formatted("<{}|{}>", u"\u00E9"s, "\xC3\xA9"), "<\xC3\xA9|\xC3\xA9>");
  EXPECT_EQ(formatted(u"{}", "\xFF"sv), to_utf16("\xFF"));  // bytes that are not UTF-8 stay what they are
}

TEST(Formatted, DoesNotReadTheArguments) {
  EXPECT_EQ(formatted(u"{} and {}", u"{}", u"{x}"), u"{} and {x}");
  EXPECT_EQ(formatted("{{}}", "x"), "{x}");
  EXPECT_EQ(formatted("{ } {x}{}", ""), "{ } {x}");
}

TEST(Formatted, KeepsZeroUnits) { EXPECT_EQ(formatted(u"{}.", u"a\0b"sv), u"a\0b."s); }

}  // namespace
}  // namespace kavo
