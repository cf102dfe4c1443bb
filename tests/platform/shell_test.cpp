#include "platform/shell.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/ports.h"
#include "support/failures.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

// Started programs are not waited for, so what they leave is waited for.
bool appears(const TempFolder& temp, std::u16string_view name) {
  for (int i = 0; i < 500; ++i) {
    if (temp.exists(name)) return true;
    ports().clock->sleep(0.01);
  }
  return false;
}

TEST(ShellTest, MissingProgramCannotBeStarted) {
  EXPECT_EQ(failure_number([] { ports().shell->start(u"kavo-test-no-such-program \"a b\""); }), 53);
  EXPECT_EQ(failure_number([] { ports().shell->start(u""); }), 53);
}

TEST(ShellTest, MissingFileCannotBeOpened) {
  const TempFolder temp;
  const int result = ports().shell->open(temp.path(u"missing.txt"), u"");
  EXPECT_GE(result, 0);
  EXPECT_LE(result, 31);
}

TEST(ShellTest, ProgramIsStartedWithItsArguments) {
  if (!is_native()) GTEST_SKIP() << "uses a program of the native host";
  const TempFolder temp;
  ports().shell->start(u"mkdir \"" + temp.path() + u"/with blank\" '" + temp.path() + u"/$HOME'");
  EXPECT_TRUE(appears(temp, u"with blank"));
}

TEST(ShellTest, ExistingFileIsHandedOverInTheHostsForm) {
  if (!is_native()) GTEST_SKIP() << "uses a program of the native host";
  const TempFolder temp;
  temp.write(u"Source.txt", "content");
  ports().shell->start(u"cp \"" + temp.path(u"SOURCE.TXT") + u"\" \"" + path_from_host("") + temp.path() + u"\"");
  ports().shell->start(u"ln \"" + temp.path(u"source.txt") + u"\" -t \"" + temp.path(u".") + u"\" -S x");
  ports().shell->start(u"mv \"" + temp.path(u"source.txt") + u"\" \"" + temp.path(u"") + u"\"");
  EXPECT_TRUE(appears(temp, u"Source.txt"));
}

TEST(ShellTest, ExecutableFileIsOpenedByRunningIt) {
  if (!is_native()) GTEST_SKIP() << "uses a script of the native host";
  const TempFolder temp;
  const std::u16string script = temp.write(u"script", "#!/bin/sh\ntouch \"$1\"\n");
  std::filesystem::permissions(to_filesystem_path(script), std::filesystem::perms::owner_exec,
                               std::filesystem::perm_options::add);
  EXPECT_GT(ports().shell->open(script, u"\"" + path_from_host(path_to_host(temp.path())) + u"\""), 32);
}

}  // namespace
}  // namespace kavo::test
