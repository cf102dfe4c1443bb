// What a host written in C++ does with the libraries, for the tests of this folder.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>
// windows.h first.
#include <oaidl.h>
#include <objbase.h>

#include <string>
#include <string_view>
#include <vector>

#include "K19FPW.h"
#include "platform/win32/owners.h"
#include "platform/win32/text.h"

namespace kavo::test {

constexpr HRESULT run_time_error(int number) {
  return static_cast<HRESULT>(0x800A0000u + static_cast<unsigned>(number));
}

// The folder of the test program, where the libraries lie too; ends in "\".
std::wstring program_folder();

// A loaded library.
class Library {
 public:
  explicit Library(const std::wstring& file_name);
  const std::wstring& path() const { return path_; }
  // An exported function of the type `Function`; fails the test when there is none.
  template <typename Function>
  Function* function(const char* name) const {
    const FARPROC found = GetProcAddress(module_.get(), name);
    EXPECT_NE(found, nullptr) << name;
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(found));
  }
  HRESULT call(const char* name) const;                              // DllRegisterServer and its like
  HRESULT install(bool install, const wchar_t* command_line) const;  // DllInstall
  unique_interface<IClassFactory> class_object(REFCLSID id) const;

 private:
  std::wstring path_;
  unique_module module_;
};

// The manifests beside the program stand in for the registry as long as it lives.
class ManifestScope {
 public:
  ManifestScope();
  ~ManifestScope();
  ManifestScope(const ManifestScope&) = delete;
  ManifestScope& operator=(const ManifestScope&) = delete;

 private:
  HANDLE context_;
  ULONG_PTR cookie_ = 0;
};

// By programmatic identifier, as every host does it; null with the reason in `result` when it fails.
unique_interface<IDispatch> create_object(const wchar_t* programmatic_identifier, HRESULT* result = nullptr);

// The error information left for this thread by the last failing call.
struct ErrorInfo {
  std::u16string source;
  std::u16string description;
};
ErrorInfo take_error_info();

// Arguments for late-bound calls. The variants refer to what is passed in, which stays the caller's.
VARIANT number_argument(LONG value);
VARIANT omitted_argument();
VARIANT text_argument(const unique_bstr& text);
VARIANT reference_argument(BSTR* text);
VARIANT reference_argument(LONG* number);
VARIANT reference_argument(SHORT* number);
VARIANT reference_argument(double* number);
VARIANT reference_argument(VARIANT* variable);

// One late-bound call and all its results.
struct Invocation {
  HRESULT result = S_OK;
  unique_variant answer;
  unique_exception_info exception;
  UINT bad_argument = 99;

  std::u16string text() { return from_bstr(V_VT(&*answer) == VT_BSTR ? V_BSTR(&*answer) : nullptr); }
  LONG number() { return V_VT(&*answer) == VT_I4 ? V_I4(&*answer) : -99; }
};

// Arguments in the order of the parameters; the last `names.size()` of them are the named ones.
Invocation invoke(IDispatch* object, DISPID id, WORD flags, std::vector<VARIANT> arguments = {},
                  std::vector<DISPID> names = {});

}  // namespace kavo::test
