// Real pages and generated ones on the whole way, unchanged and translated.
#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <random>

#include "common/clsCommon.h"
#include "platform/unicode.h"
#include "suite/html_filter_property.h"
#include "support/corpus.h"
#include "support/tries.h"

namespace kavo::test {
namespace {

TEST(HtmlFilterCorpus, RealPagesSurvive) {
  if (!corpus_folder()) GTEST_SKIP() << kNoCorpus;
  for (const std::u16string_view kind : {u"html", u"asp", u"jsp", u"php"}) {
    std::size_t count = 0;
    std::size_t right = 0;
    std::size_t texts = 0;
    for (const std::u16string& path : corpus_files(kind, {})) {
      SCOPED_TRACE(to_utf8(path));
      const std::string page = read_whole(path);
      std::size_t text_count = 0;
      const std::string broken = broken_html_property(page, 1252, true, &text_count);
      EXPECT_EQ(broken, "");
      ++count;
      right += broken.empty() ? 1 : 0;
      texts += text_count;
    }
    EXPECT_GT(texts, 0u) << to_utf8(kind);
    std::printf("%s: %zu of %zu pages, %zu texts\n", to_utf8(kind).c_str(), right, count, texts);
  }
}

// Pages of pieces that meet in every order.
TEST(HtmlFilterProperty, GeneratedPagesSurvive) {
  const std::string_view pieces[] = {"<p>",
                                     "</p>",
                                     "<b>",
                                     "</b>",
                                     "<i title='ano t'>",
                                     "</i>",
                                     "<img alt=\"eine\" src=x>",
                                     "<br>",
                                     "<pre>",
                                     "</pre>",
                                     "<!-- u -->",
                                     "<!-- ASP2HTML 4 -->",
                                     "<%= a %>",
                                     "<?php u ?>",
                                     "text ",
                                     " a",
                                     "\n",
                                     "  ",
                                     "&nbsp;",
                                     "&eacute;",
                                     "&a;",
                                     "&",
                                     "<",
                                     ">",
                                     "\"",
                                     "'",
                                     "<textarea>",
                                     "</textarea>",
                                     "<title>",
                                     "</title>",
                                     "<script>",
                                     "</script>",
                                     "<span translate=no>",
                                     "</span>",
                                     "<svg>",
                                     "</svg>",
                                     "<option>",
                                     "<a href=",
                                     "\xC3\xA9",
                                     "\xE9",
                                     "\xC2\xA0",
                                     "\x01",
                                     "<td ASP2HTML=\"<!-- ASP2HTML 1 Q -->\">",
                                     "<input type=button value=ok>",
                                     "</",
                                     "<!",
                                     "<%",
                                     "=",
                                     "/>",
                                     "<u>",
                                     "</u>",
                                     "<html lang=en>",
                                     "<x:y>",
                                     "</x:y>",
                                     "\r\n",
                                     "\r",
                                     "&#10;",
                                     "&#13;",
                                     "&lt"};
  std::mt19937 random(20260);
  for (int round = 0; round < tries(400); ++round) {
    std::string page;
    for (unsigned i = random() % 40; i > 0; --i) page += pieces[random() % std::size(pieces)];
    const BlockSizeScope scope(1 + random() % 64);
    ASSERT_EQ(broken_html_property(page, 65001, true), "") << page;
    ASSERT_EQ(broken_html_property(page, 932, false), "") << page;
  }
}

}  // namespace
}  // namespace kavo::test
