// What the wizard's editor button starts, with the command itself as the editor.
#include <gtest/gtest.h>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

class EditorButton : public testing::Test {
 protected:
  ~EditorButton() override { set_editor(""); }
  static void set_editor(const std::string& command) {
    EXPECT_EQ(run_kavo({"settings", "editor.command=" + command}).code, 0);
  }
  // The command does not wait for the editor, so the test waits for what it leaves.
  bool appears(std::u16string_view name) const {
    for (int i = 0; i < 1000 && !folder.exists(name); ++i) ports().clock->sleep(0.01);
    return folder.exists(name);
  }
  TempFolder folder;
};

TEST_F(EditorButton, StartsTheEditorWithoutADocument) {
  const std::string page = path_to_host(folder.write(u"a b.asp", "<p><% x %></p>\n"));
  set_editor("\"" KAVO_PROGRAM "\" html protect \"" + page + "\" %1");
  const Ran ran = run_kavo({"NW"});
  EXPECT_EQ(ran.code, 0) << ran.errors;
  EXPECT_TRUE(appears(u"a b_asp.htm"));
}

TEST_F(EditorButton, ItsCommandIsNotListedInTheHelp) {
  EXPECT_EQ(run_kavo({"--help"}).output.find("NW"), std::string::npos);
}

}  // namespace
}  // namespace kavo::test
