// The editor launcher as the library starts it: the built program in a process of its own, with an editor that records
// how it was started.
#include <gtest/gtest.h>
#include <windows.h>

#include <stdexcept>

#include "platform/ports.h"
#include "platform/unicode.h"
#include "platform/win32/owners.h"
#include "platform/win32/text.h"
#include "suite/components/editor_launcher.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

constexpr DWORD kLongestWait = 30'000;  // milliseconds
constexpr const wchar_t* kClass = L"KavoTest.Editor";

std::wstring windows_path(std::string_view path) {
  std::u16string text = to_utf16(path);
  for (char16_t& c : text)
    if (c == u'/') c = u'\\';
  return to_wide(text);
}

std::wstring editor() { return L"\"" + windows_path(KAVO_TEST_EDITOR) + L"\""; }

// A file type, registered while the object lives: by its class and by verbs of its own, because Wine looks for a named
// type in the one place and for a document's type in the other.
class Association {
 public:
  Association(const std::wstring& extension, const std::wstring& command) : extension_(extension) {
    set(extension_, kClass);
    for (const std::wstring& key : {extension_, std::wstring(kClass)}) set(key + L"\\shell\\open\\command", command);
  }
  ~Association() {
    for (const std::wstring& key : {extension_, std::wstring(kClass)}) RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
  }
  Association(const Association&) = delete;
  Association& operator=(const Association&) = delete;

  // Whether the machine has the type already: it is left alone then.
  static bool exists(const wchar_t* extension) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, extension, 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    RegCloseKey(key);
    return true;
  }

 private:
  static void set(const std::wstring& key, const std::wstring& value) {
    const auto size = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
    if (RegSetKeyValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, REG_SZ, value.c_str(), size) != ERROR_SUCCESS)
      throw std::runtime_error("the file type cannot be registered");
  }
  std::wstring extension_;
};

// The text of a process's message box, which is answered; "" when there is none.
std::wstring answered_message(DWORD process) {
  struct Search {
    DWORD process;
    HWND box;
  } search{process, nullptr};
  EnumWindows(
      [](HWND window, LPARAM parameter) -> BOOL {
        auto& wanted = *reinterpret_cast<Search*>(parameter);
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        wchar_t title[16] = L"";
        GetWindowTextW(window, title, 16);
        if (owner != wanted.process || std::wstring_view(title) != L"KAVO") return TRUE;
        wanted.box = window;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&search));
  constexpr int kTextOfABox = 0xFFFF;
  const HWND label = search.box == nullptr ? nullptr : GetDlgItem(search.box, kTextOfABox);
  if (label == nullptr) return {};
  wchar_t text[1024] = L"";
  SendMessageW(label, WM_GETTEXT, 1024, reinterpret_cast<LPARAM>(text));
  if (*text != L'\0') PostMessageW(search.box, WM_COMMAND, IDOK, 0);
  return text;
}

class LauncherTest : public testing::Test {
 protected:
  LauncherTest() : old_command_(editor_command()) {
    editor_command(u"");
    document = folder.write(u"a b \u00E9.tud", "<xliff/>");
    memory = folder.path(u"m m.tmx");
    SetEnvironmentVariableW(L"KAVO_TEST_EDITOR_RECORD", to_wide(folder.path(u"record")).c_str());
  }
  ~LauncherTest() override { editor_command(old_command_); }

  struct Ran {
    DWORD code = 0;
    std::wstring message;  // of the box that it showed
  };
  // Runs the launcher with this after its name, as the library writes it.
  Ran launch(const std::u16string& parameters) const {
    const std::wstring program = windows_path(KAVO_LAUNCHER);
    std::wstring line = L"\"" + program + L"\" " + to_wide(parameters);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process))
      throw std::runtime_error("the launcher cannot be started");
    const unique_handle child(process.hProcess), thread(process.hThread);
    Ran ran;
    const ULONGLONG end = GetTickCount64() + kLongestWait;
    while (WaitForSingleObject(child.get(), 20) == WAIT_TIMEOUT) {
      if (ran.message.empty()) ran.message = answered_message(process.dwProcessId);
      if (GetTickCount64() > end) {
        ADD_FAILURE() << "the launcher does not end";
        TerminateProcess(child.get(), 99);
        break;
      }
    }
    GetExitCodeProcess(child.get(), &ran.code);
    return ran;
  }
  // What the editor was started with after its name; "" when it was not.
  std::string editor_line() {
    for (DWORD waited = 0; waited < kLongestWait && !folder.exists(u"record"); waited += 20) Sleep(20);
    std::string line = folder.exists(u"record") ? folder.read(u"record") : "";
    if (!line.empty()) ports().files->remove_file(folder.path(u"record"));
    return line;
  }
  static std::u16string in_quotes(std::u16string_view text) { return u"\"" + std::u16string(text) + u"\""; }

  TempFolder folder;
  std::u16string document;
  std::u16string memory;

 private:
  std::u16string old_command_;
};

