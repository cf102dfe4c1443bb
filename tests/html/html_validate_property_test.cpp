// What holds for every page: generated ones, the corpus, the fuzzer's seeds, and hostile ones.
#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <fstream>
#include <iterator>
#include <random>

#include "html_validate_rules.h"
#include "html_validate_run.h"
#include "support/corpus.h"

namespace kavo::test {
namespace {

std::string generated_page(std::uint32_t seed) {
  static constexpr std::string_view pieces[] = {"<b>",
                                                "</b>",
                                                "<i>",
                                                "</i>",
                                                "<i class=x>",
                                                "<font size=2>",
                                                "</font>",
                                                "<a href='x>y'>",
                                                "</a>",
                                                "<u>",
                                                "</u>",
                                                "<span>",
                                                "</span>",
                                                "<cite>",
                                                "</cite>",
                                                "<p>",
                                                "</p>",
                                                "<p>",
                                                "<div>",
                                                "</div>",
                                                "<ul>",
                                                "<li>",
                                                "</li>",
                                                "</ul>",
                                                "<h1>",
                                                "</h1>",
                                                "</h2>",
                                                "<pre>",
                                                "</pre>",
                                                "<table>",
                                                "<tr>",
                                                "<td>",
                                                "</td>",
                                                "</tr>",
                                                "</table>",
                                                "<caption>",
                                                "</caption>",
                                                "<colgroup>",
                                                "<col>",
                                                "<svg>",
                                                "</svg>",
                                                "<button>",
                                                "</button>",
                                                "<select>",
                                                "<option>",
                                                "</select>",
                                                "<object>",
                                                "</object>",
                                                "<nobr>",
                                                "</nobr>",
                                                "<script>a<b</script>",
                                                "<style>a>b</style>",
                                                "<!-- > -->",
                                                "<!-->",
                                                "<br>",
                                                "x",
                                                " ",
                                                "\n",
                                                "\r\n",
                                                " a > b < c ",
                                                "&lt;",
                                                "<% > %>",
                                                "<?php > ?>",
                                                "</>",
                                                "<!doctype html>",
                                                "</body>",
                                                "</html>",
                                                "<body>",
                                                "\x83\x5C",
                                                "<template>",
                                                "</template>"};
  std::minstd_rand random(seed);
  std::string page;
  for (std::size_t i = 0, length = 1 + random() % 40; i < length; ++i) page += pieces[random() % std::size(pieces)];
  return page;
}

TEST(HtmlValidateProperty, HoldsForGeneratedPages) {
  for (std::uint32_t seed = 1; seed <= 3000; ++seed) {
    const std::string page = generated_page(seed);
    ASSERT_EQ(broken_rule(page), "") << "seed " << seed << ": " << page;
  }
}

TEST(HtmlValidateProperty, GeneratedPagesGiveTheSameForEveryBlockSize) {
  for (std::uint32_t seed = 1; seed <= 150; ++seed) {
    const std::string page = generated_page(seed);
    const Validated expected = validate(page);
    for (std::size_t size = 1; size < 40; ++size)
      ASSERT_EQ(validate(page, size), expected) << "seed " << seed << ", blocks of " << size << ": " << page;
  }
}

TEST(HtmlValidateProperty, HoldsForTheCorpus) {
  if (!corpus_folder()) GTEST_SKIP() << kNoCorpus;
  for (const std::u16string_view kind : {u"html", u"asp", u"jsp", u"php"}) {
    for (const auto& path : corpus_files(kind, {})) {
      BlockReader reader(path);
      while (reader.more()) {
      }
      EXPECT_EQ(broken_rule(reader.window()), "") << path_to_host(path);
    }
  }
}

// Hostile pages: one piece many times. Where the searches through a page would take the square of its size, the repair
// stops at a number of steps for each byte and says that it leaves the rest (`is_left`).
struct Hostile {
  const char* name;
  std::string_view piece;
  bool is_left = false;
};
constexpr Hostile kHostile[] = {{"nested b", "<b>"},
                                {"nested font", "<font size=1>"},
                                {"unclosed in paragraphs", "<p><i><u>x"},
                                {"nested tables", "<table><tr><td>", true},
                                {"fonts and blocks", "<font><div>"},
                                {"b around blocks", "<b><div></b>"},
                                {"strays", "<>< "},
                                {"spans closed by nothing", "<span></x-y>", true},
                                {"lists", "<ul><li><b>", true},
                                {"ends of body", "</body>"},
                                {"nobr", "<nobr>x"},
                                {"a", "<a>x<div>"},
                                {"comments", "<!--->"}};

std::string repeated(std::string_view piece, std::size_t count) {
  std::string page;
  for (std::size_t i = 0; i < count; ++i) page += piece;
  return page;
}

std::string fonts_that_all_differ(std::size_t count) {
  std::string page;
  for (std::size_t i = 0; i < count; ++i) page += "<font size=" + std::to_string(i) + ">x<p>";
  return page;
}

bool leaves_the_rest(const Validated& result) {
  return std::ranges::any_of(result.messages, [](const Message& message) {
    return message.number == 3019 && message.text.find(u"everything that follows") != std::u16string::npos;
  });
}

TEST(HtmlValidateProperty, HostilePagesAreSearchedInStepsOfTheirSize) {
  for (const Hostile& hostile : kHostile) {
    const Validated result = validate(repeated(hostile.piece, 40'000));
    EXPECT_EQ(result.result, 0) << hostile.name;
    EXPECT_EQ(leaves_the_rest(result), hostile.is_left) << hostile.name;
  }
  EXPECT_TRUE(leaves_the_rest(validate(fonts_that_all_differ(30'000))));
}

// The least processor time of three runs, in seconds: other programs on the machine can only add to it.
double least_seconds(const std::string& page) {
  double least = 1e9;
  for (int run = 0; run < 3; ++run) {
    const std::clock_t start = std::clock();
    validate(page);
    least = std::min(least, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  }
  return least;
}

// Not all work counts as steps. With the square of the page's size, a page ten times as large takes a hundred times as
// long; with its size, ten times. A time below the clock's resolution counts as two milliseconds.
TEST(HtmlValidateProperty, HostilePagesTakeLinearTime) {
  static constexpr double kResolution = 0.002;
  const auto expect_linear = [](const char* name, const std::string& small, const std::string& large) {
    EXPECT_LT(least_seconds(large), 30 * std::max(least_seconds(small), kResolution)) << name;
  };
  for (const Hostile& hostile : kHostile)
    expect_linear(hostile.name, repeated(hostile.piece, 4'000), repeated(hostile.piece, 40'000));
  expect_linear("fonts", fonts_that_all_differ(3'000), fonts_that_all_differ(30'000));
}

TEST(HtmlValidateProperty, LongTagsAreReadThrough) {
  const std::string data(300'000, 'A');
  const std::string page = "<b><img src=\"data:" + data + "\"><i>1</b>";
  EXPECT_EQ(validate(page, 4096).page, "<b><img src=\"data:" + data + "\"><i>1</I></b>");
}

}  // namespace
}  // namespace kavo::test
