// An editor for tests: leaves the command line that it was started with, without the program's name, in the file that
// KAVO_TEST_EDITOR_RECORD names.
#include <windows.h>

#include <string>

#include "platform/unicode.h"
#include "platform/win32/owners.h"
#include "platform/win32/text.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
  using namespace kavo;
  std::wstring record(32768, L'\0');
  record.resize(GetEnvironmentVariableW(L"KAVO_TEST_EDITOR_RECORD", record.data(), 32768));
  std::wstring line = GetCommandLineW();
  const std::size_t name_end = line.starts_with(L'"') ? line.find(L'"', 1) : line.find(L' ');
  line.erase(0, name_end == std::wstring::npos ? line.size() : name_end + 1);
  line.erase(0, line.find_first_not_of(L' '));
  const std::string bytes = to_utf8(from_wide(line));
  // The record gets its name only when it is complete, because the test looks for it.
  const std::wstring part = record + L".part";
  {
    const unique_handle file(
        CreateFileW(part.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    if (!WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr)) return 1;
  }
  return MoveFileExW(part.c_str(), record.c_str(), MOVEFILE_REPLACE_EXISTING) ? 0 : 1;
}
