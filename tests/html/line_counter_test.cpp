#include "formats/text/line_counter.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace kavo::test {
namespace {

// The literal reading: one byte after the other.
std::vector<PagePlace> places(std::string_view text) {
  std::vector<PagePlace> all;
  PagePlace place{1, 1};
  char first = 0;
  for (const char c : text) {
    all.push_back(place);
    if (c != '\n' && c != '\r') {
      ++place.column;
      first = 0;
    } else if (first != 0 && first != c) {
      place.column = 1;
      first = 0;
    } else {
      place = {place.line + 1, 1};
      first = c;
    }
  }
  all.push_back(place);
  return all;
}

TEST(LineCounterTest, PlacesAreThoseOfALiteralReadingHoweverTheTextIsFed) {
  std::mt19937 random(7);
  for (int round = 0; round < 300; ++round) {
    std::string text;
    for (int i = 0; i < 90; ++i) text += "ab\n\r\n"[random() % 5];
    const std::vector<PagePlace> expected = places(text);
    for (const std::size_t block : {1u, 2u, 7u, 64u, 1000u}) {
      LineCounter counter;
      for (std::size_t i = 0; i < text.size(); ++i) {
        if (i == counter.fed()) counter.feed(std::string_view(text).substr(i, block));
        const bool inside_line_end =
            expected[i].column == 1 && expected[i + 1].column == 1 && expected[i].line == expected[i + 1].line;
        if (inside_line_end || random() % 3 == 0) continue;  // no token begins between CR and LF
        const PagePlace place = counter.at(i);
        ASSERT_EQ(place.line, expected[i].line) << "at " << i << ", block " << block;
        ASSERT_EQ(place.column, expected[i].column) << "at " << i << ", block " << block;
      }
    }
  }
}

}  // namespace
}  // namespace kavo::test
