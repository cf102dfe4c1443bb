// The wizard run as a script host starts it: a second process fills the dialogs in, bilingual documents appear, and the
// editor launcher is started with exactly the right command line.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "dialog_driver.h"
#include "new_user.h"
#include "platform/unicode.h"
#include "platform/win32/owners.h"
#include "platform/win32/text.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

constexpr std::string_view kScript = R"(Option Explicit
Dim files, rows, answers, wizard, parts, name, bits
Set files = CreateObject("Scripting.FileSystemObject")
Set wizard = CreateObject("K19FPW.K19FPWObj")
wizard.QuietMode = 1
Set rows = files.OpenTextFile(WScript.Arguments(0))
Set answers = files.CreateTextFile(WScript.Arguments(1), True)
Do Until rows.AtEndOfStream
  parts = Split(rows.ReadLine, "|")
  name = parts(0)
  bits = CLng(parts(1))
  answers.WriteLine CStr(wizard.SingleFileWizard(name, bits))
Loop
answers.WriteLine "done"
answers.Close
)";

// A process of the system, waited for when it ends its scope.
class Process {
 public:
  explicit Process(const std::wstring& command_line) {
    std::wstring line = command_line;
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION info{};
    EXPECT_TRUE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &info));
    process_.reset(info.hProcess);
    CloseHandle(info.hThread);
  }
  DWORD id() const { return GetProcessId(process_.get()); }
  // Its exit code; ends it when it does not come to its end.
  DWORD wait() const {
    constexpr DWORD kLongest = 20000;
    if (WaitForSingleObject(process_.get(), kLongest) != WAIT_OBJECT_0) TerminateProcess(process_.get(), 99);
    DWORD code = 99;
    GetExitCodeProcess(process_.get(), &code);
    return code;
  }

 private:
  unique_handle process_;
};

// The libraries in a folder of their own, beside a launcher that records, registered as long as it lives.
class Installation {
 public:
  Installation() {
    const std::filesystem::path bin(KAVO_BIN);
    for (const wchar_t* file : {L"K19FPW.dll", L"K19Suite.dll"})
      std::filesystem::copy_file(bin / file, std::filesystem::path(path(file)));
    std::filesystem::copy_file(bin / L"launcher_double.exe", path(L"K19Subst.exe"));
    for (const wchar_t* file : {L"K19Suite.dll", L"K19FPW.dll"})
      EXPECT_EQ(Process(L"regsvr32.exe /s \"" + path(file) + L"\"").wait(), 0u);
  }
  ~Installation() {
    for (const wchar_t* file : {L"K19FPW.dll", L"K19Suite.dll"})
      Process(L"regsvr32.exe /s /u \"" + path(file) + L"\"").wait();
  }
  Installation(const Installation&) = delete;
  Installation& operator=(const Installation&) = delete;

  std::wstring path(const std::wstring& name) const { return to_wide(folder_.path(from_wide(name))); }
  bool launched() const { return folder_.exists(u"launched.txt"); }
  // The parameters of the launcher's one start since the last call.
  std::u16string take_parameters() const {
    if (!wait_until([&] { return launched(); })) return u"(not started)";
    const std::string bytes = folder_.read(u"launched.txt");
    EXPECT_TRUE(DeleteFileW(path(L"launched.txt").c_str()));
    // It goes when the launcher's own handle does.
    EXPECT_TRUE(wait_until([&] { return !launched(); }));
    std::u16string line;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
      line +=
          static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) | static_cast<unsigned char>(bytes[i + 1]) << 8);
    const std::u16string program = u"\"" + from_wide(path(L"K19Subst.exe")) + u"\"";
    EXPECT_EQ(line.substr(0, program.size()), program);
    line.erase(0, program.size());
    const std::size_t begin = line.find_first_not_of(u' ');
    return begin == std::u16string::npos ? u"" : line.substr(begin);
  }

 private:
  TempFolder folder_;
};

