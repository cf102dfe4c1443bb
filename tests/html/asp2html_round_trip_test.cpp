// What must hold for every page: the scanners agree with their simple twins, and restoring gives back every byte.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>

#include "asp2html_pages.h"
#include "asp2html_run.h"
#include "formats/text/utf16_mark.h"
#include "support/corpus.h"
#include "support/splits.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

TEST(RoundTripTest, GeneratedPagesComeBackAndMatchTheTwins) {
  PageMaker maker(1);
  for (int i = 0; i < 3000; ++i) {
    const std::string page = maker.page(i % 40 == 0 ? 400 : 30);
    const std::size_t block = 1 + maker.below(40);
    const Protected result = protect(page, block);
    ASSERT_EQ(result, twin_protect(page)) << "page " << i << ": " << testing::PrintToString(page);
    ASSERT_EQ(restore(result.page, result.script, block), page) << "page " << i;
    ASSERT_EQ(twin_restore(result.page, result.script), page) << "page " << i;
  }
}

TEST(RoundTripTest, GeneratedPagesThatHoldLookAlikesComeBack) {
  PageMaker maker(2);
  for (int i = 0; i < 3000; ++i) {
    const std::string page = maker.page(30, 4);
    const std::size_t block = 1 + maker.below(40);
    const Protected result = protect(page, block);
    ASSERT_EQ(restore(result.page, result.script, block), page)
        << "page " << i << ": " << testing::PrintToString(page) << "\n"
        << result.page << "\n"
        << result.script;
  }
}

TEST(RoundTripTest, GeneratedPagesAreTheSameForEveryCut) {
  PageMaker maker(3);
  for (int i = 0; i < 60; ++i) {
    const std::string page = maker.page(25, 6);
    const Protected result =
        same_for_every_block_size(page.size(), [&](std::size_t size) { return protect(page, size); });
    same_for_every_block_size(result.page.size() + result.script.size(),
                              [&](std::size_t size) { return restore(result.page, result.script, size); });
  }
}

// Protecting a page that was protected before hides the placeholders of the first time.
TEST(RoundTripTest, ProtectedPagesCanBeProtectedAgain) {
  PageMaker maker(4);
  for (int i = 0; i < 500; ++i) {
    const std::string page = maker.page(30);
    const Protected once = protect(page);
    const Protected twice = protect(once.page);
    ASSERT_EQ(restore(twice.page, twice.script), once.page) << "page " << i;
  }
}

// Each byte from 0x80 on stands for a double-byte character whose trail byte is an ASCII letter or sign of the tokens:
// seen as characters by the twin, as bytes by the scanners.
std::string double_byte(std::string_view narrow) {
  std::string wide;
  for (const char c : narrow) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80)
      wide += c;
    else
      (wide += '\x81') += static_cast<char>(0x40 + byte % 0x3F);
  }
  return wide;
}

TEST(RoundTripTest, TrailBytesOfDoubleByteTextAreNeverTakenForTokens) {
  PageMaker maker(6);
  for (int i = 0; i < 3000; ++i) {
    std::string narrow;
    for (unsigned count = maker.below(40); count > 0; --count) {
      std::string piece(maker.pick(kPagePieces));
      const bool is_ascii = std::ranges::all_of(piece, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
      // Some letters of a token are replaced, so that it is no longer a token.
      for (char& c : piece)
        if (!is_ascii || (std::isalpha(static_cast<unsigned char>(c)) && maker.below(20) == 0))
          c = static_cast<char>(0x80 + maker.below(0x80));
      narrow += piece;
    }
    const Protected expected = twin_protect(narrow);
    const Protected result = protect(double_byte(narrow), 1 + maker.below(40));
    ASSERT_EQ(result.page, double_byte(expected.page)) << "page " << i;
    ASSERT_EQ(result.script, double_byte(expected.script)) << "page " << i;
    ASSERT_EQ(restore(result.page, result.script), double_byte(narrow)) << "page " << i;
  }
}

// A page as translation may hand it back: its placeholders, with what wraps them, moved, dropped, doubled, unknown and
// escaped.
std::string translated(const std::string& page, PageMaker& maker) {
  std::vector<std::string> pieces;
  for (std::size_t at = 0; at < page.size();) {
    auto begin = page.find("<!-- ASP2HTML", at);
    if (begin == page.npos) {
      pieces.push_back(page.substr(at));
      break;
    }
    auto end = page.find("-->", begin) + 3;
    std::string before, text = page.substr(begin, end - begin), behind;
    if (text.ends_with("Q -->")) {
      const bool has_name = begin - at >= 10 && page.substr(begin - 10, 10) == "ASP2HTML=\"";
      before = has_name ? "ASP2HTML=\"" : "\"";
      begin -= before.size();
      behind = page[end++];
    }
    pieces.push_back(page.substr(at, begin - at));
    switch (maker.below(8)) {
      case 0:
        text = "&LT;" + text.substr(1);
        break;
      case 1:
        text = "&lt;" + text.substr(1, text.size() - 2) + "&gt;";
        break;
      case 2:
        pieces.push_back(before + text + behind);
        break;
      case 3:
        text.replace(text.find("ML ") + 3, 1, "4711");
        break;
      case 4:
        before = text = behind = "";
        break;
      default:
        break;
    }
    pieces.push_back(before + text + behind);
    at = end;
  }
  for (std::size_t i = 1; i < pieces.size(); ++i)
    if (maker.below(4) == 0) std::swap(pieces[i], pieces[maker.below(static_cast<unsigned>(i))]);
  std::string result;
  for (const std::string& piece : pieces) result += piece;
  return result;
}

TEST(RestoreTranslatedTest, GeneratedTranslationsMatchTheTwin) {
  PageMaker maker(5);
  int compared = 0;
  for (int i = 0; i < 3000; ++i) {
    Protected result = protect(maker.page(40));
    if (maker.below(4) == 0) result.script += protect(maker.page(20)).script;  // the same numbers again
    const std::string html = translated(result.page, maker);
    ASSERT_EQ(restore(html, result.script, 1 + maker.below(40)), twin_restore(html, result.script))
        << "page " << i << ": " << testing::PrintToString(html) << "\n"
        << testing::PrintToString(result.script);
    compared += html != result.page;
  }
  EXPECT_GT(compared, 1500);
}

TEST(RoundTripCorpusTest, RealPagesComeBackAndMatchTheTwins) {
  if (!corpus_folder()) GTEST_SKIP() << kNoCorpus;
  int pages = 0, refused = 0;
  for (const std::u16string_view kind : {u"asp", u"jsp", u"php", u"html"}) {
    for (const std::u16string& path : corpus_files(kind, {})) {
      const std::string page = read_file(path);
      if (starts_as_utf16(page)) {
        EXPECT_NE(protect(page).page.find("UTF-16"), std::string::npos) << path_to_host(path);
        ++refused;
        continue;
      }
      for (const std::size_t block : {std::size_t{4096}, std::size_t{7}}) {
        const Protected result = protect(page, block);
        EXPECT_EQ(result, twin_protect(page)) << path_to_host(path);
        EXPECT_EQ(restore(result.page, result.script, block), page) << path_to_host(path);
      }
      ++pages;
    }
  }
  EXPECT_GT(pages, 50);
  RecordProperty("pages", pages);
  RecordProperty("refused_utf16", refused);
}

}  // namespace
}  // namespace kavo::test
