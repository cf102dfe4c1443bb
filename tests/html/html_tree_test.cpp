// The searches of the tree construction: what they step over is counted, so that linear time is tested without a clock.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "formats/html/tree.h"

namespace kavo::test {
namespace {

class SilentObserver final : public TreeObserver {
 public:
  void closing(const Closing&) override {}
  void reopening(std::size_t) override {}
  void crossing(const OpenElement&, const OpenElement&) override {}
};

// Feeds start tags ("b"), end tags ("/b") and text ("*"), separated by blanks.
class Feeder {
 public:
  void feed(std::string_view tokens) {
    while (!tokens.empty()) {
      const std::size_t end = tokens.find(' ');
      one(tokens.substr(0, end));
      tokens = end == std::string_view::npos ? std::string_view() : tokens.substr(end + 1);
    }
  }
  const HtmlTree& tree() const { return tree_; }

 private:
  void one(std::string_view token) {
    if (token == "*") return tree_.character();
    const bool ends = token.starts_with('/');
    const std::uint64_t name = name_hash(ends ? token.substr(1) : token);
    if (ends) return tree_.end_tag(name, tag_of(name));
    const std::string text = "<" + std::string(token) + ">";
    StartTag tag;
    tag.name = name;
    tag.tag = tag_of(name);
    tag.text = text;
    tree_.start_tag(tag);
  }

  SilentObserver observer_;
  HtmlTree tree_{observer_};
};

struct SearchCase {
  std::string_view name;
  std::string_view before;
  std::string_view repeated;
};

class HtmlTreeSearchTest : public testing::TestWithParam<SearchCase> {};

TEST_P(HtmlTreeSearchTest, OpenInlineElementsAreNotSteppedOver) {
  const auto steps = [](int repeats) {
    Feeder feeder;
    feeder.feed(GetParam().before);
    for (int i = 0; i < repeats; ++i) feeder.feed(GetParam().repeated);
    return feeder.tree().steps();
  };
  const std::uint64_t once = steps(500);
  EXPECT_LE(steps(2000), 5 * once);
}

INSTANTIATE_TEST_SUITE_P(
    Pages, HtmlTreeSearchTest,
    testing::Values(SearchCase{"TableClosedOverThem", "html body", "p b * /p table tr td * /td /tr /table *"},
                    SearchCase{"TableClosedOverThemInATableThatStaysOpen", "table tr td",
                               "p b * /p table tr td * /td /tr /table *"},
                    SearchCase{"SelectClosedOverThem", "table tr td", "b * select option * /select *"},
                    SearchCase{"ParagraphOverThem", "html body p", "b * div * /div"},
                    SearchCase{"ListItemOverThem", "html body ul li", "b * ul li * /ul"},
                    SearchCase{"HeadingOverThem", "html body div", "b * h1 * /h1"}),
    [](const auto& row) { return std::string(row.param.name); });

std::string open_names(std::string_view tokens) {
  Feeder feeder;
  feeder.feed(tokens);
  std::string names;
  for (const OpenElement& element : feeder.tree().stack()) {
    if (!names.empty()) names += ' ';
    names += name_of(element.tag);
  }
  return names;
}

TEST(HtmlTreeTest, ElementsTakenFromUnderOthersLeaveTheSearchesRight) {
  // The form is removed from under the div, and the paragraph's scope still ends at the same place.
  EXPECT_EQ(open_names("html body form div b * /form"), "html body div b");
  EXPECT_EQ(open_names("html body form div b * /form p * div"), "html body div b div");
  // A formatting element is rebuilt inside the block that its end tag crosses.
  EXPECT_EQ(open_names("html body b div p * /b * /div"), "html body");
  EXPECT_EQ(open_names("html body b div * /b table tr td * /td /tr /table"), "html body div");
  EXPECT_EQ(open_names("html body a div a * /div p *"), "html body p a");
}

}  // namespace
}  // namespace kavo::test