// The wizard's window in another process.
Dialog wizard_of(DWORD process) {
  struct Search {
    DWORD process;
    HWND found = nullptr;
  } search{process};
  EXPECT_TRUE(wait_until([&] {
    EnumWindows(
        [](HWND window, LPARAM parameter) {
          auto& wanted = *reinterpret_cast<Search*>(parameter);
          DWORD owner = 0;
          GetWindowThreadProcessId(window, &owner);
          wchar_t caption[32];
          GetWindowTextW(window, caption, 32);
          if (owner != wanted.process || !IsWindowVisible(window) || lstrcmpW(caption, L"Start translation") != 0)
            return TRUE;
          wanted.found = window;
          return FALSE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found != nullptr;
  })) << "no wizard";
  return Dialog(search.found);
}

enum class End { kOK, kCancel };

struct Row {
  std::u16string name;
  int bits;
  std::u16string source;        // typed into the source box
  std::u16string memory;        // typed into the box of the memory; "" leaves it
  std::u16string memory_shown;  // what stands there at first
  End end;
  int result;
  std::u16string parameters;  // of the launcher, "-" when it is not started, "TUD" for the document's name
};

TEST(SingleFileWizardTest, ScriptHostGetsDocumentsAndTheLauncherItsCommandLine) {
  const NewUser user;
  const Installation installation;
  const TempFolder work_folder;
  const std::u16string page = work_folder.write(u"page.htm", "<html><body><p>Hello there.</p></body></html>\r\n");
  const std::u16string odd = work_folder.write(u"odd.zzz", "nothing known");
  const std::u16string tud = u"\"" + work_folder.path(u"page_htm_htm_FR.tud") + u"\"";
  const std::u16string none = u"<none>";
  const std::u16string memory = u"C:\\tm\\one.tmx";
  const Row rows[] = {
      {u"cancelled", 0, page, u"", none, End::kCancel, 1, u"-"},
      {u"cancelled, editor wanted", 2, page, u"", none, End::kCancel, 1, u""},
      {u"cancelled, last memory wanted too, none used", 6, page, u"", none, End::kCancel, 1, u"/t\"\""},
      {u"done", 0, page, u"", none, End::kOK, 0, u"TUD"},
      {u"done, editor wanted", 2, page, u"", none, End::kOK, 0, u"TUD"},
      {u"done with a memory", 0, page, memory, none, End::kOK, 0, u"TUD /t\"" + memory + u"\""},
      {u"done with the last memory", 4, page, u"", memory, End::kOK, 0, u"TUD /t\"" + memory + u"\""},
      {u"done, last memory not offered", 2, page, u"", none, End::kOK, 0, u"TUD"},
      {u"unknown type", 0, odd, u"", none, End::kOK, 2, u"-"},
      {u"unknown type, editor wanted", 2, odd, u"", none, End::kOK, 2, u""},
      {u"unknown type, last memory wanted too", 6, odd, u"", memory, End::kOK, 2, u"/t\"" + memory + u"\""},
      {u"unknown type, memory but no editor", 4, odd, u"", memory, End::kOK, 2, u"-"},
  };

  std::string table;
  for (const Row& row : rows) table += "|" + std::to_string(row.bits) + "\r\n";
  const std::u16string script = work_folder.write(u"host.vbs", kScript);
  const std::u16string table_file = work_folder.write(u"rows.txt", table);
  const std::u16string answers = work_folder.path(u"answers.txt");
  const auto quoted = [](std::u16string_view text) { return L" \"" + to_wide(text) + L"\""; };
  const Process host(L"cscript.exe //nologo" + quoted(script) + quoted(table_file) + quoted(answers));

  std::string expected;
  for (const Row& row : rows) {
    SCOPED_TRACE(to_utf8(row.name));
    std::filesystem::remove(to_filesystem_path(work_folder.path(u"page_htm_htm_FR.tud")));
    EXPECT_FALSE(installation.launched());
    const Dialog dialog = wizard_of(host.id());
    if (!IsWindow(dialog.window())) break;
    const HWND source = dialog.control(L"Edit", 0);
    const HWND memory_box = dialog.control(L"Edit", 3);
    EXPECT_EQ(Dialog::text(memory_box), row.memory_shown);
    SendMessageW(source, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(to_wide(row.source).c_str()));
    if (!row.memory.empty())
      SendMessageW(memory_box, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(to_wide(row.memory).c_str()));
    dialog.click(dialog.control(row.end == End::kOK ? u"OK" : u"Cancel"));
    EXPECT_TRUE(dialog.gone());
    if (row.parameters != u"-") {
      std::u16string parameters = row.parameters;
      if (parameters.starts_with(u"TUD")) parameters.replace(0, 3, tud);
      EXPECT_EQ(installation.take_parameters(), parameters);
    }
    EXPECT_EQ(work_folder.exists(u"page_htm_htm_FR.tud"), row.result == 0);
    expected += std::to_string(row.result) + "\r\n";
  }
  EXPECT_EQ(host.wait(), 0u);
  EXPECT_FALSE(installation.launched());
  EXPECT_EQ(read_file(answers), expected + "done\r\n");
}

}  // namespace
}  // namespace kavo::test
