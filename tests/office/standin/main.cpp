// A program that stands in for an Office program: a local automation server that writes down every call and can be
// told to fail (record.h). Command line: FOLDER IDENTIFIER ROLE (programs.h), and what the system adds when it starts
// it.
#include <windows.h>
// windows.h first.
#include <objbase.h>
#include <shellapi.h>

#include <fstream>
#include <iostream>
#include <vector>

#include "office/standin/program.h"
#include "office/standin/recorded_object.h"
#include "platform/automation.h"
#include "platform/win32/com_object.h"
#include "platform/win32/text.h"

namespace kavo::test {
namespace {

constexpr DWORD kLongestRun = 60'000;  // milliseconds; a test that broke off leaves nothing behind
constexpr UINT kMacroTime = 30;        // milliseconds

Program* the_program = nullptr;  // for the system's callbacks, which carry nothing of ours

void CALLBACK macro_ends(HWND, UINT, UINT_PTR timer, DWORD) {
  KillTimer(nullptr, timer);
  the_program->finish_macro();
}

// Makes the program's object, or that of a file; serves one caller, as that of an Office program does.
class Factory final : public ComObject<IClassFactory> {
 public:
  Factory(Program& program, bool of_files) : program_(program), of_files_(of_files) {}

  // Answers the number of the offer.
  DWORD offer() {
    DWORD number = 0;
    const CLSID& id = of_files_ ? program_.kind().file_class_id : program_.kind().class_id;
    CoRegisterClassObject(id, this, CLSCTX_LOCAL_SERVER, REGCLS_SINGLEUSE, &number);
    return number;
  }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** result) noexcept override {
    *result = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    if (of_files_) return make_recorded_object(program_, "File")->QueryInterface(id, result);
    if (program_.record().add("start")) return E_FAIL;
    program_.become_active();
    return make_recorded_object(program_, "Application")->QueryInterface(id, result);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) noexcept override { return S_OK; }

 private:
  ~Factory() override = default;

  Program& program_;
  const bool of_files_;
};

// Until somebody quits the program, the main window is told to quit, or the test is over.
void serve(const Program& program) {
  const std::wstring name = std::wstring(kStopEvent) + program.record().folder().filename().native();
  const unique_handle stop(CreateEventW(nullptr, TRUE, FALSE, name.c_str()));
  const HANDLE handles[] = {stop.get()};
  const ULONGLONG end = GetTickCount64() + kLongestRun;
  while (GetTickCount64() < end &&
         MsgWaitForMultipleObjects(1, handles, FALSE, kLongestRun, QS_ALLINPUT) == WAIT_OBJECT_0 + 1) {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      if (message.message == WM_QUIT) {
        if (message.hwnd != nullptr) program.record().add("quit message");
        return;
      }
      DispatchMessageW(&message);
    }
  }
}

int run(const StandInProgram& kind, const std::filesystem::path& folder, std::wstring_view role) {
  const AutomationSession session;
  Program program(kind, folder);
  the_program = &program;
  WNDCLASSW window_class{};
  window_class.lpfnWndProc = DefWindowProcW;
  window_class.lpszClassName = kind.window_class;
  RegisterClassW(&window_class);
  const HWND window = CreateWindowW(kind.window_class, L"Stand-in", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
  DWORD offer = 0;
  if (role == kRunning) {
    program.become_active();
  } else {
    offer = unique_interface<Factory>(new Factory(program, role == kForFile))->offer();
  }
  std::ofstream(folder / kProcessFile) << GetCurrentProcessId();
  serve(program);
  if (offer != 0) CoRevokeClassObject(offer);
  DestroyWindow(window);
  return 0;
}

}  // namespace

Program::Program(const StandInProgram& kind, std::filesystem::path folder) : kind_(kind), record_(std::move(folder)) {}

Program::~Program() { quit(); }

void Program::become_active() {
  if (active_ != 0) return;
  const unique_interface<IDispatch> application = make_recorded_object(*this, "Application");
  RegisterActiveObject(application.get(), kind_.class_id, ACTIVEOBJECT_STRONG, &active_);
}

void Program::quit() {
  quitting_ = true;
  if (active_ != 0) RevokeActiveObject(std::exchange(active_, 0), nullptr);
}

void Program::object_gone() {
  if (--objects_ == 0 && quitting_) PostThreadMessageW(thread_, WM_QUIT, 0, 0);
}

bool Program::run_macro(std::wstring_view name) {
  if (document_.path().empty()) return false;
  std::error_code error;
  if (std::filesystem::file_size(document_.path().native() + L".kavo", error) != 0 || error) return false;
  exports_ = name.find(L"!Export") != std::wstring_view::npos;
  return SetTimer(nullptr, 0, kMacroTime, macro_ends) != 0;
}

void Program::finish_macro() {
  exports_ ? document_.export_xml() : document_.import_xml();
  std::filesystem::remove(document_.path().native() + L".kavo");
}

}  // namespace kavo::test

int main() {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  const std::vector<std::wstring> arguments(words, words + count);
  LocalFree(words);
  const auto* const kind = count < 4 ? nullptr : kavo::test::find_stand_in_program(arguments[2]);
  if (kind == nullptr) {
    std::cerr << "usage: office_standin FOLDER IDENTIFIER ROLE\n";
    return 2;
  }
  return kavo::test::run(*kind, arguments[1], arguments[3]);
}
