#include "suite/filters/text/text_filter.h"

#include <gtest/gtest.h>

#include "common/block_reader.h"
#include "suite/suite_fixture.h"
#include "support/corpus.h"
#include "support/splits.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

using namespace std::string_view_literals;

class TextFilterTest : public SuiteTest {};

struct Case {
  const char* name;
  std::string_view bytes;
  std::vector<std::u16string> texts;
};

const Case kTexts[] = {
    {"empty", ""sv, {}},
    {"one line", "Hello\n"sv, {u"Hello"}},
    {"no line end at the end", "One\nTwo"sv, {u"One", u"Two"}},
    {"blank lines stay in the skeleton", "\n \t\nOne\n\n"sv, {u"One"}},
    {"blanks around a line stay in the skeleton", "  One \t\n"sv, {u"One"}},
    {"CR LF", "One\r\nTwo\r\n"sv, {u"One", u"Two"}},
    {"CR", "One\rTwo\r"sv, {u"One", u"Two"}},
    {"all line ends in one document", "a\r\nb\nc\rd\n\re"sv, {u"a", u"b", u"c", u"d", u"e"}},
    {"UTF-8 with byte order mark",
     "\xEF\xBB\xBF"
     "caf\xC3\xA9\n"sv,
     {u"caf\u00E9"}},
    {"a byte order mark alone", "\xEF\xBB\xBF"sv, {}},
    {"UTF-16 little endian", "\xFF\xFEO\0n\0e\0\r\0\n\0\xAC\x20"sv, {u"One", u"\u20AC"}},
    {"UTF-16 big endian", "\xFE\xFF\0O\0n\0\n\0\t\0b"sv, {u"On", u"b"}},
    {"UTF-16 with an odd byte at the end", "\xFF\xFEO\0\n\0x"sv, {u"O"}},
    {"a line feed in another character's bytes is none", "\xFF\xFE\x0A\x0A\x0D\x01"sv, {u"\u0A0A\u010D"}},
    {"invalid bytes come back", "caf\xE9 au lait\n\xFF\n"sv, {u"caf<1/> au lait"}},
    {"control characters",
     "a\x0C"
     "b\n\x0C\n"sv,
     {u"a<1/>b"}},
    {"zero bytes", "a\0b\n"sv, {u"a<1/>b"}},
    {"markup of other formats is text", "<b>&amp; {x}\n"sv, {u"<<b>&amp; {x}"}},
    {"carriage return in the middle of nowhere", "a\r\r\nb"sv, {u"a", u"b"}},
};

TEST_F(TextFilterTest, SegmentsAndComesBackUnchangedAtEverySplit) {
  for (const Case& c : kTexts) {
    SCOPED_TRACE(c.name);
    put(u"a.txt", c.bytes);
    const auto texts = same_for_every_block_size(c.bytes.size(), [&](std::size_t block) {
      const BlockSizeScope scope(block);
      const std::u16string tud = convert(u"a.txt");
      EXPECT_EQ(rebuild(tud), c.bytes);
      return sources(tud);
    });
    EXPECT_EQ(texts, c.texts);
  }
}

TEST_F(TextFilterTest, TranslationsTakeTheirPlaces) {
  const auto mark = [](std::u16string text) { return u"\u00AB" + text + u"\u00BB"; };
  EXPECT_EQ(translated(u"a.txt", "One\r\n\r\n  Two\n", mark, {}), "\xC2\xABOne\xC2\xBB\r\n\r\n  \xC2\xABTwo\xC2\xBB\n");
  EXPECT_EQ(translated(u"a.txt", "caf\xE9\n", mark, {.source_code_page = 1252}),
            "\xAB"
            "caf\xE9\xBB\n");
  EXPECT_EQ(translated(u"a.txt", "\xFF\xFEo\0\n\0"sv, mark, {}), "\xFF\xFE\xAB\0o\0\xBB\0\n\0"sv);
  EXPECT_EQ(translated(u"a.txt", "\xFE\xFF\0o"sv, mark, {}), "\xFE\xFF\0\xAB\0o\0\xBB"sv);
}

