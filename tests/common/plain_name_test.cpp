#include "common/plain_name.h"

#include <gtest/gtest.h>

#include <string>

namespace kavo::test {
namespace {

using namespace std::string_view_literals;

TEST(PlainName, IsOneFileOfTheFolderOnEverySystem) {
  for (const std::string_view name :
       {"a.txt"sv, "page one.htm"sv, ".profile"sv, "a..b"sv, "..a"sv, "100% sure.txt"sv, "a&b<c>\"d'.txt"sv,
        "\xC3\xA9t\xC3\xA9 \xE6\x97\xA5.txt"sv, "caf\xE9.txt"sv, "console.txt"sv, "com10.txt"sv, "lpt.txt"sv, "nulls"sv,
        "a.con"sv, "~a"sv, "-a"sv})
    EXPECT_EQ(plain_name_problem(name), "") << name;
}

TEST(PlainName, NothingElseIs) {
  for (const std::string_view name : {""sv,
                                      "."sv,
                                      ".."sv,
                                      "..."sv,
                                      ".. "sv,
                                      " "sv,
                                      ". ."sv,
                                      "/etc/passwd"sv,
                                      "a/b"sv,
                                      "a\\b"sv,
                                      "..\\a"sv,
                                      "../a"sv,
                                      "a/"sv,
                                      "\\\\host\\share\\a"sv,
                                      "C:a"sv,
                                      "C:\\a"sv,
                                      "a.txt:hidden"sv,
                                      "a\nb"sv,
                                      "a\0b"sv,
                                      "a\x7F"sv,
                                      "\x1B[2J"sv,
                                      "con"sv,
                                      "NUL.txt"sv,
                                      "Aux .htm"sv,
                                      "com1.asp"sv,
                                      "LPT9"sv,
                                      "COM\xC2\xB2.txt"sv,
                                      "conin$"sv})
    EXPECT_NE(plain_name_problem(name), "") << name;
}

}  // namespace
}  // namespace kavo::test
