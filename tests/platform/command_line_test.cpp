#include "platform/command_line.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/unicode.h"
#include "support/failures.h"

namespace kavo::test {
namespace {

using Words = std::vector<std::u16string>;

TEST(CommandLine, IsSplitAsWindowsSplitsIt) {
  const struct {
    const char* name;
    std::u16string_view line;
    Words expected;
  } cases[] = {
      {"nothing", u"", {}},
      {"blanks", u" \t ", {}},
      {"plain", u"e  a b\t-c ", {u"e", u"a", u"b", u"-c"}},
      {"a program in quotes", u"\"C:\\a b\\e.exe\" c", {u"C:\\a b\\e.exe", u"c"}},
      {"quotes keep blanks", u"e \"a b\" c", {u"e", u"a b", u"c"}},
      {"quotes inside an argument", u"e a\" b\"c", {u"e", u"a bc"}},
      {"empty argument", u"e \"\" x", {u"e", u"", u"x"}},
      {"escaped quote", u"e a\\\"b", {u"e", u"a\"b"}},
      {"backslashes before a quote count half", u"e \"a\\\\\" b", {u"e", u"a\\", u"b"}},
      {"backslashes elsewhere stay", u"e a\\\\b\\c", {u"e", u"a\\\\b\\c"}},
      {"doubled quote within quotes", u"e \"a\"\"b\" c", {u"e", u"a\"b", u"c"}},
  };
  for (const auto& c : cases) EXPECT_EQ(split_command_line(c.line), c.expected) << c.name;
}

TEST(CommandLine, IsJoinedSoThatEveryWordComesBack) {
  std::mt19937 random(1);
  constexpr std::u16string_view units = u"ab\"\\ \t&'%^/é";
  for (int round = 0; round < 20000; ++round) {
    Words words{u"C:\\a b\\editor.exe"};
    for (unsigned count = random() % 4; count > 0; --count) {
      words.emplace_back();
      for (unsigned length = random() % 8; length > 0; --length) words.back() += units[random() % units.size()];
    }
    const std::u16string line = joined_command_line(words[0], std::span(words).subspan(1));
    ASSERT_EQ(split_command_line(line), words) << to_utf8(line);
  }
}

TEST(CommandLine, PlainArgumentsStayWithoutQuotes) {
  const Words arguments{u"-n", u"/m:C:\\m.tmx", u"a b"};
  EXPECT_EQ(joined_command_line(u"editor", arguments), u"\"editor\" -n /m:C:\\m.tmx \"a b\"");
}

TEST(CommandLine, ATextThatNoCommandLineCanHoldIsRefused) {
  const struct {
    const char* name;
    std::u16string_view program;
    std::u16string argument;
    std::int32_t number;
  } cases[] = {
      {"a quote in the program's name", u"a\"b", u"x", 5},
      {"a quote for a program", u"e.exe", u"a\"b", 0},
      {"a quote for a batch file", u"C:\\e.BAT", u"a\" & calc", 5},
      {"a variable for a batch file", u"e.cmd", u"%PATH%", 5},
      {"a line end for a batch file", u"e.cmd", u"a\nb", 5},
      {"an ordinary name for a batch file", u"e.cmd", u"C:\\a & b.tud", 0},
  };
  for (const auto& c : cases)
    EXPECT_EQ(failure_number([&] { joined_command_line(c.program, std::span(&c.argument, 1)); }), c.number) << c.name;
}

}  // namespace
}  // namespace kavo::test
