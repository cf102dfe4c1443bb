// What counts as absent, and what is an error: a file that cannot be looked at may be there.
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/failure.h"
#include "platform/ports.h"
#include "support/failures.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

TEST(AbsentFiles, NamesWithoutAFileOrBelowAFileAreAbsent) {
  const TempFolder folder;
  folder.write(u"a.txt", "text");
  for (const auto* name : {u"none.txt", u"none\\a.txt", u"a.txt\\b.txt"}) {
    EXPECT_FALSE(ports().files->info(folder.path(name)));
    EXPECT_FALSE(ports().files->identity(folder.path(name)));
  }
}

// A link that leads to itself stands for every entry that the system refuses to look at.
TEST(AbsentFiles, AnUnreadablePathIsAnError) {
  const TempFolder folder;
  std::filesystem::create_symlink("loop", to_filesystem_path(folder.path(u"loop")));
  for (const auto* name : {u"loop", u"loop\\a.txt"}) {
    EXPECT_NE(failure_number([&] { ports().files->info(folder.path(name)); }), 0);
    EXPECT_NE(failure_number([&] { ports().files->identity(folder.path(name)); }), 0);
    EXPECT_NE(failure_number([&] { ports().files->open(folder.path(name), Access::kRead); }), 0);
  }
  EXPECT_NE(failure_number([&] { ports().files->find(folder.path(u"loop\\*")); }), 0);
}

}  // namespace
}  // namespace kavo::test
