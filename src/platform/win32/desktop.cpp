// The desktop of the host's thread. Messages are pumped for the whole thread, as a host's own loop would.
#include "platform/desktop.h"

#include <windows.h>
// windows.h first.
#include <commdlg.h>

#include <algorithm>
#include <vector>

#include "platform/adapters.h"
#include "platform/win32/text.h"

namespace kavo {
namespace {

constexpr int kCaptionBuffer = 1024;  // 1023 characters and the terminating zero
constexpr std::size_t kLongestPath = 32768;

class WindowsDesktop final : public Desktop {
 public:
  void process_messages() override {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      if (message.message == WM_QUIT) {
        // The message is put back, because the host's own loop must see it.
        PostQuitMessage(static_cast<int>(message.wParam));
        break;
      }
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
    throw_if_interrupted();
  }

  std::optional<std::u16string> foreground_caption() override {
    const HWND window = GetForegroundWindow();
    if (window == nullptr) return std::nullopt;
    wchar_t caption[kCaptionBuffer];
    const int length = GetWindowTextW(window, caption, kCaptionBuffer);
    return from_wide(std::wstring_view(caption, static_cast<std::size_t>(length)));
  }

  void activate(std::u16string_view caption) override {
    const HWND window = FindWindowW(nullptr, to_wide(caption).c_str());
    if (window != nullptr) SetForegroundWindow(window);
  }

  std::uintptr_t find_window(std::u16string_view class_name) override {
    return reinterpret_cast<std::uintptr_t>(FindWindowW(to_wide(class_name).c_str(), nullptr));
  }

  void post_message(std::uintptr_t window, std::uint32_t message) override {
    PostMessageW(reinterpret_cast<HWND>(window), message, 0, 0);
  }

  void message_box(std::u16string_view text, std::u16string_view caption, MessageIcon icon) override {
    UINT style = MB_OK | MB_TASKMODAL;  // modal to the host's windows even where none of them is active
    if (icon == MessageIcon::kExclamation) style |= MB_ICONEXCLAMATION;
    if (icon == MessageIcon::kInformation) style |= MB_ICONINFORMATION;
    MessageBoxW(GetActiveWindow(), to_wide(text).c_str(), to_wide(caption).c_str(), style);
  }

  std::optional<std::u16string> ask_file(const FileQuestion& question) override {
    const std::wstring title = to_wide(question.title);
    const std::wstring folder = to_wide(question.folder);
    const std::wstring extension = to_wide(question.extension);
    std::wstring filter = to_wide(question.filter);
    std::ranges::replace(filter, L'|', L'\0');
    std::vector<wchar_t> path(kLongestPath);
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = GetActiveWindow();
    dialog.lpstrFilter = filter.empty() ? nullptr : filter.c_str();
    dialog.lpstrFile = path.data();
    dialog.nMaxFile = static_cast<DWORD>(path.size());
    dialog.lpstrInitialDir = folder.empty() ? nullptr : folder.c_str();
    dialog.lpstrTitle = title.empty() ? nullptr : title.c_str();
    dialog.lpstrDefExt = extension.empty() ? nullptr : extension.c_str();
    dialog.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | (question.to_save ? OFN_OVERWRITEPROMPT : OFN_FILEMUSTEXIST);
    // The dialog changes the current folder, which belongs to the host; OFN_NOCHANGEDIR has no effect when opening.
    std::vector<wchar_t> current(GetCurrentDirectoryW(0, nullptr) + 1);
    GetCurrentDirectoryW(static_cast<DWORD>(current.size()), current.data());
    const BOOL chosen = question.to_save ? GetSaveFileNameW(&dialog) : GetOpenFileNameW(&dialog);
    SetCurrentDirectoryW(current.data());
    if (!chosen) return std::nullopt;
    return from_wide(path.data());
  }
};

}  // namespace

Desktop& system_desktop() {
  static WindowsDesktop desktop;
  return desktop;
}

}  // namespace kavo
