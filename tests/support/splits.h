// Feeding a scanner the same input in every way a reader may cut it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace kavo::test {

// Calls `run(block_size)` for every block size from 1 to that of the input, which must all give what `run` gives for
// one block. Returns that result.
template <typename Run>
auto same_for_every_block_size(std::size_t input_size, Run run) {
  const std::size_t whole = std::max<std::size_t>(input_size, 1);
  const auto expected = run(whole);
  for (std::size_t size = 1; size < whole; ++size) EXPECT_EQ(run(size), expected) << "with blocks of " << size;
  return expected;
}

// Calls `run(pieces)` (a vector of std::string_view) for the whole input, for every cut in two, and byte by byte; all
// must give the same. Returns that result.
template <typename Run>
auto same_for_every_split(std::string_view input, Run run) {
  const auto expected = run(std::vector<std::string_view>{input});
  for (std::size_t cut = 0; cut <= input.size(); ++cut)
    EXPECT_EQ(run(std::vector<std::string_view>{input.substr(0, cut), input.substr(cut)}), expected)
        << "cut at byte " << cut;
  std::vector<std::string_view> single;
  for (std::size_t i = 0; i < input.size(); ++i) single.push_back(input.substr(i, 1));
  EXPECT_EQ(run(single), expected) << "byte by byte";
  return expected;
}

struct LineEnd {
  const char* name;
  std::string_view bytes;
};
inline constexpr LineEnd kLineEnds[] = {{"LF", "\n"}, {"CR LF", "\r\n"}, {"CR", "\r"}};

// A text written with "\n", with another line end.
inline std::string with_line_end(std::string_view text, const LineEnd& line_end) {
  std::string result;
  for (const char c : text) {
    if (c == '\n')
      result += line_end.bytes;
    else
      result += c;
  }
  return result;
}

}  // namespace kavo::test
