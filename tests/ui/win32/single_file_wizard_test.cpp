// The wizard run as a script host starts it: a second process fills the dialogs in, bilingual documents appear, and the
// editor launcher is started with exactly the right command line.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "common/program_settings.h"
#include "dialog_driver.h"
#include "new_user.h"
#include "office/win32/office_stand_in.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "platform/win32/owners.h"
#include "platform/win32/text.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

// Runs the wizard with the bits of each line of the first file and writes the results into the second.
constexpr std::string_view kScript = R"(Option Explicit
Dim files, rows, answers, wizard, name, bits
Set files = CreateObject("Scripting.FileSystemObject")
Set wizard = CreateObject("K19FPW.K19FPWObj")
wizard.QuietMode = 1
Set rows = files.OpenTextFile(WScript.Arguments(0))
Set answers = files.CreateTextFile(WScript.Arguments(1), True)
Do Until rows.AtEndOfStream
  name = ""
  bits = CLng(rows.ReadLine)
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

// A script host that runs the wizard, once for each entry of `bits`.
class ScriptHost {
 public:
  ScriptHost(const TempFolder& folder, const std::vector<int>& bits)
      : answers_(folder.path(u"answers.txt")), process_(command_line(folder, bits, answers_)) {}

  // The window that comes next.
  Dialog wizard() const {
    Search search{process_.id()};
    EXPECT_TRUE(wait_until([&] {
      EnumWindows(look_at, reinterpret_cast<LPARAM>(&search));
      return search.found != nullptr;
    })) << "no wizard";
    return Dialog(search.found);
  }
  // What each run came to, a line each, and "done" when the script reached its end, which is waited for.
  std::string results() const {
    EXPECT_EQ(process_.wait(), 0u);
    return read_file(answers_);
  }

 private:
  struct Search {
    DWORD process;
    HWND found = nullptr;
  };

  static std::wstring command_line(const TempFolder& folder, const std::vector<int>& bits,
                                   const std::u16string& answers) {
    std::string table;
    for (const int each : bits) table += std::to_string(each) + "\r\n";
    std::wstring line = L"cscript.exe //nologo";
    for (const std::u16string& word : {folder.write(u"host.vbs", kScript), folder.write(u"rows.txt", table), answers})
      line += L" \"" + to_wide(word) + L"\"";
    return line;
  }

  static BOOL CALLBACK look_at(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    wchar_t caption[32];
    GetWindowTextW(window, caption, 32);
    if (owner != search.process || !IsWindowVisible(window) || lstrcmpW(caption, L"Start translation") != 0)
      return TRUE;
    search.found = window;
    return FALSE;
  }

  std::u16string answers_;
  Process process_;
};

// How a run ends, and what makes it end like that.
struct Ending {
  std::u16string_view name;
  std::u16string_view file;  // in the work folder
  std::u16string_view button;
  int result;
  std::u16string_view first_tud;  // the document that is there afterwards, "" for none
};
constexpr Ending kDone{u"done", u"page.htm", u"OK", 0, u"page_htm_htm_FR.tud"};
constexpr Ending kDoneWithTwoFiles{u"done with two files", u"shop.asp", u"OK", 0, u"shop_asp_htm_FR.tud"};
constexpr Ending kFailures[] = {
    {u"cancelled", u"page.htm", u"Cancel", 1, u""},
    {u"of no known type", u"odd.zzz", u"OK", 2, u""},
    {u"page that cannot be prepared", u"missing.htm", u"OK", 103, u""},
    {u"FrameMaker document that cannot be prepared", u"missing.mif", u"OK", 104, u""},
    {u"no Office program for the first file", u"letter.doc", u"OK", 200, u""},
    {u"no document of the second file", u"blocked.asp", u"OK", 201, u"blocked_asp_htm_FR.tud"},
};

// One run of the wizard.
struct Row {
  Ending ending;
  int bits;
  std::u16string_view typed;      // into the box of the memory; "" leaves what is offered
  std::u16string_view last_used;  // before this run, "" for none

  bool bit(int which) const { return (bits & which) != 0; }
  std::u16string offered() const { return std::u16string(bit(4) ? last_used : u""); }
  std::u16string chosen() const { return typed.empty() ? offered() : std::u16string(typed); }
};

constexpr std::u16string_view kMemory = u"C:\\tm\\my shop.tmx";

