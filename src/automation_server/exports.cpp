// The functions that an automation library exports; exports.def names them.
#include <windows.h>
// windows.h first.
#include <olectl.h>

#include <string_view>

#include "automation_server/class_factory.h"
#include "automation_server/component_library.h"
#include "automation_server/module.h"
#include "automation_server/registration.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "platform/win32/guard.h"
#include "platform/win32/text.h"

namespace kavo {
namespace {

// The results that registration programs know how to explain.
template <typename Body>
HRESULT registering(Body&& body) noexcept {
  return guarded(IID_NULL, {}, [&] {
    try {
      body();
      return S_OK;
    } catch (const failure& error) {
      return error.is(FailureNumber::kPermissionDenied) ? E_ACCESSDENIED : SELFREG_E_CLASS;
    }
  });
}

}  // namespace
}  // namespace kavo

using kavo::RegistrationScope;

STDAPI DllGetClassObject(REFCLSID class_id, REFIID id, void** result) {
  if (result == nullptr) return E_POINTER;
  *result = nullptr;
  return kavo::guarded(id, {}, [&] {
    for (const kavo::ComponentClass& row : kavo::component_library().classes)
      if (row.class_id == class_id) return kavo::make_class_factory(row)->QueryInterface(id, result);
    return CLASS_E_CLASSNOTAVAILABLE;
  });
}

STDAPI DllCanUnloadNow() { return kavo::module_in_use() ? S_FALSE : S_OK; }

STDAPI DllRegisterServer() {
  return kavo::registering([] { kavo::register_library(RegistrationScope::kMachine); });
}

STDAPI DllUnregisterServer() {
  return kavo::registering([] { kavo::unregister_library(RegistrationScope::kMachine); });
}

// The command line says for whom: "user", or "machine" (also when there is none).
STDAPI DllInstall(BOOL install, PCWSTR command_line) {
  const std::u16string whom = command_line == nullptr ? std::u16string() : kavo::from_wide(command_line);
  const bool for_user = kavo::equal_ignoring_ascii_case(whom, u"user");
  if (!for_user && !whom.empty() && !kavo::equal_ignoring_ascii_case(whom, u"machine")) return E_INVALIDARG;
  const RegistrationScope scope = for_user ? RegistrationScope::kUser : RegistrationScope::kMachine;
  return kavo::registering([&] { install ? kavo::register_library(scope) : kavo::unregister_library(scope); });
}
