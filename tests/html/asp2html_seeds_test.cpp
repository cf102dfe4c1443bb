// Replays the fuzzer's seeds: every build checks what a fuzzer would start from.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "asp2html_property.h"

namespace kavo::test {
namespace {

TEST(Asp2HtmlSeedsTest, HoldTheProperty) {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KAVO_HTML_SEEDS "/asp2html")) {
    std::ifstream file(entry.path(), std::ios::binary);
    std::string input((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    ASSERT_FALSE(input.empty()) << entry.path();
    ++count;
    const auto kind = static_cast<unsigned char>(input[0]) % 2;
    for (const unsigned block : {0u, 1u, 2u, 6u, 31u, 127u}) {
      input[0] = static_cast<char>(block * 2 + kind);
      EXPECT_EQ(broken_asp2html_property(input), "") << entry.path() << " with blocks of " << block + 1;
    }
  }
  EXPECT_GE(count, 12u);
}

}  // namespace
}  // namespace kavo::test
