#include "suite/components/editor_launcher.h"

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "platform/files.h"
#include "platform/unicode.h"
#include "support/failures.h"
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

TEST(EditorRequest, SecondNamesAreRefusedAsTheLineWasSplitInsideOne) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"a", "b.tud"}, {"a.tud", "/tm", "/tn.tmx"}, {"C:\\a.tud", "-c", ":!touch x"}})
    EXPECT_EQ(failure_number([&] { editor_request_of(arguments); }), 5) << arguments[1];
}

std::u16string in_host_form(std::u16string_view path) { return to_utf16(path_to_host(path)); }

TEST(EditorWords, TakeDocumentAndMemoryWhole) {
  const std::u16string document = in_host_form(u"C:\\a b.tud"), memory = in_host_form(u"C:\\m\\m.tmx");
  const struct {
    const char* name;
    const char16_t* command;
    EditorRequest request;
    FakeShell::Words words;
  } cases[] = {
      {"no mark", u"editor", {u"C:\\a b.tud", u""}, {u"editor", document}},
      {"no mark, with a memory", u"editor -x", {u"C:\\a b.tud", u"C:\\m\\m.tmx"}, {u"editor", u"-x", document}},
      {"marks", u"editor %1 --tm=%2", {u"C:\\a b.tud", u"C:\\m\\m.tmx"}, {u"editor", document, u"--tm=" + memory}},
      {"marks in quotes of their own",
       u"\"C:\\Program Files\\e.exe\" \"%1\"  /m:\"%2\"",
       {u"C:\\a b.tud", u"C:\\m\\m.tmx"},
       {u"C:\\Program Files\\e.exe", document, u"/m:" + memory}},
      {"no memory", u"editor /m:%2 %1", {u"C:\\a b.tud", u""}, {u"editor", document}},
      {"no document", u"editor \"%1\" -n", {u"", u""}, {u"editor", u"-n"}},
      {"memory alone", u"editor %1 %2", {u"", u"C:\\m\\m.tmx"}, {u"editor", memory}},
      {"a name that holds marks", u"editor %1 %2", {u"%2%1.tud", u"%1.tmx"}, {u"editor", u"%2%1.tud", u"%1.tmx"}},
      {"a name that would split a line",
       u"editor %1 %2",
       {u"a\" -c \":!touch pwn\" \"b.tud", u"m\" -x \""},
       {u"editor", u"a\" -c \":!touch pwn\" \"b.tud", u"m\" -x \""}},
      {"an empty setting", u" ", {u"C:\\a b.tud", u""}, {}},
  };
  for (const auto& c : cases) EXPECT_EQ(editor_words(c.command, c.request), c.words) << c.name;
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
  EXPECT_EQ(shell.started.back(), (FakeShell::Words{u"editor", in_host_form(kDocument), in_host_form(u"C:\\m.tmx")}));
  start_editor({});
  EXPECT_EQ(shell.started.back(), FakeShell::Words{u"editor"});
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

TEST_F(EditorLauncherTest, AProgramThatCannotBeStartedIsAFailure) {
  EXPECT_THROW(start_editor({u"C:\\work\\missing.tud", u""}), failure);
  EXPECT_THROW(start_editor({}), failure);
  EXPECT_TRUE(shell.opened_as.empty());
  shell.open_as_result = 2;
  shell.open_result = 31;
  EXPECT_THROW(start_editor({kDocument, u""}), failure);
}

TEST_F(EditorLauncherTest, AnEditorThatCannotBeStartedIsNamed) {
  editor_command(u"no-such-editor -x");
  shell.can_start = false;
  const auto thrown = failure_of([] { start_editor({kDocument, u""}); });
  ASSERT_TRUE(thrown);
  EXPECT_EQ(thrown->description(),
            u"The editor cannot be started: no-such-editor: No such program. Name an editor with: kavo settings "
            u"editor.command=...");
}

}  // namespace
}  // namespace kavo::test
