#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "common/clsRetrieveFile.h"
#include "common/sparse_files.h"
#include "platform/failure.h"
#include "support/ports_fixture.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

constexpr std::u16string_view kFile = u"C:\\WORK\\text.txt";

struct Line {
  std::u16string text;
  std::int32_t number;
  bool operator==(const Line&) const = default;
};
void PrintTo(const Line& line, std::ostream* out) { *out << line.number << testing::PrintToString(line.text); }

class RetrieveFile : public PortsFixture {
 protected:
  bool open(std::string_view bytes) {
    files.put(kFile, bytes);
    reader.Filename(kFile);
    return reader.OpenFile();
  }
  std::vector<Line> lines() {
    std::vector<Line> result;
    std::u16string line;
    while (reader.GetLineFromFile(line)) result.push_back({line, reader.LineNumber()});
    EXPECT_EQ(line, u"");
    return result;
  }
  void use_code_page(std::string_view name) {
    code_page_ = make_code_page(name);
    ports().code_page = code_page_.get();
  }
  std::int32_t failure_number(const std::function<void()>& call) {
    try {
      call();
      return 0;
    } catch (const failure& reason) {
      return reason.number();
    }
  }
  clsRetrieveFile reader;

 private:
  std::unique_ptr<CodePage> code_page_;
};

TEST_F(RetrieveFile, EmptyFileOpensAndHasNoLine) {
  ASSERT_TRUE(open(""));
  EXPECT_EQ(reader.Progress(), 0);
  EXPECT_EQ(lines(), std::vector<Line>{});
  EXPECT_EQ(reader.LineNumber(), 0);
}

struct LineCase {
  const char* name;
  std::string_view bytes;
  std::vector<Line> expected;
};
class LinesOf : public RetrieveFile, public testing::WithParamInterface<LineCase> {};