// Every ending with every combination of bits 1 and 2, before a memory was ever used and after; bit 0 comes and goes.
std::vector<Row> all_rows() {
  std::vector<Row> rows;
  std::u16string_view last_used;
  const auto add = [&](const Ending& ending, std::u16string_view typed) {
    const int first_bit = rows.size() / 4 % 2;
    for (const int bits : {first_bit, 3 - first_bit, 4 + first_bit, 7 - first_bit}) {
      rows.push_back({ending, bits, typed, last_used});
      if (!typed.empty()) last_used = typed;
    }
  };
  for (const bool is_first : {true, false}) {
    for (const Ending& failure : kFailures) add(failure, u"");
    add(kDone, u"");
    if (is_first) add(kDoneWithTwoFiles, kMemory);
  }
  return rows;
}

// What the launcher is started with, as text; "-" when it is not started.
std::u16string parameters_of(const Row& row, const std::u16string& tud) {
  const auto memory = [](std::u16string_view name) { return u"/t\"" + std::u16string(name) + u"\""; };
  if (row.ending.result == 0) return u"\"" + tud + u"\"" + (row.chosen().empty() ? u"" : u" " + memory(row.chosen()));
  if (!row.bit(2)) return u"-";
  return row.bit(4) ? memory(row.last_used) : u"";
}

// The first of the bilingual documents by name, "" for none; all of them are gone afterwards.
std::u16string take_first_document(const TempFolder& folder) {
  std::vector<std::filesystem::path> documents;
  for (const auto& entry : std::filesystem::directory_iterator(to_filesystem_path(folder.path())))
    if (entry.is_regular_file() && entry.path().extension() == L".tud") documents.push_back(entry.path());
  if (documents.empty()) return u"";
  std::ranges::sort(documents);
  for (const std::filesystem::path& document : documents) std::filesystem::remove(document);
  return from_wide(documents.front().filename().wstring());
}

TEST(SingleFileWizardTest, ScriptHostGetsDocumentsAndTheLauncherItsCommandLine) {
  const NewUser user;
  const Installation installation;
  const TempFolder folder;
  folder.write(u"page.htm", "<html><body><p>Hello there.</p></body></html>\r\n");
  folder.write(u"shop.asp", "<html><body><p>Hello <% = name %>.</p></body></html>\r\n");
  folder.write(u"blocked.asp", "<html><body><p>Hello <% = name %>.</p></body></html>\r\n");
  folder.write(u"odd.zzz", "nothing known");
  folder.write(u"letter.doc", "a letter");
  // Stands where the document of the second file would be written.
  folder.make_folder(u"blocked_asp_scr_FR.tud");

  const std::vector<Row> rows = all_rows();
  std::vector<int> bits;
  for (const Row& row : rows) bits.push_back(row.bits);
  const ScriptHost host(folder, bits);

  std::string expected;
  for (const Row& row : rows) {
    SCOPED_TRACE(to_utf8(row.ending.name) + ", bits " + std::to_string(row.bits) + ", memory \"" +
                 to_utf8(row.chosen()) + "\", used last \"" + to_utf8(row.last_used) + "\"");
    EXPECT_FALSE(installation.launched());
    const Dialog dialog = host.wizard();
    if (!IsWindow(dialog.window())) break;
    // The next dialog says that the run before it is over.
    if (&row != &rows.front()) {
      EXPECT_EQ(take_first_document(folder), (&row - 1)->ending.first_tud);
    }
    const HWND source = dialog.control(L"Edit", 0);
    const HWND memory = dialog.control(L"Edit", 3);
    EXPECT_EQ(Dialog::text(memory), row.offered().empty() ? u"<none>" : row.offered());
    EXPECT_EQ(IsWindowVisible(dialog.control(u"Start &editor")) != FALSE, row.bit(1));
    Dialog::set_text(source, folder.path(row.ending.file));
    if (!row.typed.empty()) Dialog::set_text(memory, row.typed);
    dialog.click(dialog.control(row.ending.button));
    EXPECT_TRUE(dialog.gone());
    const std::u16string parameters = parameters_of(row, folder.path(row.ending.first_tud));
    if (parameters != u"-") {
      EXPECT_EQ(installation.take_parameters(), parameters);
    }
    expected += std::to_string(row.ending.result) + "\r\n";
  }
  EXPECT_EQ(host.results(), expected + "done\r\n");
  EXPECT_EQ(take_first_document(folder), rows.back().ending.first_tud);
  EXPECT_FALSE(installation.launched());
}

