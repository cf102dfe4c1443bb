#include "common/line_index.h"

#include <gtest/gtest.h>

#include "common/block_reader.h"
#include "common/copy_trail.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

class LineIndexTest : public PortsFixture {};

TEST_F(LineIndexTest, PlacesThereAndBackAtEveryBlockSize) {
  const struct {
    const char* name;
    std::string_view bytes;
    std::vector<std::uint64_t> starts;
  } cases[] = {
      {"empty", "", {0}},
      {"one line", "abc", {0}},
      {"line feeds", "a\n\nb\n", {0, 2, 3, 5}},
      {"returns", "a\r\rb", {0, 2, 3}},
      {"both", "a\r\nbc\r\n", {0, 3, 7}},
      {"the other way round", "a\n\rb", {0, 2, 3}},
      {"return at the end", "a\r", {0, 2}},
  };
  for (const auto& c : cases)
    for (const std::size_t size : {1, 2, 3, 100}) {
      const BlockSizeScope scope(size);
      files.put(u"C:\\work\\a", c.bytes);
      const LineIndex index(u"C:\\work\\a");
      std::size_t line = 0;
      for (std::uint64_t position = 0; position <= c.bytes.size(); ++position) {
        if (line + 1 < c.starts.size() && position == c.starts[line + 1]) ++line;
        const LinePlace place = index.place_of(position);
        EXPECT_EQ(place.line, static_cast<std::int64_t>(line) + 1) << c.name << " " << position << " " << size;
        EXPECT_EQ(place.column, static_cast<std::int64_t>(position - c.starts[line]) + 1) << c.name << " " << position;
        EXPECT_EQ(index.position_of(place), position) << c.name;
      }
    }
}

TEST(CopyTrailTest, ReportsWhereBytesComeFrom) {
  CopyTrail trail;
  EXPECT_EQ(trail.input_of(7), 0u);
  trail.copied(2, 10, 3);
  trail.copied(5, 13, 2);   // goes on
  trail.copied(20, 30, 1);  // 15 to 29 are no copies
  trail.copied(21, 31, 0);
  EXPECT_EQ(trail.size(), 2u);
  const std::pair<std::uint64_t, std::uint64_t> places[] = {{0, 0},  {10, 2},  {14, 6},  {15, 7},
                                                            {29, 7}, {30, 20}, {31, 21}, {99, 21}};
  for (const auto& [output, input] : places) EXPECT_EQ(trail.input_of(output), input) << output;
}

TEST(CopyTrailTest, HoldsManyRuns) {
  CopyTrail trail;
  std::vector<CopyTrail::Run> runs;
  std::uint64_t input = 1'000'000;
  std::uint64_t output = 0;
  for (std::uint64_t i = 0; i < 1000; ++i) {
    // Now and then the input steps back.
    input = i % 97 == 0 ? input - 900'000 / (i + 1) : input + i % 300;
    output += 1 + i * i % 70'000;
    runs.push_back({input, output, 1 + i % 200});
    trail.copied(input, output, runs.back().size);
    input += runs.back().size;
    output += runs.back().size;
  }
  ASSERT_EQ(trail.size(), runs.size());
  CopyTrail::Reader reader(trail);
  for (const CopyTrail::Run& expected : runs) {
    CopyTrail::Run run;
    ASSERT_TRUE(reader.next(run));
    EXPECT_EQ(run.input, expected.input);
    EXPECT_EQ(run.output, expected.output);
    EXPECT_EQ(run.size, expected.size);
    EXPECT_EQ(trail.input_of(expected.output), expected.input);
    EXPECT_EQ(trail.input_of(expected.output_end() - 1), expected.input_end() - 1);
    EXPECT_EQ(trail.input_of(expected.output_end()), expected.input_end());
  }
  CopyTrail::Run run;
  EXPECT_FALSE(reader.next(run));
}

}  // namespace
}  // namespace kavo::test
