// Replays the fuzzer's seeds: every build checks what a fuzzer would start from.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "suite/html_filter_property.h"

namespace kavo::test {
namespace {

TEST(HtmlFilterSeeds, HoldTheProperty) {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KAVO_SUITE_SEEDS "/html_filter")) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string input((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    SCOPED_TRACE(entry.path().filename().string());
    ++count;
    EXPECT_EQ(broken_html_filter_property(input), "");
  }
  EXPECT_GE(count, 8u);
}

}  // namespace
}  // namespace kavo::test