TEST_F(LauncherTest, StartsTheEditorOfTheSetting) {
  const std::u16string own = from_wide(editor());
  const std::string in_utf8 = to_utf8(in_quotes(document)), memory_word = to_utf8(u"\"/m:" + memory + u"\"");
  const struct {
    const char* name;
    std::u16string command;
    std::u16string parameters;
    std::string line;
  } cases[] = {
      {"a document", own, in_quotes(document), in_utf8},
      {"a document and a memory", own + u" -x %1 /m:%2", in_quotes(document) + u" /t" + in_quotes(memory),
       "-x " + in_utf8 + " " + memory_word},
      {"no memory", own + u" -x %1 /m:%2", in_quotes(document), "-x " + in_utf8},
      {"a memory alone", own + u" -x %1 /m:%2", u"/t" + in_quotes(memory), "-x " + memory_word},
      {"an editor that takes no memory", own + u" %1", in_quotes(document) + u" /t" + in_quotes(memory), in_utf8},
      {"nothing", own + u" -x %1 /m:%2", u"", "-x"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    editor_command(c.command);
    const Ran ran = launch(c.parameters);
    EXPECT_EQ(ran.code, 0u);
    EXPECT_EQ(to_utf8(from_wide(ran.message)), "");
    EXPECT_EQ(editor_line(), c.line);
  }
}

TEST_F(LauncherTest, OpensTheDocumentInTheEditorRegisteredForXliffElseForItsOwnType) {
  for (const wchar_t* extension : {L".xlf", L".xliff", L".tud"}) {
    SCOPED_TRACE(to_utf8(from_wide(extension)));
    if (Association::exists(extension)) GTEST_SKIP() << "the machine opens this type already";
    const Association association(extension, editor() + L" from-" + extension + L" \"%1\"");
    const Ran ran = launch(in_quotes(document) + u" /t" + in_quotes(memory));
    EXPECT_EQ(ran.code, 0u);
    EXPECT_EQ(to_utf8(from_wide(ran.message)), "");
    EXPECT_EQ(editor_line(), to_utf8(u"from-" + from_wide(extension) + u" " + in_quotes(document)));
  }
}

TEST_F(LauncherTest, TheSettingGoesBeforeWhatIsRegistered) {
  if (Association::exists(L".xlf")) GTEST_SKIP() << "the machine opens this type already";
  const Association association(L".xlf", editor() + L" registered \"%1\"");
  editor_command(from_wide(editor()) + u" set %1");
  EXPECT_EQ(launch(in_quotes(document)).code, 0u);
  EXPECT_EQ(editor_line(), to_utf8(u"set " + in_quotes(document)));
}

TEST_F(LauncherTest, SaysWhatCannotBeStarted) {
  for (const wchar_t* extension : {L".xlf", L".xliff", L".tud"})
    if (Association::exists(extension)) GTEST_SKIP() << "the machine opens this type already";
  const std::u16string missing = folder.path(u"missing.tud");
  const struct {
    const char* name;
    std::u16string command;
    std::u16string parameters;
    std::u16string message;  // the beginning of the message
  } cases[] = {
      {"no editor", u"", in_quotes(document),
       u"No editor for XLIFF documents is known. Name an editor with: kavo settings"},
      {"no editor and no document", u"", u"", u"No editor for XLIFF documents is known."},
      {"no document", from_wide(editor()), in_quotes(missing), missing + u": there is no such document"},
      {"no such editor", u"kavo-test-no-such-editor %1", in_quotes(document), u""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    editor_command(c.command);
    const Ran ran = launch(c.parameters);
    EXPECT_EQ(ran.code, 1u);
    const std::u16string message = from_wide(ran.message);
    EXPECT_FALSE(message.empty());
    EXPECT_TRUE(message.starts_with(c.message)) << to_utf8(message);
    EXPECT_FALSE(folder.exists(u"record"));
  }
}

}  // namespace
}  // namespace kavo::test