TEST_P(LinesOf, AreHandedOutWithTheirTerminators) {
  ASSERT_TRUE(open(GetParam().bytes));
  EXPECT_EQ(lines(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Files, LinesOf,
    testing::Values(LineCase{"CrLfIsOneBreakAndTheLastLineDoesNotCount", "a\r\nb", {{u"a\r\n", 1}, {u"b", 1}}},
                    LineCase{"LfCrIsOneBreak", "a\n\rb", {{u"a\n\r", 1}, {u"b", 1}}},
                    LineCase{"CrCrIsTwoBreaks", "a\r\rb", {{u"a\r", 1}, {u"\r", 2}, {u"b", 2}}},
                    LineCase{"LfLfIsTwoBreaks", "a\n\nb", {{u"a\n", 1}, {u"\n", 2}, {u"b", 2}}},
                    LineCase{"CrLfCrLf", "\r\n\r\n", {{u"\r\n", 1}, {u"\r\n", 2}}},
                    LineCase{"CrLfLf", "\r\n\n", {{u"\r\n", 1}, {u"\n", 2}}},
                    LineCase{"EndsInBreak", "a\n", {{u"a\n", 1}}}, LineCase{"CrAtTheEnd", "a\r", {{u"a\r", 1}}}),
    [](const auto& row) { return row.param.name; });

TEST_F(RetrieveFile, ChunkThatEndsBetweenCrAndLfMakesTwoLines) {
  reader.ChunkSize(2);
  ASSERT_TRUE(open("a\r\n"));
  EXPECT_EQ(lines(), (std::vector<Line>{{u"a\r", 1}, {u"\n", 2}}));
}

TEST_F(RetrieveFile, LinesTogetherAreTheFileForEveryChunkSizeAndBlockSize) {
  const std::string text = "one\r\ntwo\n\rthree\r\r\nfour\n\n\r\nlast";
  same_for_every_block_size(text.size(), [&](std::size_t block) {
    const BlockSizeScope scope(block);
    for (std::int32_t chunk = 1; chunk <= static_cast<std::int32_t>(text.size()) + 1; ++chunk) {
      reader.ChunkSize(chunk);
      EXPECT_TRUE(open(text));
      std::u16string all;
      for (const Line& line : lines()) all += line.text;
      EXPECT_EQ(all, std::u16string(text.begin(), text.end())) << "chunk " << chunk;
      EXPECT_EQ(reader.Progress(), 100);
    }
    return 0;
  });
}

TEST_F(RetrieveFile, DoubleByteCharacterWhoseLeadByteEndsTheChunkIsReadWhole) {
  use_code_page("932");
  // Two bytes a character; the lead byte of the second is the third byte of the file.
  const std::string text = "\x93\xFA\x96\x7B\n";
  reader.ChunkSize(3);
  ASSERT_TRUE(open(text));
  std::u16string line;
  ASSERT_TRUE(reader.GetLineFromFile(line));
  EXPECT_EQ(line, u"\u65E5\u672C\n");
  reader.Position(1);
  EXPECT_EQ(reader.Position(), 1);
}

TEST_F(RetrieveFile, OneByteMoreIsReadAfterALeadByte) {
  use_code_page("932");
  reader.ChunkSize(3);
  ASSERT_TRUE(
      open("a\n\x96\x7B"
           "b"));
  std::u16string line;
  ASSERT_TRUE(reader.GetLineFromFile(line));
  EXPECT_EQ(reader.Position(), 5) << "four bytes were read";
}

TEST_F(RetrieveFile, CharactersAreWholeInEveryCodePageAtEveryChunkSize) {
  struct Case {
    const char* code_page;
    std::string bytes;
    std::u16string text;
  };
  const Case cases[] = {
      {"932",
       "\x83\x5C\x81\x81\x93\xFA"
       "x\x96\x7B",
       u"\u30BD\uFF1D\u65E5x\u672C"},
      {"936",
       "\xD6\xD0"
       "a\xCE\xC4",
       u"\u4E2Da\u6587"},
      {"949",
       "\xC7\xD1\xB1\xDB"
       "z",
       u"\uD55C\uAE00z"},
      {"950",
       "\xA4\xA4\xA4\xE5"
       "1",
       u"\u4E2D\u65871"},
      {"1252",
       "\xE4"
       "\x80",
       u"\u00E4\u20AC"},
      {"utf-8",
       "a\xC3\xA4\xE6\x97\xA5\xF0\x9F\x98\x80"
       "b",
       u"a\u00E4\u65E5\U0001F600b"},
  };
  for (const Case& c : cases) {
    use_code_page(c.code_page);
    for (std::int32_t chunk = 1; chunk <= static_cast<std::int32_t>(c.bytes.size()) + 1; ++chunk) {
      reader.ChunkSize(chunk);
      ASSERT_TRUE(open(c.bytes));
      EXPECT_EQ(lines(), (std::vector<Line>{{c.text, 0}})) << c.code_page << ", chunk " << chunk;
    }
  }
}

TEST_F(RetrieveFile, LeadByteAtTheEndOfTheFileEndsTheLastChunk) {
  use_code_page("932");
  reader.ChunkSize(2);
  ASSERT_TRUE(open("a\x96"));
  EXPECT_EQ(lines().size(), 1u);
}

TEST_F(RetrieveFile, FileOfExactlyOneChunkReachesProgress100AfterIt) {
  ASSERT_TRUE(open(std::string(4095, 'x') + "\n"));
  EXPECT_EQ(reader.ChunkSize(), 4096);
  EXPECT_EQ(reader.Progress(), 0);
  std::u16string line;
  ASSERT_TRUE(reader.GetLineFromFile(line));
  EXPECT_EQ(reader.Progress(), 100);
  reader.CloseFile();
  EXPECT_EQ(reader.Progress(), 0);
  EXPECT_EQ(reader.LineNumber(), 1) << "closing leaves it";
}

TEST_F(RetrieveFile, ProgressFollowsChunksAndRoundsHalvesToEven) {
  reader.ChunkSize(1);
  ASSERT_TRUE(open(std::string(199, '\n') + "\n"));
  std::u16string line;
  std::vector<std::int16_t> progress;
  for (int i = 0; i < 5; ++i) {
    reader.GetLineFromFile(line);
    progress.push_back(reader.Progress());
  }
  EXPECT_EQ(progress, (std::vector<std::int16_t>{0, 1, 2, 2, 2}));
}

TEST_F(RetrieveFile, OpenWithoutNameOrWithMissingFileLeavesTheOpenFileOpen) {
  ASSERT_TRUE(open("first\nsecond\n"));
  std::u16string line;
  ASSERT_TRUE(reader.GetLineFromFile(line));
  reader.Filename(u"");
  EXPECT_FALSE(reader.OpenFile());
  reader.Filename(u"C:\\WORK\\missing.txt");
  EXPECT_FALSE(reader.OpenFile());
  reader.Filename(u"C:\\WORK");
  EXPECT_FALSE(reader.OpenFile()) << "a folder is no file";
  ASSERT_TRUE(reader.GetLineFromFile(line));
  EXPECT_EQ(line, u"second\n");
  EXPECT_EQ(reader.LineNumber(), 2);
}

TEST_F(RetrieveFile, SecondOpenStartsAnew) {
  ASSERT_TRUE(open("first\nsecond\n"));
  std::u16string line;
  ASSERT_TRUE(reader.GetLineFromFile(line));
  ASSERT_TRUE(open("other"));
  EXPECT_EQ(reader.LineNumber(), 0);
  EXPECT_EQ(lines(), (std::vector<Line>{{u"other", 0}}));
}

TEST_F(RetrieveFile, PositionIsThatOfTheNextReadAndForgetsWhatIsPending) {
  reader.ChunkSize(4);
  ASSERT_TRUE(open("ab\ncd\nef\n"));
  EXPECT_EQ(reader.Position(), 1);
  std::u16string line;
  ASSERT_TRUE(reader.GetLineFromFile(line));
  EXPECT_EQ(reader.Position(), 5) << "ahead of the line by the pending text";
  const std::int16_t progress = reader.Progress();
  reader.Position(2);
  EXPECT_EQ(reader.Position(), 2);
  EXPECT_EQ(reader.LineNumber(), 1);
  EXPECT_EQ(reader.Progress(), progress);
  ASSERT_TRUE(reader.GetLineFromFile(line));
  EXPECT_EQ(line, u"b\n");
  reader.Position(100);
  EXPECT_FALSE(reader.GetLineFromFile(line));
  EXPECT_EQ(failure_number([&] { reader.Position(0); }), 5);
}

TEST_F(RetrieveFile, ReadingWithoutOpenFileIsAnError) {
  std::u16string line;
  EXPECT_EQ(failure_number([&] { reader.GetLineFromFile(line); }), 91);
  EXPECT_EQ(failure_number([&] { static_cast<void>(reader.Position()); }), 91);
  EXPECT_EQ(failure_number([&] { reader.blocks(); }), 91);
  EXPECT_EQ(failure_number([&] { reader.ChunkSize(0); }), 5);
}

TEST_F(RetrieveFile, ALineOfManyBlocksIsReadWhole) {
  reader.ChunkSize(16);
  ASSERT_TRUE(open(std::string(1 << 20, 'x') + "\nend"));
  const std::vector<Line> result = lines();
  ASSERT_EQ(result.size(), 2u);
  EXPECT_EQ(result[0].text.size(), (1u << 20) + 1);
}

TEST_F(RetrieveFile, FilesBeyond2GibWorkAndPositionOverflows) {
  SparseFiles huge(std::uint64_t{5} << 30);
  ports().files = &huge;
  reader.Filename(u"C:\\huge");
  ASSERT_TRUE(reader.OpenFile());
  // The last position that the property can hold.
  reader.Position(2147483647);
  EXPECT_EQ(reader.Position(), 2147483647);
  std::u16string line;
  ASSERT_TRUE(reader.GetLineFromFile(line));
  const std::uint64_t start = 2147483646;
  EXPECT_EQ(line.size(), 100 - start % 100);
  EXPECT_EQ(line[0], static_cast<char16_t>(SparseFiles::byte_at(start)));
  EXPECT_EQ(failure_number([&] { static_cast<void>(reader.Position()); }), 6);
  EXPECT_EQ(reader.Progress(), 40);
  // Lines go on past it.
  for (int i = 0; i < 100; ++i) ASSERT_TRUE(reader.GetLineFromFile(line));
  EXPECT_EQ(line.size(), 100u);
}

TEST_F(RetrieveFile, RandomTextIsReadBackWhole) {
  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {
    std::string text(random() % 300, ' ');
    for (char& c : text) c = "\r\nab"[random() % 4];
    reader.ChunkSize(static_cast<std::int32_t>(1 + random() % 50));
    ASSERT_TRUE(open(text));
    std::u16string all;
    for (const Line& line : lines()) {
      EXPECT_FALSE(line.text.empty());
      const std::size_t breaks = line.text.find_first_of(u"\r\n");
      EXPECT_GE(breaks + 2, breaks == std::u16string::npos ? 0 : line.text.size()) << "a break ends its line";
      all += line.text;
    }
    EXPECT_EQ(all, std::u16string(text.begin(), text.end()));
  }
}

TEST_F(RetrieveFile, ClosingLeavesWhatWasRead) {
  struct Case {
    const char* name;
    std::string_view text;
    int chunk_size;
    std::vector<std::u16string> lines;  // after the first one and CloseFile
    bool is_whole;                      // then false, else 91
  };
  const Case cases[] = {
      {"all was read", "a\r\nb\nc", 4096, {u"b\n", u"c"}, true},
      {"all was read, with a last line end", "a\nb\n", 4096, {u"b\n"}, true},
      {"nothing is left", "a\n", 4096, {}, true},
      {"the rest was not read", "a\nb\nc\nd\n", 5, {u"b\n"}, false},
      {"the line goes on in what was not read", "a\nbcdef\n", 4, {}, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    reader.ChunkSize(c.chunk_size);
    ASSERT_TRUE(open(c.text));
    std::u16string line;
    ASSERT_TRUE(reader.GetLineFromFile(line));
    reader.CloseFile();
    for (const std::u16string& expected : c.lines) {
      EXPECT_TRUE(reader.GetLineFromFile(line));
      EXPECT_EQ(line, expected);
    }
    if (c.is_whole) {
      EXPECT_FALSE(reader.GetLineFromFile(line));
      EXPECT_EQ(line, u"");
    } else {
      EXPECT_EQ(failure_number([&] { reader.GetLineFromFile(line); }), 91);
    }
    ASSERT_TRUE(reader.OpenFile()) << "a new file starts anew";
    EXPECT_TRUE(reader.GetLineFromFile(line));
    EXPECT_EQ(line.substr(0, 1), u"a");
  }
}

// One file of the system counts as hidden, or cannot be looked at.
class OneOddFile final : public MemoryFiles {
 public:
  std::optional<FileInfo> info(std::u16string_view path) override {
    auto found = MemoryFiles::info(path);
    if (found && path == u"C:\\hidden.txt") found->is_hidden = true;
    if (path == u"C:\\broken.txt") throw failure(FailureNumber::kDeviceError, u"no answer");
    return found;
  }
};

TEST(RetrieveOddFile, AHiddenFileIsNotFoundAndOneThatCannotBeLookedAtDoesNotOpen) {
  OneOddFile files;
  PortsScope scope;
  ports().files = &files;
  for (const auto* name : {u"C:\\plain.txt", u"C:\\hidden.txt"}) files.put(name, "a\n");
  clsRetrieveFile reader;
  reader.Filename(u"C:\\plain.txt");
  ASSERT_TRUE(reader.OpenFile());
  for (const auto* name : {u"C:\\hidden.txt", u"C:\\broken.txt"}) {
    reader.Filename(name);
    EXPECT_FALSE(reader.OpenFile());
  }
  std::u16string line;
  EXPECT_TRUE(reader.GetLineFromFile(line)) << "the file before stays open";
}

}  // namespace
}  // namespace kavo::test
