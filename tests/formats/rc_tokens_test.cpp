#include "formats/rc/rc_tokens.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "formats/rc/rc_languages.h"
#include "formats/rc/rc_literal.h"

namespace kavo::test {
namespace {

using namespace std::string_view_literals;
using rc::RcTokenKind;

// The tokens of a script that comes in blocks of some size: a letter for each kind and the bytes. Pieces of comments
// and of what is cut count as one.
std::vector<std::string> tokens_of(std::string_view script, std::size_t block, const TextCoding* coding = nullptr) {
  constexpr std::string_view letters = "bcdlwmr";
  rc::RcTokenScanner scanner;
  scanner.coding(coding);
  std::vector<std::string> tokens;
  std::size_t at = 0;
  rc::RcToken token;
  for (std::size_t end = std::min(block, script.size()); at < script.size();) {
    const bool is_all = end == script.size();
    if (at < end && scanner.next(script.substr(at, end - at), is_all, token)) {
      const std::string kind(1, letters[static_cast<std::size_t>(token.kind)]);
      const bool joins = token.kind == RcTokenKind::kBlank || token.kind == RcTokenKind::kComment ||
                         token.kind == RcTokenKind::kRest;
      if (joins && !tokens.empty() && tokens.back()[0] == kind[0])
        tokens.back() += token.bytes;
      else
        tokens.push_back(kind + std::string(token.bytes));
      at += token.bytes.size();
    } else if (is_all) {
      ADD_FAILURE() << "no token at " << at;
      return tokens;
    } else {
      end = std::min(end + block, script.size());
    }
  }
  return tokens;
}

struct TokenCase {
  const char* name;
  std::string_view script;
  std::vector<std::string> tokens;
};
const TokenCase kTokens[] = {
    {"words, marks and blanks", "A, {B|C}\t(1)", {"wA", "m,", "b ", "m{", "wB", "m|", "wC", "m}", "b\t", "m(", "w1", "m)"}},
    {"literals", "\"a\"L\"b\"l\"c\"LT\"d\"", {"l\"a\"", "lL\"b\"", "ll\"c\"", "wLT", "l\"d\""}},
    {"doubled quotes", "\"a\"\"b\"\"\" c", {"l\"a\"\"b\"\"\"", "b ", "wc"}},
    {"quotes behind a backslash", "\"a\\\"b\" c", {"l\"a\\\"b\"", "b ", "wc"}},
    {"a path that ends in a backslash", "\"C:\\\"\nb", {"l\"C:\\\"", "b\n", "wb"}},
    {"an escaped backslash", "\"a\\\\\" b", {"l\"a\\\\\"", "b ", "wb"}},
    {"a line end inside", "\"a\n b\"", {"l\"a\n b\""}},
    {"comments", "a// b \\\n c\nd/* e\n*/f/*/g*/h", {"wa", "c// b \\\n c", "b\n", "wd", "c/* e\n*/", "wf", "c/*/g*/", "wh"}},
    {"preprocessor lines", " #if A\nb #c\n#d \\\r\n e\r\nf", {"b ", "d#if A", "b\n", "wb", "b ", "w#c", "b\n", "d#d \\\r\n e", "b\r\n", "wf"}},
    {"a comment in a preprocessor line", "#a /* b\n#c */ \"d\" // e\nf",
     {"d#a ", "c/* b\n#c */", "r \"d\" ", "c// e", "b\n", "wf"}},
    {"a comment sign in a quoted name", "#include \"a//b\" \nc", {"d#include \"a//b\" ", "b\n", "wc"}},
    {"joined lines", "a \\\n b\\\r\nc", {"wa", "b \\\n ", "wb", "b\\\r\n", "wc"}},
    {"file names", "..\\res\\a.ico b/c", {"w..\\res\\a.ico", "b ", "wb/c"}},
    {"never closed", "a \"b", {"wa", "b ", "r\"b"}},
};

TEST(RcTokens, EveryByteIsInOneTokenAtEverySplit) {
  for (const TokenCase& c : kTokens) {
    SCOPED_TRACE(c.name);
    for (std::size_t block = 1; block <= c.script.size(); ++block)
      EXPECT_EQ(tokens_of(c.script, block), c.tokens) << "blocks of " << block;
  }
}

TEST(RcTokens, TheSecondByteOfACharacterIsNotSyntax) {
  const TextCoding japanese(932);
  const std::vector<std::string> expected = {"l\"\x94\x5C\"", "b ", "wa", "b ", "c// \x94\x5C", "b\n", "wb"};
  for (const std::size_t block : {1u, 2u, 3u, 50u})
    EXPECT_EQ(tokens_of("\"\x94\x5C\" a // \x94\x5C\nb", block, &japanese), expected);
}

TEST(RcTokens, ALongLiteralIsRestWhateverTheBlocks) {
  const std::string literal = "\"" + std::string(rc::kLongestLiteral, 'a') + "\"";
  for (const std::size_t block : {1000u, 70000u, 200000u})
    EXPECT_EQ(tokens_of(literal + " b", block), (std::vector<std::string>{"r" + literal, "b ", "wb"}));
}

TEST(RcLanguages, NamesAndNumbersAreRead) {
  EXPECT_EQ(rc::language_of("LANG_FRENCH", "SUBLANG_FRENCH_CANADIAN"), 0x0C0C);
  EXPECT_EQ(rc::language_of("0x09", "1L"), 0x0409);
  EXPECT_EQ(rc::language_of("LANG_NEUTRAL", "SUBLANG_DEFAULT"), 0x0400);
  EXPECT_EQ(rc::language_of("LANG_NOWHERE", "1"), std::nullopt);
  EXPECT_EQ(rc::language_of("MY_LANGUAGE", "1"), std::nullopt);
  EXPECT_EQ(rc::language_of("9999", "1"), std::nullopt);
}

TEST(RcLanguages, NamesAreWrittenThatCompilersKnow) {
  EXPECT_EQ(rc::language_words(0x0407, true), "LANG_GERMAN, SUBLANG_GERMAN");
  EXPECT_EQ(rc::language_words(0x0407, false), "7, 1");
  EXPECT_EQ(rc::language_words(0x0804, true), "LANG_CHINESE, SUBLANG_CHINESE_SIMPLIFIED");
  EXPECT_EQ(rc::language_words(0x0419, true), "LANG_RUSSIAN, SUBLANG_DEFAULT");
  EXPECT_EQ(rc::language_words(0xFC19, true), "25, 63");
}

struct MarkerCase {
  std::string_view text;
  char before;
  std::size_t length;
};
TEST(RcLiterals, MarkerLengths) {
  constexpr MarkerCase cases[] = {
      {"%d", 0, 2},       {"%-5.2lu x", 0, 7}, {"%%", 0, 2},      {"%I64d", 0, 5}, {"%*.*f", 0, 5},
      {"%1", 0, 2},       {"%1!d! x", 0, 5},   {"%12!s!", 0, 6},  {"%0", 0, 0},    {"% of", '5', 0},
      {"%discount", '5', 0}, {"%d", '5', 2},   {"%dx", 'x', 2},   {"%", 0, 0},     {"%q", 0, 0},
  };
  for (const MarkerCase& c : cases) EXPECT_EQ(rc::marker_length(c.text, c.before), c.length) << c.text;
}

}  // namespace
}  // namespace kavo::test
