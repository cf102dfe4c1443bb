#include "common/byte_scan.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace kavo::test {
namespace {

// Tries every length from 0 to 200 at every alignment, with rare hits, frequent hits, and hits at both ends.
template <class Check>
void for_many_ranges(Check check) {
  std::mt19937 random(1);
  std::string bytes(300, '\0');
  for (const unsigned kinds : {2u, 4u, 60u, 256u}) {
    for (char& c : bytes) c = static_cast<char>("<>\"'%? x"[random() % 8] + (kinds > 8 ? random() % kinds : 0));
    for (std::size_t length = 0; length <= 200; ++length)
      for (std::size_t offset = 0; offset < 32; ++offset) {
        const char* begin = bytes.data() + offset;
        check(begin, begin + length);
      }
  }
  for (std::size_t length = 1; length <= 200; ++length) {
    std::string plain(length, 'x');
    for (const std::size_t at : {std::size_t{0}, length / 2, length - 1}) {
      std::string with_hit = plain;
      with_hit[at] = '<';
      check(with_hit.data(), with_hit.data() + with_hit.size());
      if (at + 1 < length) with_hit[at + 1] = '%';
      check(with_hit.data(), with_hit.data() + with_hit.size());
    }
    check(plain.data(), plain.data() + plain.size());
  }
}

TEST(FindAny, AgreesWithThePlainTwin) {
  for_many_ranges([](const char* p, const char* end) {
    ASSERT_EQ((find_any<'<'>(p, end)), (simple::find_any<'<'>(p, end)));
    ASSERT_EQ((find_any<'<', '>', '\r', '\n'>(p, end)), (simple::find_any<'<', '>', '\r', '\n'>(p, end)));
    ASSERT_EQ((find_any<'\0', '\xFF'>(p, end)), (simple::find_any<'\0', '\xFF'>(p, end)));
  });
}

TEST(FindPair, AgreesWithThePlainTwin) {
  for_many_ranges([](const char* p, const char* end) {
    ASSERT_EQ((find_pair<'<', '%'>(p, end)), (simple::find_pair<'<', '%'>(p, end)));
    ASSERT_EQ((find_pair<'<', '%', '?', '<'>(p, end)), (simple::find_pair<'<', '%', '?', '<'>(p, end)));
    ASSERT_EQ((find_pair<'\xFF', '\xFF'>(p, end)), (simple::find_pair<'\xFF', '\xFF'>(p, end)));
  });
}

TEST(FindPair, FirstByteAtTheEndDoesNotCount) {
  for (std::size_t length = 1; length < 80; ++length) {
    const std::string bytes = std::string(length - 1, 'x') + "<%";
    const char* end = bytes.data() + length;  // the "%" lies after the range
    EXPECT_EQ((find_pair<'<', '%'>(bytes.data(), end)), end);
  }
}

TEST(FindText, AgreesWithStringSearch) {
  std::mt19937 random(2);
  for (int round = 0; round < 3000; ++round) {
    std::string text(random() % 60, ' ');
    for (char& c : text) c = "<!-x"[random() % 4];
    for (const std::string_view needle : {"<", "<!", "<!--", "-->", "x<!-"}) {
      const std::size_t expected = std::min(text.find(needle), text.size());
      ASSERT_EQ(find_text(text.data(), text.data() + text.size(), needle) - text.data(),
                static_cast<std::ptrdiff_t>(expected))
          << text << " / " << needle;
    }
  }
}

TEST(BeginsWithIgnoringCase, TakesAsciiLettersOnly) {
  const auto begins = [](std::string_view text, std::string_view lower) {
    return begins_with_ignoring_case(text.data(), text.data() + text.size(), lower);
  };
  EXPECT_TRUE(begins("<ScRiPt x", "<script"));
  EXPECT_TRUE(begins("<script", "<script"));
  EXPECT_FALSE(begins("<scrip", "<script"));
  EXPECT_FALSE(begins("\x1Cscript", "<script")) << "32 less than a token is not its upper case";
  EXPECT_FALSE(begins("[", "{"));
  EXPECT_TRUE(begins("", ""));
}

}  // namespace
}  // namespace kavo::test
