// Private profile files through the W calls, which keep a file in the coding that it has (ANSI, or UTF-16 with a mark).
#include "platform/profile_files.h"

#include <windows.h>

#include "platform/adapters.h"
#include "platform/win32/text.h"

namespace kavo {
namespace {

class WindowsProfileFiles final : public ProfileFiles {
 public:
  std::u16string read(std::u16string_view section, std::u16string_view key, std::u16string_view fallback,
                      std::u16string_view file, std::size_t limit) override {
    // One more than the limit: the call keeps a place for the terminating zero.
    std::wstring buffer(limit + 1, L'\0');
    const DWORD length =
        GetPrivateProfileStringW(to_wide(section).c_str(), to_wide(key).c_str(), to_wide(fallback).c_str(),
                                 buffer.data(), static_cast<DWORD>(buffer.size()), to_wide(file).c_str());
    buffer.resize(length);
    return from_wide(buffer);
  }

  bool write(std::u16string_view section, std::u16string_view key, std::u16string_view value,
             std::u16string_view file) override {
    return WritePrivateProfileStringW(to_wide(section).c_str(), to_wide(key).c_str(), to_wide(value).c_str(),
                                      to_wide(file).c_str()) != 0;
  }
};

}  // namespace

ProfileFiles& system_profile_files() {
  static WindowsProfileFiles profile_files;
  return profile_files;
}

}  // namespace kavo
