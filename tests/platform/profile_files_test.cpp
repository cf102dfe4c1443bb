#include "platform/profile_files.h"

#include <gtest/gtest.h>

#include "platform/ports.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

constexpr std::size_t kLimit = 1023;

class ProfileFilesTest : public testing::Test {
 protected:
  std::u16string read(std::u16string_view section, std::u16string_view key, std::size_t limit = kLimit) {
    return ports().profile_files->read(section, key, u"fallback", temp.path(u"test.ini"), limit);
  }
  bool write(std::u16string_view section, std::u16string_view key, std::u16string_view value) {
    return ports().profile_files->write(section, key, value, temp.path(u"test.ini"));
  }

  TempFolder temp;
};

TEST_F(ProfileFilesTest, ReadingTable) {
  temp.write(u"test.ini",
             "before=x\r\n[First]\r\nkey=value\r\n  Spaced  =  a b  \r\nempty=\r\nquoted=\"  in quotes  \"\r\n"
             "single='x'\r\nmixed=\"x'\r\n; key2=comment\r\nequals=a=b\r\nno equals sign\r\n\r\n[ Second ]\r\n"
             "key=second\r\n[Third]\r\nkey=third\r\nlast=no line end");
  const struct {
    const char* name;
    std::u16string_view section;
    std::u16string_view key;
    std::u16string_view expected;
  } cases[] = {
      {"plain", u"First", u"key", u"value"},
      {"section and key ignore case", u"FIRST", u"KEY", u"value"},
      {"blanks around name and value do not count", u"First", u"spaced", u"a b"},
      {"empty value is no missing value", u"First", u"empty", u""},
      {"double quotes go, blanks inside stay", u"First", u"quoted", u"  in quotes  "},
      {"single quotes go", u"First", u"single", u"x"},
      {"quotes that do not match stay", u"First", u"mixed", u"\"x'"},
      {"comment is no key", u"First", u"key2", u"fallback"},
      {"value with an equals sign", u"First", u"equals", u"a=b"},
      {"missing key", u"First", u"missing", u"fallback"},
      {"key before the first section", u"First", u"before", u"fallback"},
      {"missing section", u"Missing", u"key", u"fallback"},
      {"same key of another section", u"Third", u"key", u"third"},
      {"last line without line end", u"Third", u"last", u"no line end"},
  };
  for (const auto& c : cases) EXPECT_EQ(read(c.section, c.key), c.expected) << c.name;
}

TEST_F(ProfileFilesTest, KeyBeforeTheFirstSectionIsNotFound) {
  if (!is_native()) GTEST_SKIP() << "Wine finds it under the section without a name";
  temp.write(u"test.ini", "before=x\r\n[First]\r\nkey=value\r\n");
  EXPECT_EQ(read(u"", u"before"), u"fallback");
}

TEST_F(ProfileFilesTest, FirstOfTwoSectionsOfOneNameCounts) {
  temp.write(u"test.ini", "[a]\r\nx=1\r\n[b]\r\n[a]\r\nx=2\r\n");
  EXPECT_EQ(read(u"a", u"x"), u"1");
}

TEST_F(ProfileFilesTest, MissingFileGivesTheFallback) {
  EXPECT_EQ(read(u"a", u"x"), u"fallback");
  EXPECT_EQ(ports().profile_files->read(u"a", u"x", u"", temp.path(u"missing\\test.ini"), kLimit), u"");
  EXPECT_FALSE(temp.exists(u"test.ini")) << "reading makes no file";
}

TEST_F(ProfileFilesTest, ValueIsCutAtTheLimit) {
  temp.write(u"test.ini", "[a]\r\nx=0123456789\r\n");
  EXPECT_EQ(read(u"a", u"x", 4), u"0123");
  EXPECT_EQ(read(u"a", u"x", 10), u"0123456789");
  temp.write(u"test.ini", "[a]\r\nx=" + std::string(2000, 'v') + "\r\n");
  EXPECT_EQ(read(u"a", u"x", 1023), std::u16string(1023, u'v'));
}

