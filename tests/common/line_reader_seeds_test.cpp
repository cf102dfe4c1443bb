// Replays the fuzzer's seeds: every build checks what a fuzzer would start from.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "common/line_reader_property.h"
#include "support/system.h"

namespace kavo::test {
namespace {

TEST(LineReaderSeeds, HoldTheProperty) {
  if (!is_native()) GTEST_SKIP() << "what invalid bytes become is the system's own affair here";
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KAVO_LINE_READER_SEEDS)) {
    std::ifstream file(entry.path(), std::ios::binary);
    std::string input((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    SCOPED_TRACE(entry.path().filename().string());
    ASSERT_GE(input.size(), 2u);
    ++count;
    for (int choice = 0; choice < 256; ++choice) {
      input[0] = static_cast<char>(choice % 16);
      input[1] = static_cast<char>(choice);
      ASSERT_EQ(broken_line_reader_property(input), "") << "with choice " << choice;
    }
  }
  EXPECT_GE(count, 4u);
}

TEST(LineReaderSeeds, GeneratedTextHoldsTheProperty) {
  if (!is_native()) GTEST_SKIP() << "what invalid bytes become is the system's own affair here";
  std::mt19937 random(3);
  constexpr std::string_view bytes = "\r\n\r\nab\x81\x82\x93\xFA\xC3\xA4\xE6\x97\xA5\xF0\x9F\x98\x80\xFF\x40\x5C";
  for (int round = 0; round < 4000; ++round) {
    std::string input(2 + random() % 60, '\0');
    for (char& c : input) c = bytes[random() % bytes.size()];
    input[0] = static_cast<char>(random() % 12);
    input[1] = static_cast<char>(random());
    ASSERT_EQ(broken_line_reader_property(input), "") << testing::PrintToString(input);
  }
}

}  // namespace
}  // namespace kavo::test