TEST(SingleFileWizardTest, OfficeDocumentsRtfAndAResourceScriptTakeTheSameRoad) {
  for (const StandInProgram& program : kStandInPrograms)
    if (!OfficeStandIn::is_free(program.identifier)) GTEST_SKIP() << "a real Office is installed; it is left alone";
  const struct {
    std::u16string_view document;
    std::string_view bytes;
    std::u16string_view tud, target;
    std::u16string_view beside;   // what rebuilding needs, or nothing
    std::string_view added = {};  // in front, by a rebuilding without translations
  } roads[] = {{u"report.doc", "A ship\npicture 0102\n", u"report_doc_rtf_FR.tud", u"report_FR.doc", u"report_doc.obj"},
               {u"deck.ppt", "A ship\npicture 0102\n", u"deck_ppt_FR.tud", u"deck_FR.ppt", u""},
               {u"book.xls", "A ship\npicture 0102\n", u"book_xls_FR.tud", u"book_FR.xls", u""},
               {u"letter.rtf", "{\\rtf1\\ansi A ship {\\pict 0102}\\par}", u"letter_rtf_FR.tud", u"letter_FR.rtf",
                u"letter.obj"},
               {u"app.rc", "STRINGTABLE\r\nBEGIN\r\n  1 \"A ship\"\r\nEND\r\n", u"app_rc_FR.tud", u"app_FR.rc", u"",
                "LANGUAGE 12, 1\r\n#pragma code_page(1252)\r\n"}};
  const NewUser user;
  const Installation installation;
  OfficeStandIn word(L"Word.Application"), presentations(L"PowerPoint.Application"), workbooks(L"Excel.Application");
  for (OfficeStandIn* office : {&word, &presentations, &workbooks}) office->plan({});
  const TempFolder folder;
  for (const auto& road : roads) folder.write(road.document, road.bytes);
  const ScriptHost host(folder, std::vector<int>(std::size(roads), 0));
  for (const auto& road : roads) {
    SCOPED_TRACE(to_utf8(road.document));
    const Dialog dialog = host.wizard();
    ASSERT_TRUE(IsWindow(dialog.window()));
    Dialog::set_text(dialog.control(L"Edit", 0), folder.path(road.document));
    dialog.click(dialog.control(u"OK"));
    EXPECT_TRUE(dialog.gone());
    EXPECT_EQ(installation.take_parameters(), u"\"" + folder.path(road.tud) + u"\"");
  }
  EXPECT_EQ(host.results(), "0\r\n0\r\n0\r\n0\r\n0\r\ndone\r\n");
  const ObjectRef wizard = ports().automation->create(u"K19FPW.K19FPWObj");
  wizard->put(u"QuietMode", std::int32_t{1});
  for (const auto& road : roads) {
    SCOPED_TRACE(to_utf8(road.document));
    EXPECT_TRUE(road.beside.empty() || folder.exists(road.beside));
    EXPECT_NE(folder.read(road.tud).find("A ship"), std::string::npos);
    Argument arguments[] = {by_value(folder.path(road.tud)), by_reference(std::u16string()), by_value(std::int32_t{0}),
                            by_value(std::int32_t{0})};
    EXPECT_EQ(as_number(wizard->invoke(u"CreateTranslation", arguments)), 0)
        << to_utf8(as_text(wizard->get(u"LastError")));
    EXPECT_EQ(folder.read(road.target), std::string(road.added).append(road.bytes));
  }
}

TEST(SingleFileWizardTest, TheEditorButtonStartsTheEditorAloneAndCancels) {
  const NewUser user;
  const Installation installation;
  const TempFolder folder;
  std::filesystem::copy_file(KAVO_PROGRAM, std::filesystem::path(installation.path(L"KAVO.EXE")));
  // In the place of an editor.
  kEditorSettings.save(u"Command", u"\"" + from_wide(installation.path(L"K19Subst.exe")) + u"\" alone %1");
  const ScriptHost host(folder, {1});
  const Dialog dialog = host.wizard();
  dialog.click(dialog.control(u"Start &editor"));
  EXPECT_TRUE(dialog.gone());
  EXPECT_EQ(installation.take_parameters(), u"alone");
  EXPECT_EQ(host.results(), "1\r\ndone\r\n");
}

}  // namespace
}  // namespace kavo::test
