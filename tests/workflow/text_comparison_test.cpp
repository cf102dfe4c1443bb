// What kavo verify compares with: texts in their order, and files.
#include "workflow/text_comparison.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "common/block_reader.h"
#include "common/file_comparison.h"
#include "suite/document/coded_text.h"
#include "support/ports_fixture.h"

namespace kavo {

static void PrintTo(const TextFinding& finding, std::ostream* out) {
  *out << static_cast<int>(finding.change) << " " << static_cast<std::int64_t>(finding.expected) << " "
       << static_cast<std::int64_t>(finding.found);
}

namespace test {
namespace {

constexpr std::size_t kNone = TextFinding::kNone;
using Findings = std::vector<TextFinding>;

Findings compare(const std::vector<std::string_view>& expected, const std::vector<std::string_view>& found) {
  return compare_texts(expected, found);
}

TEST(CompareTexts, SmallChanges) {
  using enum TextChange;
  const struct {
    const char* name;
    std::vector<std::string_view> expected;
    std::vector<std::string_view> found;
    Findings findings;
  } cases[] = {
      {"nothing", {}, {}, {}},
      {"equal", {"a", "b"}, {"a", "b"}, {}},
      {"lost at the begin", {"a", "b", "c"}, {"b", "c"}, {{kLost, 0, kNone, 0}}},
      {"lost at the end", {"a", "b", "c"}, {"a", "b"}, {{kLost, 2, kNone, 2}}},
      {"all lost", {"a", "b"}, {}, {{kLost, 0, kNone, 0}, {kLost, 1, kNone, 1}}},
      {"doubled", {"a", "b", "c"}, {"a", "a", "b", "c"}, {{kDoubled, kNone, 1, 0}}},
      {"doubled far away", {"a", "b", "c"}, {"a", "b", "c", "a"}, {{kDoubled, kNone, 3, 2}}},
      {"added", {"a", "b"}, {"a", "x", "b"}, {{kAdded, kNone, 1, 0}}},
      {"all added", {}, {"x", "y"}, {{kAdded, kNone, 0}, {kAdded, kNone, 1}}},
      {"changed", {"a", "b", "c"}, {"a", "x", "c"}, {{kChanged, 1, 1, 1}}},
      {"last changed", {"a"}, {"x"}, {{kChanged, 0, 0, 0}}},
      {"two changed", {"a", "b", "c"}, {"x", "y", "c"}, {{kChanged, 0, 0, 0}, {kChanged, 1, 1, 1}}},
      {"changed and lost", {"a", "b", "c"}, {"x", "c"}, {{kChanged, 0, 0, 0}, {kLost, 1, kNone, 1}}},
      {"moved", {"a", "b", "c"}, {"b", "c", "a"}, {{kLost, 0, kNone, 0}, {kDoubled, kNone, 2, 2}}},
  };
  for (const auto& c : cases) EXPECT_EQ(compare(c.expected, c.found), c.findings) << c.name;
}

TEST(CompareTexts, BrokenPlaceholders) {
  const std::string with = from_host_text(u"a <1/>b");
  const std::string without = "a b";
  EXPECT_EQ(compare({with}, {without}), (Findings{{TextChange::kBrokenCodes, 0, 0, 0}}));
  const std::string other = from_host_text(u"x <1/>b");
  EXPECT_EQ(compare({with}, {other}), (Findings{{TextChange::kChanged, 0, 0, 0}}));
}

TEST(CompareTexts, AHundredThousandWithoutOneInCommonEnd) {
  std::vector<std::string> texts;
  for (int i = 0; i < 200000; ++i) texts.push_back(std::to_string(i));
  const std::vector<std::string_view> expected(texts.begin(), texts.begin() + 100000);
  const std::vector<std::string_view> found(texts.begin() + 100000, texts.end());
  EXPECT_EQ(compare(expected, found).size(), 100000u);
}

class FirstDifference : public PortsFixture {
 protected:
  std::optional<FileDifference> between(std::string_view first, std::string_view second) {
    files.put(u"C:\\work\\a", first);
    files.put(u"C:\\work\\b", second);
    return first_difference(u"C:\\work\\a", u"C:\\work\\b");
  }
};

TEST_F(FirstDifference, IsFoundAtEveryBlockSize) {
  const struct {
    const char* name;
    std::string_view first, second;
    std::int64_t line, column;
    const char* shown_first;
    const char* shown_second;
  } cases[] = {
      {"first byte", "abc", "xbc", 1, 1, "abc", "xbc"},
      {"in a line", "one\r\ntwo three\r\n", "one\r\ntwo tree\r\n", 2, 6, "two three", "two tree"},
      {"begin of a line", "one\ntwo\n", "one\nTwo\n", 2, 1, "two", "Two"},
      {"shorter", "one\ntwo", "one\n", 2, 1, "two", ""},
      {"longer", "", "x", 1, 1, "", "x"},
      {"line end", "one\n", "one\r\n", 1, 4, "one", "one"},
      {"long line", "0123456789012345678901234567890123456789a", "0123456789012345678901234567890123456789b", 1, 41,
       "678901234567890123456789a", "678901234567890123456789b"},
  };
  for (const auto& c : cases)
    for (const std::size_t size : {1, 2, 3, 5, 100}) {
      const BlockSizeScope scope(size);
      const auto difference = between(c.first, c.second);
      ASSERT_TRUE(difference) << c.name;
      EXPECT_EQ(difference->line, c.line) << c.name << " " << size;
      EXPECT_EQ(difference->column, c.column) << c.name << " " << size;
      EXPECT_EQ(difference->position,
                static_cast<std::size_t>(std::ranges::mismatch(c.first, c.second).in1 - c.first.begin()))
          << c.name << " " << size;
      EXPECT_EQ(difference->first, c.shown_first) << c.name << " " << size;
      EXPECT_EQ(difference->second, c.shown_second) << c.name << " " << size;
      EXPECT_FALSE(between(c.first, c.first)) << c.name;
    }
}

}  // namespace
}  // namespace test
}  // namespace kavo
