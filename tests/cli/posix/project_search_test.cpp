// The project file is looked for from the current folder up. What cannot be looked at is named.
#include <gtest/gtest.h>

#include <filesystem>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

namespace fs = std::filesystem;

TEST(ProjectSearch, AProjectFileThatCannotBeReadIsNamedAndFailsTheRun) {
  const TempFolder folder;
  folder.write(u"notes.txt", "Hello.\r\n");
  fs::create_symlink("kavo.json", to_filesystem_path(folder.path()) / "kavo.json");  // leads to itself
  const std::vector<std::string> verb = {"prepare", "notes.txt", "--source", "EN-US", "--target", "FR"};

  const Ran ran = run_kavo(verb, &folder);
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.errors.find("kavo.json cannot be read: "), std::string::npos) << ran.errors;
  EXPECT_NE(ran.errors.find("--no-project"), std::string::npos) << ran.errors;
  EXPECT_FALSE(folder.exists(u"notes_txt_FR.tud"));

  std::vector<std::string> without = verb;
  without.push_back("--no-project");
  const Ran passed = run_kavo(without, &folder);
  EXPECT_EQ(passed.code, 0) << passed.errors;
  EXPECT_TRUE(folder.exists(u"notes_txt_FR.tud"));
}

}  // namespace
}  // namespace kavo::test
