#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "common/clsGetTempFileName.h"
#include "platform/unicode.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

class TempFileName : public PortsFixture {};

TEST_F(TempFileName, EveryNameIsMorFourUpperCaseDigitsAndTmp) {
  clsGetTempFileName names;
  const std::regex form(R"(C:\\TEMP\\MOR[0-9A-F]{4}\.TMP)");
  std::set<std::u16string> seen;
  for (int i = 0; i < 2000; ++i) {
    const std::u16string name = names.Filename();
    EXPECT_TRUE(std::regex_match(to_utf8(name), form)) << to_utf8(name);
    seen.insert(name);
  }
  EXPECT_GT(seen.size(), 1900u) << "drawn evenly, 2000 of 65536 seldom meet";
}

TEST_F(TempFileName, ExistingNamesAreNotHandedOut) {
  clsGetTempFileName first;
  clock.next_seed = 1;  // the same sequence of names twice
  const std::u16string taken = first.Filename();
  files.put(taken, "");
  clsGetTempFileName second;
  EXPECT_NE(second.Filename(), taken);
}

TEST_F(TempFileName, TemporaryPathWithoutBackslashGetsOne) {
  files.set_temporary_folder(u"D:\\Scratch");
  EXPECT_TRUE(clsGetTempFileName().Filename().starts_with(u"D:\\Scratch\\MOR"));
}

TEST_F(TempFileName, WithoutTemporaryPathTheRootOfDriveCIsUsed) {
  files.set_temporary_folder(u"");
  EXPECT_TRUE(clsGetTempFileName().Filename().starts_with(u"C:\\MOR"));
}

class EverythingExists : public MemoryFiles {
 public:
  std::optional<FileInfo> info(std::u16string_view) override {
    ++looks;
    return FileInfo();
  }
  // A folder of 65,536 names is not listed a thousand times.
  std::vector<std::u16string> find(std::u16string_view) override {
    ++listings;
    return {};
  }
  int looks = 0;
  int listings = 0;
};

TEST_F(TempFileName, WithAllNamesTakenThe1000thAttemptYieldsMor0000) {
  EverythingExists full;
  ports().files = &full;
  EXPECT_EQ(clsGetTempFileName().Filename(), u"C:\\TEMP\\MOR0000.TMP");
  EXPECT_EQ(full.looks, 1000);
  EXPECT_EQ(full.listings, 0);
}

TEST(TempFileNameOfTheSystem, TwoGeneratorsStartedTogetherDiffer) {
  clsGetTempFileName a, b;
  int equal = 0;
  for (int i = 0; i < 8; ++i) equal += a.Filename() == b.Filename();
  EXPECT_LT(equal, 3) << "two equal rows would collide every time";
}

}  // namespace
}  // namespace kavo::test
