#include "common/line_map.h"

#include <gtest/gtest.h>

#include "common/block_reader.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

class LineMapTest : public PortsFixture {};

TEST_F(LineMapTest, FollowsCopiedLines) {
  files.put(u"C:\\a.asp", "one\n<%\n\n%>two\nthree\n");
  files.put(u"C:\\a.htm", "one\n<!-- 1 -->two\nthree\n");
  CopyTrail trail;
  trail.copied(0, 0, 4);
  trail.copied(10, 14, 10);
  const LineMap map(u"C:\\a.htm", trail, u"C:\\a.asp");
  EXPECT_EQ(map.text(), "1:1=1 2:11=4");
  for (const LineMap& each : {map, LineMap(map.text())}) {
    EXPECT_EQ(each.line_of({1, 2}), 1);
    EXPECT_EQ(each.line_of({2, 1}), 2);
    EXPECT_EQ(each.line_of({2, 11}), 4);
    EXPECT_EQ(each.line_of({3, 1}), 5);
  }
}

TEST_F(LineMapTest, KnowsEveryKindOfLineEndAtEverySplit) {
  const std::string source = "a\r\nb\rc\n\n\r\rd\r\n\r\ne";
  std::string made;
  CopyTrail trail;
  // Each byte on a line of its own.
  for (std::size_t i = 0; i < source.size(); ++i) {
    made += "<\n";
    trail.copied(i, made.size() - 1, 1);
  }
  files.put(u"C:\\a.asp", source);
  files.put(u"C:\\a.htm", made);
  const LineIndex expected(u"C:\\a.asp");
  for (const std::size_t size : {1, 2, 3, 64}) {
    const BlockSizeScope scope(size);
    const LineMap map(u"C:\\a.htm", trail, u"C:\\a.asp");
    for (std::size_t i = 0; i < source.size(); ++i)
      EXPECT_EQ(map.line_of({static_cast<std::int64_t>(i) + 1, 2}), expected.place_of(i).line) << i;
  }
}

TEST(LineMapText, OfNoMapAndOfAnythingElse) {
  for (const char* text : {"", "x", "1", "1:2", "1:2=", ":", "99999999999999999999:1=1"})
    EXPECT_EQ(LineMap(text).line_of({9, 9}), 0) << text;
  EXPECT_EQ(LineMap("2:1=3 4").line_of({2, 1}), 3);
}

TEST(TrailOfBoth, FollowsTwoSteps) {
  CopyTrail first, second;
  first.copied(0, 0, 10);
  first.copied(20, 15, 10);
  second.copied(0, 0, 5);
  second.copied(5, 8, 20);
  const CopyTrail both = trail_of_both(first, second);
  for (const auto& [output, input] :
       {std::pair<std::uint64_t, std::uint64_t>{0, 0}, {4, 4}, {8, 5}, {12, 9}, {18, 20}, {27, 29}})
    EXPECT_EQ(both.input_of(output), input) << output;
}

}  // namespace
}  // namespace kavo::test
