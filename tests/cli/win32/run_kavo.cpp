#include "cli/run_kavo.h"

#include <windows.h>

#include <stdexcept>

#include "platform/command_line.h"
#include "platform/unicode.h"
#include "platform/win32/owners.h"
#include "platform/win32/text.h"

namespace kavo::test {
namespace {

unique_handle create_inheritable(const std::u16string& path) {
  SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
  return unique_handle(CreateFileW(to_wide(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inheritable, CREATE_ALWAYS,
                                   FILE_ATTRIBUTE_NORMAL, nullptr));
}

}  // namespace

Ran run_kavo(const std::vector<std::string>& arguments, const TempFolder* working_folder) {
  const TempFolder streams;
  std::u16string program = to_utf16(KAVO_PROGRAM);
  for (char16_t& c : program)
    if (c == u'/') c = u'\\';
  std::vector<std::u16string> words;
  for (const std::string& argument : arguments) words.push_back(to_utf16(argument));

  unique_handle output = create_inheritable(streams.path(u"output"));
  unique_handle errors = create_inheritable(streams.path(u"errors"));
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = output.get();
  startup.hStdError = errors.get();
  PROCESS_INFORMATION process{};
  std::wstring line = to_wide(joined_command_line(program, words));  // CreateProcess writes into it
  const std::wstring folder = working_folder != nullptr ? to_wide(working_folder->path()) : std::wstring();
  if (!CreateProcessW(to_wide(program).c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                      working_folder != nullptr ? folder.c_str() : nullptr, &startup, &process))
    throw std::runtime_error("the command cannot be started");
  const unique_handle child(process.hProcess), thread(process.hThread);
  WaitForSingleObject(child.get(), INFINITE);
  DWORD code = 0;
  GetExitCodeProcess(child.get(), &code);
  output.reset();
  errors.reset();
  return {static_cast<int>(code), streams.read(u"output"), streams.read(u"errors")};
}

std::optional<Ran> run_kavo_interrupted(const std::vector<std::string>&, const std::function<void()>&) {
  return std::nullopt;
}

}  // namespace kavo::test
