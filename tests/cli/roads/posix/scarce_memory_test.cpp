// Memory that runs out, through the real command: an allocation fails at many places of a run.
#include <gtest/gtest.h>

#include <cstdlib>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

constexpr long kRuns = 60;  // of each verb

class ScarceMemory : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::string_view(KAVO_SANITIZERS).empty())
      GTEST_SKIP() << "this test replaces operator new, and so do the sanitizers; the build without them runs it";
  }
  ~ScarceMemory() override {
    for (const char* variable : {"LD_PRELOAD", "KAVO_FAILING_NEW", "KAVO_FAILING_COUNT", "KAVO_COUNT_OF_NEW"})
      unsetenv(variable);
  }
  static Ran run_failing(const std::vector<std::string>& arguments, long number, const TempFolder& folder,
                         long count = 1) {
    setenv("LD_PRELOAD", KAVO_FAILING_NEW_LIBRARY, 1);
    setenv("KAVO_FAILING_COUNT", std::to_string(count).c_str(), 1);
    setenv("KAVO_FAILING_NEW", std::to_string(number).c_str(), 1);
    Ran ran = run_kavo(arguments, &folder);
    unsetenv("LD_PRELOAD");
    return ran;
  }
};

TEST_F(ScarceMemory, IsSaidAndLeavesNothing) {
  const std::vector<std::vector<std::string>> verbs = {{"prepare", "index.asp", "--source", "EN", "--target", "FR"},
                                                       {"html", "protect", "index.asp"},
                                                       {"verify", "index.asp"}};
  for (const auto& verb : verbs) {
    const TempFolder whole, count_folder;
    whole.write(u"index.asp", "<p>Hello</p>\r\n<% x = \"a b\" %>\r\n");
    const std::u16string count = count_folder.path(u"count");
    setenv("KAVO_COUNT_OF_NEW", path_to_host(count).c_str(), 1);
    ASSERT_EQ(run_failing(verb, 0, whole).code, 0);
    const long allocations = std::atol(read_file(count).c_str());
    ASSERT_GT(allocations, kRuns);
    for (long number = 1; number <= allocations; number += allocations / kRuns) {
      const TempFolder folder;
      folder.write(u"index.asp", "<p>Hello</p>\r\n<% x = \"a b\" %>\r\n");
      const Ran ran = run_failing(verb, number, folder);
      if (ran.code == 0) {
        EXPECT_EQ(folder.entry_count(), whole.entry_count()) << verb[0] << number;
        continue;
      }
      EXPECT_EQ(ran.code, 1) << verb[0] << number;
      EXPECT_NE(ran.errors.find("not enough memory"), std::string::npos) << verb[0] << number << ran.errors;
      EXPECT_EQ(ran.errors.find("std::"), std::string::npos) << verb[0] << number << ran.errors;
      EXPECT_LE(folder.entry_count(), whole.entry_count()) << verb[0] << number;
    }
  }
}

// With several failures the reserved memory is used up, too.
TEST_F(ScarceMemory, EndsNoRunInACrashAndNoBatchWithoutAName) {
  constexpr std::string_view kDocument =
      "<MIFFile 7.00>\r\n<TextFlow\r\n <Para\r\n  <ParaLine\r\n   <Marker\r\n    <MTypeName `Index'>\r\n"
      "    <MText `pump'>\r\n   >\r\n  >\r\n >\r\n>\r\n";
  const struct {
    std::vector<std::string> verb;
    long failing;  // allocations in a row
  } cases[] = {{{"prepare", "book.mif", "--source", "EN", "--target", "FR"}, 2},
               {{"settings", "mif.split=both"}, 2},
               {{"mif", "extract", "book.mif"}, 2},
               {{"mif", "extract", "book.mif"}, 1'000'000}};
  for (const auto& [verb, failing] : cases) {
    const TempFolder whole, count_folder;
    whole.write(u"book.mif", kDocument);
    const std::u16string count = count_folder.path(u"count");
    setenv("KAVO_COUNT_OF_NEW", path_to_host(count).c_str(), 1);
    // A run that is refused does only what comes before any work on a file.
    std::vector<std::string> refused = verb;
    refused.push_back("--no-such-option");
    ASSERT_EQ(run_failing(refused, 0, whole).code, 2);
    const long start_up = std::atol(read_file(count).c_str());
    ASSERT_EQ(run_failing(verb, 0, whole).code, 0);
    const long allocations = std::atol(read_file(count).c_str());
    ASSERT_GT(allocations, start_up + kRuns);
    for (long number = start_up; number <= allocations; number += (allocations - start_up) / kRuns) {
      const TempFolder folder;
      folder.write(u"book.mif", kDocument);
      const Ran ran = run_failing(verb, number, folder, failing);
      if (ran.code == 0) continue;
      EXPECT_EQ(ran.code, 1) << verb[0] << number;
      EXPECT_NE(ran.errors.find("not enough memory"), std::string::npos) << verb[0] << number << ran.errors;
      EXPECT_EQ(ran.errors.find("bad_alloc"), std::string::npos) << verb[0] << number << ran.errors;
      const bool has_file = verb[0] != "settings";
      EXPECT_TRUE(!has_file || ran.errors.find("book.mif") != std::string::npos) << verb[0] << number << ran.errors;
    }
  }
}

}  // namespace
}  // namespace kavo::test
