#include "platform/win32/paths.h"

#include <windows.h>

#include <algorithm>

#include "platform/files.h"
#include "platform/unicode.h"
#include "platform/win32/system_error.h"
#include "platform/win32/text.h"

namespace kavo {
namespace {

constexpr std::size_t kLongestPlainPath = 247;
constexpr std::wstring_view kLongPrefix = L"\\\\?\\";
constexpr std::wstring_view kLongSharePrefix = L"\\\\?\\UNC\\";

}  // namespace

std::wstring full_path(const std::wstring& path) {
  std::wstring result(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetFullPathNameW(path.c_str(), static_cast<DWORD>(result.size()), result.data(), nullptr);
    if (length == 0) throw_last_error();
    const bool fits = length < result.size();
    result.resize(length);
    if (fits) return result;
  }
}

std::wstring system_path(std::u16string_view path) {
  std::wstring wide = to_wide(path);
  if (wide.find(L'\0') != std::wstring::npos) throw system_failure(ERROR_INVALID_NAME);
  if (wide.size() <= kLongestPlainPath || wide.starts_with(kLongPrefix)) return wide;
  // The prefix switches off the system's own reading of "/", "." and "..", so that is done here.
  wide = full_path(wide);
  if (wide.starts_with(L"\\\\")) return std::wstring(kLongSharePrefix) + wide.substr(2);
  return std::wstring(kLongPrefix) + wide;
}

std::u16string path_from_host(std::string_view host_path) {
  std::u16string path = to_utf16(host_path);
  std::replace(path.begin(), path.end(), u'/', u'\\');
  return path;
}

std::string path_to_host(std::u16string_view path) { return to_utf8(path); }

}  // namespace kavo
