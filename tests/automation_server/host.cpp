#include "automation_server/host.h"

#include <algorithm>

namespace kavo::test {

std::wstring program_folder() {
  wchar_t path[MAX_PATH];
  const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring whole(path, length);
  return whole.substr(0, whole.rfind(L'\\') + 1);
}

Library::Library(const std::wstring& file_name)
    : path_(program_folder() + file_name), module_(LoadLibraryW(path_.c_str())) {
  EXPECT_TRUE(module_) << "cannot load the library, error " << GetLastError();
}

HRESULT Library::call(const char* name) const { return function<HRESULT __stdcall()>(name)(); }

HRESULT Library::install(bool install, const wchar_t* command_line) const {
  return function<HRESULT __stdcall(BOOL, PCWSTR)>("DllInstall")(install, command_line);
}

unique_interface<IClassFactory> Library::class_object(REFCLSID id) const {
  unique_interface<IClassFactory> factory;
  function<HRESULT __stdcall(REFCLSID, REFIID, void**)>("DllGetClassObject")(id, IID_IClassFactory,
                                                                             reinterpret_cast<void**>(factory.put()));
  EXPECT_TRUE(factory);
  return factory;
}

ManifestScope::ManifestScope() {
  const std::wstring folder = program_folder();
  const std::wstring manifest = folder + L"host.manifest";
  ACTCTXW description{};
  description.cbSize = sizeof description;
  description.dwFlags = ACTCTX_FLAG_ASSEMBLY_DIRECTORY_VALID;
  description.lpSource = manifest.c_str();
  description.lpAssemblyDirectory = folder.c_str();
  context_ = CreateActCtxW(&description);
  EXPECT_NE(context_, INVALID_HANDLE_VALUE) << "error " << GetLastError();
  EXPECT_TRUE(ActivateActCtx(context_, &cookie_));
}

ManifestScope::~ManifestScope() {
  DeactivateActCtx(0, cookie_);
  ReleaseActCtx(context_);
}

unique_interface<IDispatch> create_object(const wchar_t* programmatic_identifier, HRESULT* result) {
  CLSID id;
  unique_interface<IDispatch> object;
  HRESULT created = CLSIDFromProgID(programmatic_identifier, &id);
  if (SUCCEEDED(created))
    created =
        CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(object.put()));
  if (result != nullptr) *result = created;
  return object;
}

ErrorInfo take_error_info() {
  unique_interface<IErrorInfo> info;
  if (GetErrorInfo(0, info.put()) != S_OK) return {};
  unique_bstr source;
  unique_bstr description;
  info->GetSource(source.put());
  info->GetDescription(description.put());
  return {from_bstr(source.get()), from_bstr(description.get())};
}

namespace {

VARIANT argument(VARTYPE type, auto set) {
  VARIANT value;
  VariantInit(&value);
  V_VT(&value) = type;
  set(value);
  return value;
}

}  // namespace

VARIANT number_argument(LONG value) {
  return argument(VT_I4, [&](VARIANT& v) { V_I4(&v) = value; });
}
VARIANT omitted_argument() {
  return argument(VT_ERROR, [](VARIANT& v) { V_ERROR(&v) = DISP_E_PARAMNOTFOUND; });
}
VARIANT text_argument(const unique_bstr& text) {
  return argument(VT_BSTR, [&](VARIANT& v) { V_BSTR(&v) = text.get(); });
}
VARIANT reference_argument(BSTR* text) {
  return argument(VT_BYREF | VT_BSTR, [&](VARIANT& v) { V_BSTRREF(&v) = text; });
}
VARIANT reference_argument(LONG* number) {
  return argument(VT_BYREF | VT_I4, [&](VARIANT& v) { V_I4REF(&v) = number; });
}
VARIANT reference_argument(SHORT* number) {
  return argument(VT_BYREF | VT_I2, [&](VARIANT& v) { V_I2REF(&v) = number; });
}
VARIANT reference_argument(double* number) {
  return argument(VT_BYREF | VT_R8, [&](VARIANT& v) { V_R8REF(&v) = number; });
}
VARIANT reference_argument(VARIANT* variable) {
  return argument(VT_BYREF | VT_VARIANT, [&](VARIANT& v) { V_VARIANTREF(&v) = variable; });
}

Invocation invoke(IDispatch* object, DISPID id, WORD flags, std::vector<VARIANT> arguments, std::vector<DISPID> names) {
  // The system wants both last first.
  std::reverse(arguments.begin(), arguments.end());
  std::reverse(names.begin(), names.end());
  DISPPARAMS parameters{arguments.data(), names.data(), static_cast<UINT>(arguments.size()),
                        static_cast<UINT>(names.size())};
  Invocation call;
  call.result = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, call.answer.put(),
                               call.exception.put(), &call.bad_argument);
  return call;
}

}  // namespace kavo::test
