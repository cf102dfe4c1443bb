// Patterns that select files of a folder tree.
#include "workflow/path_pattern.h"

#include <gtest/gtest.h>

#include <string>

namespace kavo::test {
namespace {

TEST(PathPattern, SelectsNamesPathsAndWholeFolders) {
  const struct {
    const char16_t* pattern;
    const char16_t* path;
    bool selects;
  } cases[] = {
      {u"*.asp", u"index.asp", true},
      {u"*.asp", u"a\\b\\INDEX.ASP", true},
      {u"*.asp", u"index.aspx", false},
      {u"i?dex.asp", u"index.asp", true},
      {u"i?ndex.asp", u"index.asp", false},
      {u"drafts", u"drafts\\a.htm", true},
      {u"drafts", u"x\\drafts\\y\\a.htm", true},
      {u"drafts", u"a\\drafts", true},
      {u"drafts/", u"a\\drafts", false},
      {u"drafts/", u"a\\drafts\\b.htm", true},
      {u"shop/old", u"shop\\old\\a.htm", true},
      {u"shop/old", u"x\\shop\\old\\a.htm", false},
      {u"/shop", u"shop\\a.htm", true},
      {u"/shop", u"x\\shop\\a.htm", false},
      {u"shop/*.htm", u"shop\\a.htm", true},
      {u"shop/*.htm", u"shop\\b\\a.htm", false},
      {u"shop/**/*.htm", u"shop\\a.htm", true},
      {u"shop/**/*.htm", u"shop\\b\\c\\a.htm", true},
      {u"shop/**", u"shop\\b\\c\\a.htm", true},
      {u"**/a.htm", u"a.htm", true},
      {u"**/a.htm", u"b\\c\\a.htm", true},
      {u"**/a.htm", u"b\\xa.htm", false},
      {u"shop\\*.htm", u"shop\\a.htm", true},
      {u"*", u"a", true},
      {u"", u"a", false},
      {u"/", u"a", false},
      {u"*a*a*a*a*a*a*b", u"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", false},
  };
  for (const auto& c : cases)
    EXPECT_EQ(selects(c.pattern, c.path), c.selects)
        << std::string(c.pattern, c.pattern + std::u16string(c.pattern).size()) << " on "
        << std::string(c.path, c.path + std::u16string(c.path).size());
}

}  // namespace
}  // namespace kavo::test
