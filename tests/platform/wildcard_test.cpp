#include "platform/wildcard.h"

#include <gtest/gtest.h>

#include "platform/unicode.h"

namespace kavo {
namespace {

struct Case {
  const char* name;
  std::u16string_view file;
  std::u16string_view pattern;
  bool expected;
};

TEST(WildcardTest, Table) {
  const Case cases[] = {
      {"star fits everything", u"a.b.c", u"*", true},
      {"star fits the empty name", u"", u"*", true},
      {"star dot star fits a name without dot", u"makefile", u"*.*", true},
      {"dot star fits a name without dot", u"readme", u"readme.*", true},
      {"dot question fits the end", u"readme", u"readme.???", true},
      {"star dot fits names without dot", u"makefile", u"*.", true},
      {"star dot fits no name with dot", u"make.file", u"*.", false},
      {"question is one character", u"ab", u"a?", true},
      {"question may be none at the end", u"a", u"a?", true},
      {"questions may be none before a dot", u"a.txt", u"a??.txt", true},
      {"question is not none inside", u"ac", u"a?c", false},
      {"question is no dot", u"a.c", u"a?c", false},
      {"case does not matter", u"ABC.TXT", u"abc.t*", true},
      {"case of other scripts", u"\u0416", u"\u0436", true},
      {"literal must fit whole", u"abc", u"ab", false},
      {"pattern longer than the name", u"ab", u"abc", false},
      {"star in the middle", u"abcabc", u"a*c", true},
      {"star looks further than the first fit", u"aXbXc", u"*X*c", true},
      {"long extension is not cut to three", u"a.html", u"*.htm", false},
      {"empty pattern", u"a", u"", false},
  };
  for (const Case& c : cases) EXPECT_EQ(matches_wildcard(c.file, c.pattern), c.expected) << c.name;
}

TEST(WildcardTest, ManyStarsStayLinear) {
  std::u16string pattern;
  for (int i = 0; i < 100; ++i) pattern += u"*a";
  EXPECT_FALSE(matches_wildcard(std::u16string(200, u'a') + u"b", pattern));
  EXPECT_TRUE(matches_wildcard(std::u16string(200, u'a'), pattern));
}

}  // namespace
}  // namespace kavo
