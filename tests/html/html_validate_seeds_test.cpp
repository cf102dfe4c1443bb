// Replays the fuzzer's seeds: every build checks what a fuzzer would start from.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "html_validate_rules.h"

namespace kavo::test {
namespace {

TEST(HtmlValidateSeeds, HoldTheRules) {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KAVO_HTML_SEEDS "/html_validate")) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string page((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    ++count;
    EXPECT_EQ(broken_rule(page), "") << entry.path();
  }
  EXPECT_GE(count, 12u);
}

}  // namespace
}  // namespace kavo::test