TEST_F(TextFilterTest, InvalidBytesComeBackInATranslation) {
  EXPECT_EQ(translated(u"a.txt",
                       "a\xFF"
                       "b\n",
                       [](std::u16string) { return u"x<1/>y"; }, {}),
            "x\xFFy\n");
}

TEST_F(TextFilterTest, AnotherCodePageForTheTarget) {
  const Road road{.source_code_page = 1252, .target_code_page = 1250};
  EXPECT_EQ(translated(
                u"a.txt", "caf\xE9\n", [](std::u16string) { return u"\u0159"; }, road),
            "\xF8\n");
  // An unchanged segment is recoded, and so is what is not text.
  put(u"b.txt", "caf\xE9\xA0\nx\n\xA0\n");
  EXPECT_EQ(rebuild(convert(u"b.txt", {.source_code_page = 1252, .target_code_page = 65001})),
            "caf\xC3\xA9\xC2\xA0\nx\n\xC2\xA0\n");
}

TEST_F(TextFilterTest, ACharacterThatTheCodePageLacksNamesItsPlace) {
  const std::u16string reason = reason_of([&] {
    translated(u"a.txt", "x\n\n  One\n", [](std::u16string) { return u"\u0416"; }, {.source_code_page = 1252});
  });
  EXPECT_NE(reason.find(u"segment 1 (line 1, column 1)"), std::u16string::npos);
  EXPECT_NE(reason.find(u"\u0416"), std::u16string::npos);
  EXPECT_FALSE(has(u"a_FR.txt"));
}

TEST_F(TextFilterTest, ALineStaysALine) {
  EXPECT_EQ(translated(u"a.txt", "One\n", [](std::u16string) { return u"a\r\nb\nc"; }, {}), "a  b c\n");
}

TEST_F(TextFilterTest, AnEndlessLineIsCutBetweenCharacters) {
  std::string line;
  while (line.size() < 600000) line += "\xE2\x82\xAC";
  put(u"a.txt", line);
  const std::u16string tud = convert(u"a.txt");
  EXPECT_GT(sources(tud).size(), 1u);
  EXPECT_EQ(rebuild(tud), line);
  for (const std::u16string& text : sources(tud)) EXPECT_EQ(text.find(u"<"), std::u16string::npos);
}

// Any bytes survive, in any coding.
TEST_F(TextFilterTest, AnyBytesComeBackUnchanged) {
  std::uint32_t state = 12345;
  const auto random = [&] { return state = state * 1664525 + 1013904223, state >> 16; };
  constexpr std::string_view kInteresting = "\r\n \t\"'<>&ab\xC3\xA9\x83\x5C\xFF\xFE";
  for (int round = 0; round < 300; ++round) {
    std::string bytes(random() % 200, '\0');
    for (char& byte : bytes)
      byte = random() % 4 == 0 ? static_cast<char>(random() & 0xFF) : kInteresting[random() % kInteresting.size()];
    const std::u16string_view name = round % 2 == 0 ? u"a.txt" : u"a.scr";
    const unsigned code_pages[] = {65001, 1252, 932};
    put(name, bytes);
    const std::u16string tud = convert(name, {.source_code_page = code_pages[round % 3]});
    ASSERT_EQ(rebuild(tud), bytes) << "round " << round;
  }
}

TEST(TextFilterCorpus, ComesBackUnchanged) {
  const std::vector<std::u16string> documents = corpus_files(u"txt", {u"txt"});
  if (documents.empty()) GTEST_SKIP() << kNoCorpus;
  const TempFolder folder;
  for (const std::u16string& document : documents) {
    const std::string bytes = read_file(document);
    const std::u16string copy = folder.write(u"a.txt", bytes);
    ConversionRequest request{copy, folder.path(u"a.tud"), u"", u"EN-US", u"FR", 1252, 0, u"K19TXT"};
    ProgressEvent progress;
    convert_document(request, progress);
    const BilingualDocument bilingual(request.tud);
    bilingual.save_open_tag(folder.path(u"a.otf"));
    create_target({folder.path(u"b.txt"), folder.path(u"a.otf"), skeleton_name_of(request.tud), u"FR", u"K19TXT"},
                  progress);
    EXPECT_EQ(folder.read(u"b.txt"), bytes) << testing::PrintToString(document);
  }
}

}  // namespace
}  // namespace kavo::test
