#include "formats/html/elements.h"

#include <gtest/gtest.h>

#include "formats/html/tag_names.h"

namespace kavo::html {
namespace {

TEST(ElementsTest, OneRowDescribesAnElementForTranslatorsAndForTheTree) {
  EXPECT_EQ(find_element("TD").kind, ElementKind::kBreak);
  EXPECT_TRUE(has_trait(tag_of(name_hash("td")), kScopeBarrier));
  EXPECT_EQ(find_element("b").type, "bold");
  EXPECT_TRUE(has_trait(Tag::kB, kFormatting));
}

TEST(ElementsTest, AnElementThatTheTreeTakesAsAnyOtherHasNoTag) {
  EXPECT_EQ(tag_of(name_hash("abbr")), Tag::kOther);
  EXPECT_EQ(find_element("abbr").type, "x-html-abbr");
}

TEST(ElementsTest, AnUnknownElementIsInline) {
  EXPECT_EQ(find_element("my-element").kind, ElementKind::kInline);
  EXPECT_EQ(find_element("a-name-longer-than-that-of-any-element").kind, ElementKind::kInline);
}

TEST(ElementsTest, VoidElementsAreThoseOfTheStandardAndOfOldPages) {
  for (const char* const name :
       {"area",  "base", "br",       "col",     "embed", "hr",    "img",     "input",  "link",  "meta",  "source",
        "track", "wbr",  "basefont", "bgsound", "frame", "image", "isindex", "keygen", "param", "spacer"})
    EXPECT_TRUE(find_element(name).is_void) << name;
  for (const char* const name : {"a", "p", "option", "noscript", "svg"})
    EXPECT_FALSE(find_element(name).is_void) << name;
}

}  // namespace
}  // namespace kavo::html
