#include "common/nearest.h"

#include <gtest/gtest.h>

namespace kavo::test {
namespace {

TEST(Nearest, DistanceCountsLettersPutInTakenOutAndReplaced) {
  struct Case {
    const char* name;
    std::string_view a;
    std::string_view b;
    std::size_t expected;
  };
  const Case cases[] = {
      {"both empty", "", "", 0},
      {"one empty", "abc", "", 3},
      {"the other empty", "", "ab", 2},
      {"equal", "rebuild", "rebuild", 0},
      {"another case", "ReBuild", "rEBUILD", 0},
      {"one letter missing", "rebild", "rebuild", 1},
      {"one letter too many", "stattus", "status", 1},
      {"one letter replaced", "expart", "export", 1},
      {"two letters exchanged", "exoprt", "export", 2},
      {"nothing in common", "abc", "xyz", 3},
      {"of different lengths", "kitten", "sitting", 3},
      {"at both ends", "saturday", "sunday", 3},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(edit_distance(c.a, c.b), c.expected) << c.name;
    EXPECT_EQ(edit_distance(c.b, c.a), c.expected) << c.name;
  }
}

TEST(Nearest, NamesComeNearestFirstAndEquallyNearOnesInTheirOrder) {
  using Names = std::vector<std::string_view>;
  const Names verbs = {"prepare", "export", "import", "rebuild", "stats"};
  EXPECT_EQ(nearest("impotr", verbs), (Names{"import"}));
  EXPECT_EQ(nearest("xxport", verbs, 2), (Names{"export", "import"}));
  EXPECT_EQ(nearest("abport", verbs, 3), (Names{"export", "import", "prepare"}));
  EXPECT_EQ(nearest("x", verbs, 9).size(), verbs.size());
  EXPECT_EQ(nearest("x", {}), Names{});
}

}  // namespace
}  // namespace kavo::test
