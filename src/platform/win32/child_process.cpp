#include "platform/child_process.h"

#include <windows.h>

#include "platform/command_line.h"
#include "platform/unicode.h"
#include "platform/win32/owners.h"
#include "platform/win32/system_error.h"
#include "platform/win32/text.h"

namespace kavo {
namespace {

// The job object ends with this process, and ends the children in it.
HANDLE children_job() {
  static const HANDLE job = [] {
    const HANDLE made = CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    if (made) SetInformationJobObject(made, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return made;
  }();
  return job;
}

// One end is for the child, which inherits it.
void make_pipe(unique_handle& reads, unique_handle& writes, bool child_reads) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  if (!CreatePipe(reads.put(), writes.put(), &inherited, 0)) throw system_failure(GetLastError());
  SetHandleInformation((child_reads ? writes : reads).get(), HANDLE_FLAG_INHERIT, 0);
}

std::wstring program() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path;
}

class WindowsChild final : public ChildProcess {
 public:
  explicit WindowsChild(const std::vector<std::string>& arguments) {
    unique_handle child_reads, child_writes;
    make_pipe(child_reads, input_, true);
    make_pipe(output_, child_writes, false);
    std::vector<std::u16string> words;
    words.reserve(arguments.size());
    for (const std::string& argument : arguments) words.push_back(to_utf16(argument));
    const std::wstring path = program();
    std::wstring line = to_wide(joined_command_line(from_wide(path), words));  // CreateProcess writes into it
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = child_reads.get();
    startup.hStdOutput = child_writes.get();
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(path.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process))
      throw system_failure(GetLastError());
    process_ = unique_handle(process.hProcess);
    CloseHandle(process.hThread);
    if (children_job()) AssignProcessToJobObject(children_job(), process_.get());
  }
  ~WindowsChild() override {
    end();
    wait();
  }
  void write_input(std::string_view text) override {
    while (!text.empty()) {
      DWORD written = 0;
      if (!WriteFile(input_.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr)) return;
      text.remove_prefix(written);
    }
  }
  bool read_line(std::string& line) override {
    for (;;) {
      if (const std::size_t end = unread_.find('\n'); end != std::string::npos) {
        line = unread_.substr(0, end);
        if (line.ends_with('\r')) line.pop_back();
        unread_.erase(0, end + 1);
        return true;
      }
      char buffer[65536];
      DWORD count = 0;
      if (!ReadFile(output_.get(), buffer, sizeof buffer, &count, nullptr) || count == 0) return false;
      unread_.append(buffer, count);
    }
  }
  void interrupt() noexcept override { end(); }
  void end() noexcept override { TerminateProcess(process_.get(), 130); }
  int wait() noexcept override {
    DWORD code = 0;
    WaitForSingleObject(process_.get(), INFINITE);
    return GetExitCodeProcess(process_.get(), &code) ? static_cast<int>(code) : -1;
  }

 private:
  unique_handle input_, output_, process_;
  std::string unread_;
};

}  // namespace

std::unique_ptr<ChildProcess> start_this_program(const std::vector<std::string>& arguments) {
  return std::make_unique<WindowsChild>(arguments);
}

void end_with_parent() noexcept {}

}  // namespace kavo
