#include "platform/win32/system_error.h"

#include <oleauto.h>

#include <array>

#include "platform/win32/text.h"

namespace kavo {
namespace {

constexpr DWORD kRunTimeErrorBase = 0x800A0000u;

struct SystemErrorRow {
  DWORD code;
  FailureNumber number;
};

constexpr SystemErrorRow kSystemErrors[] = {
    {ERROR_FILE_NOT_FOUND, FailureNumber::kFileNotFound},
    {ERROR_PATH_NOT_FOUND, FailureNumber::kPathNotFound},
    {ERROR_BAD_PATHNAME, FailureNumber::kPathNotFound},
    {ERROR_BAD_NETPATH, FailureNumber::kPathNotFound},
    {ERROR_BAD_NET_NAME, FailureNumber::kPathNotFound},
    {ERROR_INVALID_DRIVE, FailureNumber::kPathNotFound},
    {ERROR_DIRECTORY, FailureNumber::kPathNotFound},
    {ERROR_INVALID_NAME, FailureNumber::kPathFileAccess},
    {ERROR_FILENAME_EXCED_RANGE, FailureNumber::kPathFileAccess},
    {ERROR_DIR_NOT_EMPTY, FailureNumber::kPathFileAccess},
    {ERROR_TOO_MANY_OPEN_FILES, FailureNumber::kTooManyFiles},
    {ERROR_ACCESS_DENIED, FailureNumber::kPermissionDenied},
    {ERROR_SHARING_VIOLATION, FailureNumber::kPermissionDenied},
    {ERROR_LOCK_VIOLATION, FailureNumber::kPermissionDenied},
    {ERROR_WRITE_PROTECT, FailureNumber::kPermissionDenied},
    {ERROR_FILE_EXISTS, FailureNumber::kFileAlreadyExists},
    {ERROR_ALREADY_EXISTS, FailureNumber::kFileAlreadyExists},
    {ERROR_DISK_FULL, FailureNumber::kDiskFull},
    {ERROR_HANDLE_DISK_FULL, FailureNumber::kDiskFull},
    {ERROR_NOT_SAME_DEVICE, FailureNumber::kDifferentDrive},
    {ERROR_NOT_ENOUGH_MEMORY, FailureNumber::kOutOfMemory},
    {ERROR_OUTOFMEMORY, FailureNumber::kOutOfMemory},
};

struct AutomationErrorRow {
  HRESULT result;
  FailureNumber number;
};

constexpr AutomationErrorRow kAutomationErrors[] = {
    {DISP_E_MEMBERNOTFOUND, FailureNumber::kNoSuchMember},
    {DISP_E_UNKNOWNNAME, FailureNumber::kNoSuchMember},
    {DISP_E_TYPEMISMATCH, FailureNumber::kTypeMismatch},
    {DISP_E_BADVARTYPE, FailureNumber::kTypeMismatch},
    {DISP_E_OVERFLOW, FailureNumber::kOverflow},
    {DISP_E_BADINDEX, FailureNumber::kSubscriptOutOfRange},
    {DISP_E_BADPARAMCOUNT, FailureNumber::kWrongArgumentCount},
    {DISP_E_PARAMNOTOPTIONAL, FailureNumber::kWrongArgumentCount},
    {DISP_E_PARAMNOTFOUND, FailureNumber::kWrongArgumentCount},
    {E_INVALIDARG, FailureNumber::kInvalidCall},
    {E_OUTOFMEMORY, FailureNumber::kOutOfMemory},
    {REGDB_E_CLASSNOTREG, FailureNumber::kCannotCreateObject},
    {CO_E_CLASSSTRING, FailureNumber::kCannotCreateObject},
    {MK_E_UNAVAILABLE, FailureNumber::kCannotCreateObject},
};

}  // namespace

std::u16string system_text(DWORD code) {
  std::array<wchar_t, 1024> buffer;
  DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
                                buffer.data(), static_cast<DWORD>(buffer.size()), nullptr);
  while (length > 0 && (buffer[length - 1] == L'\r' || buffer[length - 1] == L'\n' || buffer[length - 1] == L' '))
    --length;
  if (length > 0) return from_wide(std::wstring_view(buffer.data(), length));
  const bool is_hresult = (code & 0x80000000u) != 0;
  length = static_cast<DWORD>(swprintf(buffer.data(), buffer.size(), is_hresult ? L"Error %08lX" : L"Error %lu",
                                       static_cast<unsigned long>(code)));
  return from_wide(std::wstring_view(buffer.data(), length));
}

FailureNumber number_of_system_error(DWORD code) {
  for (const SystemErrorRow& row : kSystemErrors)
    if (row.code == code) return row.number;
  return FailureNumber::kDeviceError;
}

failure system_failure(DWORD code) { return failure(number_of_system_error(code), system_text(code)); }

void throw_last_error() { throw system_failure(GetLastError()); }

HRESULT hresult_of(const failure& error) noexcept {
  const std::int32_t number = error.number();
  if (number > 0 && number <= 0xFFFF) return static_cast<HRESULT>(kRunTimeErrorBase | static_cast<DWORD>(number));
  return FAILED(number) ? number : E_FAIL;
}

std::int32_t number_of_hresult(HRESULT result) noexcept {
  const DWORD bits = static_cast<DWORD>(result);
  if ((bits & 0xFFFF0000u) == kRunTimeErrorBase && (bits & 0xFFFFu) != 0)
    return static_cast<std::int32_t>(bits & 0xFFFFu);
  for (const AutomationErrorRow& row : kAutomationErrors)
    if (row.result == result) return static_cast<std::int32_t>(row.number);
  if (HRESULT_FACILITY(result) == FACILITY_WIN32)
    for (const SystemErrorRow& row : kSystemErrors)
      if (row.code == static_cast<DWORD>(HRESULT_CODE(result))) return static_cast<std::int32_t>(row.number);
  return result;
}

}  // namespace kavo
