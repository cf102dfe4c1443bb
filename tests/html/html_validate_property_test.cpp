// What holds for every page: generated ones, the corpus, the fuzzer's seeds, and hostile ones.
#include <gtest/gtest.h>

#include <chrono>
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
  std::size_t pages = 0;
  for (const std::u16string_view kind : {u"html", u"asp", u"jsp", u"php"}) {
    for (const auto& path : corpus_files(kind, {})) {
      BlockReader reader(path);
      while (reader.more()) {
      }
      ++pages;
      EXPECT_EQ(broken_rule(reader.window()), "") << path_to_host(path);
    }
  }
  if (pages == 0) GTEST_SKIP() << "no corpus";
}

// Time must grow with the page, not with its square: ten times the page in at most forty times the time.
TEST(HtmlValidateProperty, HostilePagesTakeLinearTime) {
  struct Case {
    const char* name;
    std::string_view piece;
  };
  static constexpr Case cases[] = {{"nested b", "<b>"},
                                   {"nested font", "<font size=1>"},
                                   {"unclosed in paragraphs", "<p><i><u>x"},
                                   {"nested tables", "<table><tr><td>"},
                                   {"fonts and blocks", "<font><div>"},
                                   {"b around blocks", "<b><div></b>"},
                                   {"strays", "<>< "},
                                   {"spans closed by nothing", "<span></x-y>"},
                                   {"lists", "<ul><li><b>"},
                                   {"ends of body", "</body>"},
                                   {"nobr", "<nobr>x"},
                                   {"a", "<a>x<div>"},
                                   {"comments", "<!--->"}};
  for (const Case& c : cases) {
    const auto seconds = [&](std::size_t count) {
      std::string page;
      for (std::size_t i = 0; i < count; ++i) page += c.piece;
      const auto start = std::chrono::steady_clock::now();
      validate(page);
      return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    const double small = seconds(4'000);
    const double large = seconds(40'000);
    EXPECT_LT(large, 40 * small + 0.2) << c.name;
  }
}

TEST(HtmlValidateProperty, EqualFontsWithOtherAttributesTakeLinearTime) {
  std::string page;
  for (int i = 0; i < 30'000; ++i) page += "<font size=" + std::to_string(i) + ">x<p>";
  const auto start = std::chrono::steady_clock::now();
  validate(page);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

TEST(HtmlValidateProperty, LongTagsAreReadThrough) {
  const std::string data(300'000, 'A');
  const std::string page = "<b><img src=\"data:" + data + "\"><i>1</b>";
  EXPECT_EQ(validate(page, 4096).page, "<b><img src=\"data:" + data + "\"><i>1</I></b>");
}

}  // namespace
}  // namespace kavo::test
