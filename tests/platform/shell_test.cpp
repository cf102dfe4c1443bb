#include "platform/shell.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/ports.h"
#include "support/failures.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

// A program of the native host that leaves its arguments, one a line, in a file beside it.
class ScriptFolder {
 public:
  ScriptFolder() {
    const std::u16string script = temp.write(
        u"script", "#!/bin/sh\ncd \"$(dirname \"$0\")\"\nprintf '<%s>\\n' \"$@\" > unfinished\nmv unfinished out\n");
    std::filesystem::permissions(to_filesystem_path(script), std::filesystem::perms::owner_exec,
                                 std::filesystem::perm_options::add);
  }

  // Started programs are not waited for, so what they leave is.
  std::string output() const {
    for (int i = 0; i < 1000; ++i) {
      if (temp.exists(u"out")) return temp.read(u"out");
      ports().clock->sleep(0.01);
    }
    return "nothing was started";
  }

  TempFolder temp;
};

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
  if (!is_native()) GTEST_SKIP() << "uses a script of the native host";
  const struct {
    const char* name;
    std::u16string_view arguments;
    std::string_view expected;
  } cases[] = {
      {"plain", u" a  b\t-c ", "<a>\n<b>\n<-c>\n"},
      {"quotes keep blanks", u" \"a b\" c", "<a b>\n<c>\n"},
      {"quotes inside an argument", u" a\" b\"c", "<a bc>\n"},
      {"empty argument", u" \"\" x", "<>\n<x>\n"},
      {"escaped quote", u" a\\\"b", "<a\"b>\n"},
      {"backslashes before a quote count half", u" \"a\\\\\" b", "<a\\>\n<b>\n"},
      {"backslashes elsewhere stay", u" a\\\\b\\c", "<a\\\\b\\c>\n"},
      {"doubled quote within quotes", u" \"a\"\"b\" c", "<a\"b>\n<c>\n"},
      {"nothing has a meaning to a shell", u" $HOME `id` * ; 'x y'", "<$HOME>\n<`id`>\n<*>\n<;>\n<'x>\n<y'>\n"},
  };
  for (const auto& c : cases) {
    const ScriptFolder folder;
    ports().shell->start(u"\"" + folder.temp.path(u"script") + u"\"" + std::u16string(c.arguments));
    EXPECT_EQ(folder.output(), c.expected) << c.name;
  }
}

TEST(ShellTest, ExistingFileIsHandedOverInTheHostsForm) {
  if (!is_native()) GTEST_SKIP() << "uses a script of the native host";
  const ScriptFolder folder;
  const std::u16string file = folder.temp.write(u"A Document.txt", "content");
  ports().shell->start(folder.temp.path(u"SCRIPT") + u" \"" + folder.temp.path(u"a document.TXT") + u"\"");
  EXPECT_EQ(folder.output(), "<" + path_to_host(file) + ">\n");
}

TEST(ShellTest, ExecutableFileIsOpenedByRunningIt) {
  if (!is_native()) GTEST_SKIP() << "uses a script of the native host";
  const ScriptFolder folder;
  EXPECT_GT(ports().shell->open(folder.temp.path(u"script"), u"\"a b\" c"), 32);
  EXPECT_EQ(folder.output(), "<a b>\n<c>\n");
}

}  // namespace
}  // namespace kavo::test
