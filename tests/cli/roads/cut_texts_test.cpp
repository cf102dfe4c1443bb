// Texts that are too long for one segment come back although they are cut at other places.
#include <gtest/gtest.h>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "support/temp_folder.h"
#include "workflow/text_comparison.h"

namespace kavo::test {
namespace {

std::string words(std::size_t size) {
  std::string text;
  for (std::size_t i = 0; text.size() < size; ++i) text += "word" + std::to_string(i) + " ";
  text.pop_back();
  return text;
}

// Cut at blanks into pieces of at most a size. The blanks between are lost.
std::vector<std::string_view> pieces_of(std::string_view text, std::size_t size) {
  std::vector<std::string_view> pieces;
  while (text.size() > size) {
    const std::size_t blank = text.rfind(' ', size);
    pieces.push_back(text.substr(0, blank));
    text.remove_prefix(blank + 1);
  }
  pieces.push_back(text);
  return pieces;
}

TEST(CutTexts, TheSameWordsCutElsewhereAreTheSameText) {
  const std::string text = words(1'000'000);
  for (const std::size_t size : {50'000u, 99'999u, 400'000u, 2'000'000u}) {
    std::vector<std::string_view> expected = pieces_of(text, 262'144), found = pieces_of(text, size);
    for (auto* texts : {&expected, &found}) {
      texts->insert(texts->begin(), "before");
      texts->push_back("behind");
    }
    EXPECT_TRUE(compare_texts(expected, found).empty()) << size;
    EXPECT_TRUE(compare_texts(found, expected).empty()) << size;
  }
}

TEST(CutTexts, AnotherWordIsFound) {
  const std::string text = words(1'000'000);
  std::string changed = text;
  changed[700'000] ^= 1;
  EXPECT_FALSE(compare_texts(pieces_of(text, 262'144), pieces_of(changed, 200'000)).empty());
  changed = text;
  changed.back() = '!';
  EXPECT_FALSE(compare_texts(pieces_of(text, 262'144), pieces_of(changed, 200'000)).empty());
  EXPECT_FALSE(compare_texts(pieces_of(text, 262'144), pieces_of(text.substr(0, 900'000), 200'000)).empty());
}

TEST(CutTexts, AShortTextEndsWhereItEnds) {
  const std::vector<std::string_view> expected{"One", "Two"}, found{"OneTwo"};
  EXPECT_FALSE(compare_texts(expected, found).empty());
  EXPECT_FALSE(compare_texts(found, expected).empty());
}

TEST(CutTexts, APageWithOneTextOfThreeMegabytesIsVerified) {
  TempFolder folder;
  const std::string page = "<html><body><p>" + words(3'000'000) + "</p><p>The end</p></body></html>\r\n";
  const Ran ran = run_kavo({"verify", path_to_host(folder.write(u"long.htm", page))});
  EXPECT_EQ(ran.code, 0) << ran.output.substr(0, 2000);
}

}  // namespace
}  // namespace kavo::test
