#include "platform/win32/guard.h"

#include <new>

#include "platform/failure.h"
#include "platform/unicode.h"
#include "platform/win32/owners.h"
#include "platform/win32/system_error.h"
#include "platform/win32/text.h"

namespace kavo {
namespace {

constexpr std::u16string_view kLibrarySource = u"K19FPW";

HRESULT report(const failure& error, REFIID interface_id, std::u16string_view class_name) {
  unique_interface<ICreateErrorInfo> creator;
  if (SUCCEEDED(CreateErrorInfo(creator.put()))) {
    std::wstring source = to_wide(error.source() == kLibrarySource ? class_name : error.source());
    std::wstring description = to_wide(error.description());
    creator->SetGUID(interface_id);
    creator->SetSource(source.data());
    creator->SetDescription(description.data());
    unique_interface<IErrorInfo> info;
    if (SUCCEEDED(creator->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(info.put()))))
      SetErrorInfo(0, info.get());
  }
  return hresult_of(error);
}

}  // namespace

HRESULT report_current_exception(REFIID interface_id, std::u16string_view class_name) noexcept try {
  SetErrorInfo(0, nullptr);
  try {
    throw;
  } catch (const failure& error) {
    return report(error, interface_id, class_name);
  } catch (const interruption& stop) {
    return report(as_failure(stop), interface_id, class_name);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (const std::exception& error) {
    return report(failure(FailureNumber::kInternal, to_utf16(error.what())), interface_id, class_name);
  }
} catch (...) {
  return E_UNEXPECTED;
}

void take_error_info(HRESULT result, EXCEPINFO& info) noexcept {
  info = {};
  info.scode = result;
  unique_interface<IErrorInfo> error;
  if (GetErrorInfo(0, error.put()) == S_OK) {
    error->GetSource(&info.bstrSource);
    error->GetDescription(&info.bstrDescription);
    error->GetHelpFile(&info.bstrHelpFile);
    error->GetHelpContext(&info.dwHelpContext);
  }
  if (info.bstrDescription != nullptr) return;
  try {
    info.bstrDescription = make_bstr(system_text(static_cast<DWORD>(result))).release();
  } catch (const std::bad_alloc&) {
    // The caller then gets only the number.
  }
}

}  // namespace kavo
