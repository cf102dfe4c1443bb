// Stands in for the editor launcher: leaves what it was started with beside itself, as UTF-16 text.
#include <windows.h>

#include <string>

int WINAPI WinMain(HINSTANCE, HINSTANCE, char*, int) {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  const std::wstring folder = path.substr(0, path.rfind(L'\\') + 1);
  const std::wstring unfinished = folder + L"launched.part";
  const HANDLE file = CreateFileW(unfinished.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  const std::wstring line = GetCommandLineW();
  DWORD written = 0;
  WriteFile(file, line.data(), static_cast<DWORD>(line.size() * sizeof(wchar_t)), &written, nullptr);
  CloseHandle(file);
  return MoveFileExW(unfinished.c_str(), (folder + L"launched.txt").c_str(), MOVEFILE_REPLACE_EXISTING) ? 0 : 1;
}
