#include <gtest/gtest.h>

#include <charconv>
#include <fstream>
#include <map>
#include <string>

#include "formats/mif/character_set.h"
#include "formats/mif/string_coding.h"

namespace kavo::test {
namespace {

constexpr unsigned char kFirstLetter = 0x80;

std::map<unsigned, char32_t> the_table() {
  std::map<unsigned, char32_t> table;
  for (const mif::CodedCharacter& row : mif::character_set()) table[row.code] = row.character;
  return table;
}

TEST(MifCharacterSet, HasEveryCodeFrom80OnOnce) {
  unsigned next = kFirstLetter;
  for (const mif::CodedCharacter& row : mif::character_set()) {
    if (row.code < kFirstLetter) continue;
    EXPECT_EQ(row.code, next++);
    EXPECT_NE(row.character, 0);
  }
  EXPECT_EQ(next, 256u);
}

TEST(MifCharacterSet, CodesOnWhichTablesDisagree) {
  const auto table = the_table();
  const std::pair<unsigned, char32_t> cases[] = {
      {0xAD, U'\u00A6'}, {0xB0, U'\u00D7'}, {0xB2, U'\u00F0'}, {0xB3, U'\u0160'}, {0xB6, U'\u00B9'}, {0xB7, U'\u00B2'},
      {0xB8, U'\u00B3'}, {0xB9, U'\u00BC'}, {0xBA, U'\u00BD'}, {0xBD, U'\u00BE'}, {0xC3, U'\u00D0'}, {0xC5, U'\u00DD'},
      {0xC6, U'\u00FD'}, {0xCA, U'\u00FE'}, {0xD6, U'\u00F7'}, {0xD7, U'\u00DE'}, {0xF0, U'\u0161'}, {0xF5, U'\u20AC'},
      {0xFA, U'\u017D'}, {0xFE, U'\u017E'}, {0xFB, U'\u00B0'}, {0xA1, U'\u00B0'}, {0xF9, U'\u02D8'}, {0xFF, U'\u02C7'}};
  for (const auto& [code, character] : cases) EXPECT_EQ(table.at(code), character) << std::hex << code;
}

TEST(MifCharacterSet, EveryLetterComesBackFromAString) {
  const mif::StringCoding coding(1252, false);
  for (const mif::CodedCharacter& row : mif::character_set()) {
    if (row.character == 0) continue;
    std::string character, escape;
    append_utf8(character, row.character);
    ASSERT_TRUE(coding.append(character, escape)) << std::hex << unsigned{row.code};
    EXPECT_EQ(mif::decode_string(escape, coding), character) << escape;
  }
  std::string degree;
  EXPECT_TRUE(coding.append("\u00B0", degree));
  EXPECT_EQ(degree, "\\xfb ");
  for (const std::string_view character : {"\u0131", "\u02D9", "\u02DB", "\u02DA", "\u0436"}) {
    std::string none;
    EXPECT_FALSE(coding.append(character, none)) << character;
    EXPECT_EQ(none, "");
  }
}

TEST(MifCharacterSet, NamesOfCharStatements) {
  EXPECT_EQ(mif::find_named_character("HardSpace")->text, "\u00A0");
  EXPECT_EQ(mif::find_named_character("HardSpace")->escape, "\\x11 ");
  EXPECT_EQ(mif::find_named_character("EmDash")->text, "\u2014");
  EXPECT_EQ(mif::find_named_character("EmDash")->escape, "");
  EXPECT_EQ(mif::find_named_character("Tab")->text, "\t");
  for (const std::string_view name : {"HardReturn", "SoftHyphen", "NoHyphen", "EndOfPara", "EndOfFlow", "Unknown", ""})
    EXPECT_EQ(mif::find_named_character(name), nullptr) << name;
}

// The collected facts lie beside the project where it is developed.
TEST(MifCharacterSet, IsThatOfTheFacts) {
  std::ifstream facts(KAVO_MIF_FACTS);
  if (!facts) GTEST_SKIP() << "the file of facts is not there: " << KAVO_MIF_FACTS;
  auto table = the_table();
  std::string line;
  std::getline(facts, line);  // the heads of the columns
  std::size_t compared = 0;
  while (std::getline(facts, line)) {
    unsigned code = 0;
    unsigned character = 0;
    std::from_chars(line.data(), line.data() + 2, code, 16);
    if (line.compare(3, 2, "U+") == 0) std::from_chars(line.data() + 5, line.data() + 9, character, 16);
    if (line.find("\tuncertain in text") != std::string::npos) continue;
    EXPECT_EQ(table.at(code), character) << line;
    table.erase(code);
    ++compared;
  }
  EXPECT_EQ(compared, 141u);
  EXPECT_TRUE(table.empty());
}

}  // namespace
}  // namespace kavo::test
