#include "suite/filters/text_patterns.h"

#include <gtest/gtest.h>

namespace kavo::test {
namespace {

// The text with each pattern in [ ].
std::string marked(std::string_view text, const TextPatterns& patterns = TextPatterns()) {
  std::string result;
  std::size_t at = 0;
  for (PatternMatch next; (next = patterns.find(text, at)).size != 0; at = next.begin + next.size) {
    EXPECT_GE(next.begin, at);
    result += text.substr(at, next.begin - at);
    (result += '[') += text.substr(next.begin, next.size);
    result += ']';
  }
  return result += text.substr(at);
}

TEST(TextPatterns, AreFoundInProse) {
  const char* const cases[] = {
      // places for values
      "Hello [{{name}}]!",
      "Hello [{{ user.name | upper }}]",
      "[{0}] of [{1}]",
      "Hi [{name}]",
      "Hi [${user.name}]",
      "[%s] files, [%d] folders",
      "[%1$s] and [%2$d]",
      "[%05.2f] m",
      "[%ld]",
      "([%s])",
      "[%s][%s]",
      "\"[%@]\"",
      // addresses
      "Write to [ann.b+c@example.co.uk].",
      "([a@b.org])",
      "See [http://www.example.org/a?b=1&c=2].",
      "See [https://example.org/a_(b)] there",
      "(see [https://example.org/a])",
      "[www.example.org], or not",
      "[HTTP://X.org]",
      "[mailto:a@b.org]",
      "[http://a.org/?a=1&amp;b=2]&nbsp;x",
      "[ftp://a.org/x] y",
      "at [http://localhost:80/x]",
      // prose
      "100 % sure",
      "100% sure",
      "5%d",
      "5%discount",
      "50%.",
      "a %sure thing",
      "% s",
      "{ }",
      "{}",
      "{a b}",
      "set {a, b}",
      "$5",
      "$ [{x}]",
      "{{}}",
      "{{a",
      "{[{a}]",
      "a @ b",
      "@home",
      "a@b",
      "a@b.",
      "see @ann",
      "a@b.c",
      "http://",
      "https:",
      "www.",
      "www.x",
      "hhttp://a.org",
      "how",
      "m",
      "http:// a",
      "e.g. word",
      "100%",
      "%",
      "caf\xC3\xA9@b.org",
      "a%20d",
  };
  for (const char* expected : cases) {
    std::string text(expected);
    std::erase_if(text, [](char c) { return c == '[' || c == ']'; });
    EXPECT_EQ(marked(text), expected);
  }
}

TEST(TextPatterns, OfAUser) {
  const TextPatterns patterns({"[[*]]", "#*#", "@@", "*x", "", "$*"});
  EXPECT_EQ(marked("a [[b c]] d", patterns), "a [[[b c]]] d");
  EXPECT_EQ(marked("#a# ## a", patterns), "[#a#] ## a");
  EXPECT_EQ(marked("a @@ b", patterns), "a [@@] b");
  EXPECT_EQ(marked("$name costs $", patterns), "[$name] costs $");
  EXPECT_EQ(marked("[[a\n]] xx", patterns), "[[a\n]] xx");
}

TEST(TextPatterns, OfTextsThatTakeLong) {
  for (const std::string_view piece : {"{",  "{{",   "{{a", "@",  "a@", "a.", "http://", "%",        "%1",      "$",
                                       "${", "www.", "&",   "&a", "#",  "(",  ")",       "http://-", "mailto:", "-"}) {
    std::string text("http://a");
    while (text.size() < 200 * 1024) text += piece;
    marked(text, TextPatterns({"#*#"}));
  }
}

TEST(HasLetter, OfNumbersAndSigns) {
  for (const char* text : {"", "12.5", "- 3 -", "\xC2\xA0", "\xE2\x82\xAC 5", "\xC2\xA9 2001", "\xE2\x86\x92",
                           "\xF0\x9F\x98\x80", "100 %", "\xFF"})
    EXPECT_FALSE(has_letter(text)) << text;
  for (const char* text : {"a", "1st", "\xC3\xA9", "\xE6\x97\xA5", "\xCE\xA9", "12 \xD1\x88\xD1\x82"})
    EXPECT_TRUE(has_letter(text)) << text;
}

}  // namespace
}  // namespace kavo::test
