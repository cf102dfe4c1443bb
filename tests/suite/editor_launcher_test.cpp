#include "suite/editor_launcher.h"

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

using Opened = FakeShell::Opened;
using OpenedAs = FakeShell::OpenedAs;

TEST(EditorRequest, IsReadFromTheLaunchersArguments) {
  const struct {
    const char* name;
    std::vector<std::string> arguments;
    const char16_t* document;
    const char16_t* memory;
  } cases[] = {
      {"nothing", {}, u"", u""},
      {"a document", {"C:\\a b.tud"}, u"C:\\a b.tud", u""},
      {"a document and a memory", {"C:\\a.tud", "/tC:\\m m.tmx"}, u"C:\\a.tud", u"C:\\m m.tmx"},
      {"a memory alone", {"/tC:\\m.tmx"}, u"", u"C:\\m.tmx"},
      {"the memory first, capital letter", {"/TC:\\m.tmx", "C:\\\xC3\xA9.tud"}, u"C:\\\u00E9.tud", u"C:\\m.tmx"},
      {"an empty memory", {"C:\\a.tud", "/t"}, u"C:\\a.tud", u""},
  };
  for (const auto& c : cases) {
    const EditorRequest request = editor_request_of(c.arguments);
    EXPECT_EQ(request.document, c.document) << c.name;
    EXPECT_EQ(request.memory, c.memory) << c.name;
  }
}

TEST(EditorCommandLine, TakesDocumentAndMemory) {
  const struct {
    const char* name;
    const char16_t* command;
    EditorRequest request;
    const char16_t* line;
  } cases[] = {
      {"no mark", u"editor", {u"C:\\a b.tud", u""}, u"editor \"C:\\a b.tud\""},
      {"no mark, with a memory", u"editor -x", {u"C:\\a.tud", u"C:\\m.tmx"}, u"editor -x \"C:\\a.tud\""},
      {"marks", u"editor %1 --tm=%2", {u"C:\\a.tud", u"C:\\m.tmx"}, u"editor \"C:\\a.tud\" \"--tm=C:\\m.tmx\""},
      {"marks in quotes of their own",
       u"\"C:\\Program Files\\e.exe\" \"%1\"  /m:\"%2\"",
       {u"C:\\a.tud", u"C:\\m.tmx"},
       u"\"C:\\Program Files\\e.exe\" \"C:\\a.tud\" /m:\"C:\\m.tmx\""},
      {"no memory", u"editor /m:%2 %1", {u"C:\\a.tud", u""}, u"editor \"C:\\a.tud\""},
      {"no document", u"editor \"%1\" -n", {u"", u""}, u"editor -n"},
      {"memory alone", u"editor %1 %2", {u"", u"C:\\m.tmx"}, u"editor \"C:\\m.tmx\""},
      {"a name that holds a mark", u"editor %1", {u"C:\\%1.tud", u""}, u"editor \"C:\\%1.tud\""},
  };
  for (const auto& c : cases) EXPECT_EQ(editor_command_line(c.command, c.request), c.line) << c.name;
}

class EditorLauncherTest : public PortsFixture {
 protected:
  EditorLauncherTest() { files.put(kDocument, "<xliff/>"); }
  static constexpr const char16_t* kDocument = u"C:\\work\\a b.tud";
};

TEST_F(EditorLauncherTest, TheEditorOfTheSettingIsStarted) {
  EXPECT_EQ(editor_command(), u"");
  editor_command(u"editor %1 %2");
  start_editor({kDocument, u"C:\\m.tmx"});
  EXPECT_EQ(shell.started, std::vector<std::u16string>{u"editor \"C:\\work\\a b.tud\" \"C:\\m.tmx\""});
  start_editor({});
  EXPECT_EQ(shell.started.back(), u"editor");
  EXPECT_TRUE(shell.opened.empty() && shell.opened_as.empty());
}

TEST_F(EditorLauncherTest, WithoutASettingTheEditorForXliffOpensTheDocument) {
  start_editor({kDocument, u"C:\\m.tmx"});
  EXPECT_EQ(shell.opened_as, (std::vector<OpenedAs>{{kDocument, u".xlf"}}));
  EXPECT_TRUE(shell.opened.empty());
}

TEST_F(EditorLauncherTest, WithoutOneForXliffWhateverOpensTheDocument) {
  shell.open_as_result = 31;
  start_editor({kDocument, u""});
  EXPECT_EQ(shell.opened_as, (std::vector<OpenedAs>{{kDocument, u".xlf"}, {kDocument, u".xliff"}}));
  EXPECT_EQ(shell.opened, (std::vector<Opened>{{kDocument, u""}}));
}

TEST_F(EditorLauncherTest, WhatCannotBeStartedIsAFailure) {
  EXPECT_THROW(start_editor({u"C:\\work\\missing.tud", u""}), failure);
  EXPECT_THROW(start_editor({}), failure);
  EXPECT_TRUE(shell.opened_as.empty());
  shell.open_as_result = 2;
  shell.open_result = 31;
  EXPECT_THROW(start_editor({kDocument, u""}), failure);
  editor_command(u"editor");
  shell.can_start = false;
  EXPECT_THROW(start_editor({kDocument, u""}), failure);
}

}  // namespace
}  // namespace kavo::test
