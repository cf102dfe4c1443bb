// Components by programmatic identifier: those of the program's own table, then those that the system has registered.
#include "platform/automation.h"

#include <windows.h>
// windows.h first.
#include <objbase.h>

#include "platform/adapters.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "platform/win32/dispatch.h"
#include "platform/win32/system_error.h"
#include "platform/win32/text.h"

namespace kavo {
namespace {

// Always 429, the number that automation hosts know. The system's own reason is in the description.
void check_created(HRESULT result, std::u16string_view name) {
  if (SUCCEEDED(result)) return;
  throw failure(FailureNumber::kCannotCreateObject,
                std::u16string(name) + u": " + system_text(static_cast<DWORD>(result)));
}

class WindowsAutomation final : public Automation {
 public:
  ObjectRef create(std::u16string_view programmatic_identifier) override {
    if (const ObjectFactory factory = find_factory(programmatic_identifier)) return factory();
    CLSID class_id;
    check_created(CLSIDFromProgID(to_wide(programmatic_identifier).c_str(), &class_id), programmatic_identifier);
    unique_interface<IDispatch> dispatch;
    check_created(CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                                   reinterpret_cast<void**>(dispatch.put())),
                  programmatic_identifier);
    return make_object(dispatch.get());
  }

  ObjectRef active_object(std::u16string_view programmatic_identifier) override {
    CLSID class_id;
    check_created(CLSIDFromProgID(to_wide(programmatic_identifier).c_str(), &class_id), programmatic_identifier);
    unique_interface<IUnknown> running;
    check_created(GetActiveObject(class_id, nullptr, running.put()), programmatic_identifier);
    unique_interface<IDispatch> dispatch;
    check_created(running->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(dispatch.put())),
                  programmatic_identifier);
    return make_object(dispatch.get());
  }

  ObjectRef bind_to_file(std::u16string_view path) override {
    unique_interface<IDispatch> dispatch;
    const HRESULT result =
        CoGetObject(to_wide(path).c_str(), nullptr, IID_IDispatch, reinterpret_cast<void**>(dispatch.put()));
    if (FAILED(result))
      throw failure(FailureNumber::kCannotBindToFile,
                    std::u16string(path) + u": " + system_text(static_cast<DWORD>(result)));
    return make_object(dispatch.get());
  }
};

}  // namespace

Automation& system_automation() {
  static WindowsAutomation automation;
  return automation;
}

AutomationSession::AutomationSession() {
  const HRESULT result = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  if (FAILED(result)) throw failure(number_of_hresult(result), system_text(static_cast<DWORD>(result)), u"K19FPW");
}

AutomationSession::~AutomationSession() { CoUninitialize(); }

}  // namespace kavo
