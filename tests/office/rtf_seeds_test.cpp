// Replays the fuzzer's seeds: every build checks what a fuzzer would start from.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "office/rtf_property.h"

namespace kavo::test {
namespace {

TEST(RtfSeeds, HoldTheProperty) {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KAVO_RTF_SEEDS)) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string input((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    SCOPED_TRACE(entry.path().filename().string());
    ASSERT_FALSE(input.empty());
    ++count;
    for (const unsigned block_size : {0u, 1u, 2u, 5u, 33u, 127u}) {
      std::string variant = input;
      variant[0] = static_cast<char>(block_size * 2 + (static_cast<unsigned char>(input[0]) & 1u));
      EXPECT_EQ(broken_rtf_property(variant), "");
    }
  }
  EXPECT_GE(count, 8u);
}

}  // namespace
}  // namespace kavo::test
