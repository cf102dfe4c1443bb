// What a started program gets, seen by shell scripts. On Windows the launcher's tests start a real editor for that.
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/files.h"
#include "platform/ports.h"
#include "platform/shell.h"
#include "platform/unicode.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

// A program that leaves its arguments, one a line, in a file beside it.
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

TEST(StartedScripts, ProgramIsStartedWithItsArgumentsAsTheyAre) {
  const ScriptFolder folder;
  folder.temp.write(u"a document.txt", "content");
  ports().shell->start(folder.temp.path(u"SCRIPT"), {u"a b", u"", u"a\" -c \"b", u"\\", u"back\\slash",
                                                     folder.temp.path(u"A Document.txt"), u"$HOME"});
  EXPECT_EQ(folder.output(), "<a b>\n<>\n<a\" -c \"b>\n<\\>\n<back\\slash>\n<" +
                                 to_utf8(folder.temp.path(u"A Document.txt")) + ">\n<$HOME>\n");
}

TEST(StartedScripts, ProgramIsRunWithTheLineOfItsParameters) {
  const struct {
    const char* name;
    std::u16string_view parameters;
    std::string_view expected;
  } cases[] = {
      {"plain", u" a  b\t-c ", "<a>\n<b>\n<-c>\n"},
      {"quotes keep blanks", u" \"a b\" c", "<a b>\n<c>\n"},
      {"a switch before the quotes", u"\"a b\" /t\"c d\"", "<a b>\n</tc d>\n"},
      {"nothing has a meaning to a shell", u" $HOME `id` * ; 'x y'", "<$HOME>\n<`id`>\n<*>\n<;>\n<'x>\n<y'>\n"},
  };
  for (const auto& c : cases) {
    const ScriptFolder folder;
    EXPECT_GT(ports().shell->run(folder.temp.path(u"script"), c.parameters), 31) << c.name;
    EXPECT_EQ(folder.output(), c.expected) << c.name;
  }
}

TEST(StartedScripts, ExistingFileIsHandedOverInTheHostsForm) {
  const ScriptFolder folder;
  const std::u16string file = folder.temp.write(u"A Document.txt", "content");
  ports().shell->run(folder.temp.path(u"SCRIPT"), u"\"" + folder.temp.path(u"a document.TXT") + u"\"");
  EXPECT_EQ(folder.output(), "<" + path_to_host(file) + ">\n");
}

}  // namespace
}  // namespace kavo::test
