#include "mif/line_pieces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "support/ports_fixture.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

using Line = std::pair<std::string, std::string>;  // text and terminator

class LinePiecesTest : public PortsFixture {
 protected:
  std::vector<Line> lines(std::string_view text, std::size_t block_size) {
    files.put(u"C:\\x", text);
    BlockSizeScope blocks(block_size);
    LinePieces pieces(u"C:\\x", nullptr);
    std::vector<Line> result;
    bool begins = true;
    std::uint64_t position = 0;
    for (LinePiece piece; pieces.next(piece); begins = piece.ends) {
      EXPECT_EQ(piece.begins, begins);
      if (begins) result.emplace_back();
      EXPECT_TRUE(!begins || piece.ends || piece.text.size() >= LinePieces::kUncut);
      result.back().first += piece.text;
      result.back().second += piece.terminator;
      position += piece.text.size() + piece.terminator.size();
      EXPECT_EQ(pieces.position(), position);
    }
    EXPECT_EQ(position, text.size());
    return result;
  }
};

TEST_F(LinePiecesTest, LineEndsAreOneOrTwoBytesWhereverABlockEnds) {
  struct Case {
    std::string_view text;
    std::vector<Line> expected;
  };
  const Case cases[] = {
      {"", {}},
      {"a", {{"a", ""}}},
      {"a\r\nb", {{"a", "\r\n"}, {"b", ""}}},
      {"a\n\rb\n", {{"a", "\n\r"}, {"b", "\n"}}},
      {"a\r\rb", {{"a", "\r"}, {"", "\r"}, {"b", ""}}},
      {"\n\n\r\n\r", {{"", "\n"}, {"", "\n\r"}, {"", "\n\r"}}},
      {"a\r", {{"a", "\r"}}},
  };
  for (const Case& test : cases)
    EXPECT_EQ(same_for_every_block_size(test.text.size(), [&](std::size_t size) { return lines(test.text, size); }),
              test.expected);
}

TEST_F(LinePiecesTest, LongLinesComeInPieces) {
  const std::string x(LinePieces::kWholeLine * 3, 'x');
  for (const std::size_t block : {1000u, 65536u, 65537u, 1u << 20})
    EXPECT_EQ(lines(x + "\r\n" + x + "<tail", block), (std::vector<Line>{{x, "\r\n"}, {x + "<tail", ""}}));
}

TEST_F(LinePiecesTest, AShortTagIsNeverCut) {
  const std::string tag = "<" + std::string(LinePieces::kUncut - 2, 't') + ">";
  for (std::size_t before = LinePieces::kWholeLine - 70; before < LinePieces::kWholeLine + 4; ++before) {
    const std::string text = std::string(before, 'x') + tag + std::string(200000, 'y');
    files.put(u"C:\\x", text);
    BlockSizeScope blocks(LinePieces::kWholeLine);
    LinePieces pieces(u"C:\\x", nullptr);
    bool found = false;
    for (LinePiece piece; pieces.next(piece);) found = found || piece.text.find(tag) != std::string_view::npos;
    EXPECT_TRUE(found) << before;
  }
}

// The lines in front of those that hold a "K", in whatever runs they come, with the lines themselves marked.
TEST_F(LinePiecesTest, LinesBeforeAPlaceAreWholeWhereverABlockEnds) {
  struct Case {
    std::string_view text;
    std::string_view expected;
  };
  const Case cases[] = {
      {"", ""},
      {"a", "[a]"},
      {"a\r\nb\r\nxKx\r\nc\r\n", "a|b|[xKx]c|"},
      {"a\nb\n", "a|b|"},
      {"a\n\rb\n\n\r\n\rKK", "a|b|||[KK]"},
      {"a\r\r\nb", "a||[b]"},
      {"\r\n\r\nK", "||[K]"},
      {"K\na\n", "[K]a|"},
  };
  for (const Case& test : cases) {
    const auto run = [&](std::size_t block_size) {
      files.put(u"C:\\x", test.text);
      BlockSizeScope blocks(block_size);
      LinePieces pieces(u"C:\\x", nullptr);
      PendingFile output(u"C:\\y");
      std::uint64_t position = 0;
      for (LinePiece piece;;) {
        const std::string_view plain =
            pieces.lines_before([](const char* p, const char* end) { return std::find(p, end, 'K'); });
        EXPECT_TRUE(plain.empty() || is_line_end(plain.back()));
        EXPECT_EQ(plain.find('K'), std::string_view::npos);
        write_lines(output, plain);
        EXPECT_EQ(pieces.position(), position += plain.size());
        if (!plain.empty()) continue;
        if (!pieces.next(piece)) break;
        EXPECT_TRUE(piece.begins && piece.ends);
        // How many lines come one by one depends on the blocks, so only those that must are marked.
        const bool marked = piece.terminator.empty() || piece.text.find('K') != std::string_view::npos;
        output.write(marked ? "[" : "");
        output.write(piece.text);
        output.write(marked ? "]" : "\r\n");
        position += piece.text.size() + piece.terminator.size();
      }
      output.commit();
      std::string result = files.get(u"C:\\y");
      for (std::size_t at = 0; (at = result.find("\r\n", at)) != std::string::npos;) result.replace(at, 2, "|");
      return result;
    };
    EXPECT_EQ(same_for_every_block_size(test.text.size(), run), test.expected);
  }
}

TEST_F(LinePiecesTest, SeekBeginsALine) {
  files.put(u"C:\\x", "one\ntwo\nthree");
  LinePieces pieces(u"C:\\x", nullptr);
  LinePiece piece;
  ASSERT_TRUE(pieces.next(piece));
  pieces.seek(8);
  ASSERT_TRUE(pieces.next(piece));
  EXPECT_EQ(piece.text, "three");
  EXPECT_TRUE(piece.begins);
  EXPECT_FALSE(pieces.next(piece));
}

}  // namespace
}  // namespace kavo::test