TEST_F(ProfileFilesTest, WritingMakesFileSectionAndKey) {
  ASSERT_TRUE(write(u"Section", u"Key", u"value"));
  EXPECT_EQ(read(u"section", u"key"), u"value");
  ASSERT_TRUE(write(u"Section", u"Other", u"second"));
  ASSERT_TRUE(write(u"New", u"Key", u"third"));
  EXPECT_EQ(read(u"Section", u"Key"), u"value");
  EXPECT_EQ(read(u"Section", u"Other"), u"second");
  EXPECT_EQ(read(u"New", u"Key"), u"third");
}

TEST_F(ProfileFilesTest, WritingReplacesTheValueOfItsSectionOnly) {
  temp.write(u"test.ini", "[a]\r\nx=1\r\n[b]\r\nx=2\r\n");
  ASSERT_TRUE(write(u"B", u"X", u"changed"));
  EXPECT_EQ(read(u"a", u"x"), u"1");
  EXPECT_EQ(read(u"b", u"x"), u"changed");
}

TEST_F(ProfileFilesTest, WritingLeavesOtherLinesAsTheyAre) {
  if (!is_native()) GTEST_SKIP() << "the system writes the file in its own form";
  temp.write(u"test.ini", "; head\n\n[a]\n x = 1 ; odd\xFF\r\ny=2\n\n[b]\nz=3");
  ASSERT_TRUE(write(u"a", u"new", u"4"));
  EXPECT_EQ(temp.read(u"test.ini"), "; head\n\n[a]\n x = 1 ; odd\xFF\r\ny=2\nnew=4\r\n\n[b]\nz=3");
  ASSERT_TRUE(write(u"b", u"w", u"5"));
  EXPECT_EQ(temp.read(u"test.ini"), "; head\n\n[a]\n x = 1 ; odd\xFF\r\ny=2\nnew=4\r\n\n[b]\nz=3\r\nw=5\r\n");
  EXPECT_EQ(temp.entry_count(), 1u) << "no temporary file is left";
}

TEST_F(ProfileFilesTest, Utf16FileIsReadAndStaysOne) {
  const std::u16string text = u"\uFEFF[a]\r\nx=\u4E2D\r\n";
  std::string bytes;
  for (const char16_t unit : text) {
    bytes += static_cast<char>(unit & 0xFF);
    bytes += static_cast<char>(unit >> 8);
  }
  temp.write(u"test.ini", bytes);
  EXPECT_EQ(read(u"a", u"x"), u"\u4E2D");
  ASSERT_TRUE(write(u"a", u"y", u"\u8868"));
  EXPECT_EQ(read(u"a", u"x"), u"\u4E2D");
  EXPECT_EQ(read(u"a", u"y"), u"\u8868");
  EXPECT_EQ(temp.read(u"test.ini").substr(0, 2), "\xFF\xFE");
}

TEST_F(ProfileFilesTest, FileThatCannotBeWritten) {
  EXPECT_FALSE(ports().profile_files->write(u"a", u"x", u"1", temp.path(u"missing\\test.ini")));
  temp.make_folder(u"folder.ini");
  EXPECT_FALSE(ports().profile_files->write(u"a", u"x", u"1", temp.path(u"folder.ini")));
}

TEST_F(ProfileFilesTest, NameWithoutFolderIsAmongTheSettings) {
  const std::u16string file = u"KavoTestProfile.ini";
  ASSERT_TRUE(ports().profile_files->write(u"a", u"x", u"1", file));
  EXPECT_EQ(ports().profile_files->read(u"a", u"x", u"fallback", file, kLimit), u"1");
  EXPECT_FALSE(ports().files->info(file)) << "not in the current folder";
}

}  // namespace
}  // namespace kavo::test
