// DispatchAdapter offers a C++ object to automation clients; AutomationClient offers an automation object to C++.
#include "platform/win32/dispatch.h"

#include <algorithm>
#include <atomic>
#include <map>

#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/win32/com_object.h"
#include "platform/win32/guard.h"
#include "platform/win32/system_error.h"
#include "platform/win32/text.h"
#include "platform/win32/variants.h"

namespace kavo {
namespace {

std::atomic<long> live_objects{0};

// The source of failures that name none of their own.
constexpr std::u16string_view kOwnSource = u"K19FPW";

class DispatchAdapter final : public ComObject<IDispatch> {
 public:
  explicit DispatchAdapter(ObjectRef object) : object_(std::move(object)) { ++live_objects; }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept override {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept override {
    if (info != nullptr) *info = nullptr;
    return DISP_E_BADINDEX;
  }

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept override {
    if (names == nullptr || ids == nullptr) return E_POINTER;
    if (count == 0) return E_INVALIDARG;
    return guarded(IID_IDispatch, kOwnSource, [&] {
      // The members' tables have no names for parameters.
      std::fill(ids, ids + count, DISPID_UNKNOWN);
      const std::u16string name = from_wide(names[0]);
      if (!object_->has_member(name)) return DISP_E_UNKNOWNNAME;
      ids[0] = id_of(name);
      return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
    });
  }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                   EXCEPINFO* info, UINT* bad_argument) noexcept override {
    if (parameters == nullptr) return E_POINTER;
    const bool is_put = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    const UINT named = parameters->cNamedArgs;
    const bool names_value = named == 1 && parameters->rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
    if (named > 0 && !(is_put && names_value)) return DISP_E_NONAMEDARGS;
    if (is_put && parameters->cArgs == 0) return DISP_E_BADPARAMCOUNT;
    if (id < 1 || static_cast<std::size_t>(id) > names_.size()) return DISP_E_MEMBERNOTFOUND;
    const HRESULT called = guarded(IID_IDispatch, kOwnSource, [&] {
      call(names_[static_cast<std::size_t>(id) - 1], flags, is_put, *parameters, result, bad_argument);
    });
    if (SUCCEEDED(called) || info == nullptr) return called;
    take_error_info(called, *info);
    return DISP_E_EXCEPTION;
  }

 private:
  ~DispatchAdapter() override { --live_objects; }

  // Names get their numbers in the order in which they are first asked for, and keep them.
  DISPID id_of(const std::u16string& name) {
    const auto found = std::find_if(names_.begin(), names_.end(),
                                    [&](const std::u16string& known) { return equal_ignoring_case(known, name); });
    if (found != names_.end()) return static_cast<DISPID>(found - names_.begin()) + 1;
    names_.push_back(name);
    return static_cast<DISPID>(names_.size());
  }

  // `name` is passed by value, since the object may ask for more names while it is called.
  // NOLINTNEXTLINE(performance-unnecessary-value-param)
  void call(std::u16string name, WORD flags, bool is_put, const DISPPARAMS& parameters, VARIANT* result,
            UINT* bad_argument) {
    // Arguments arrive in reverse order; the new value of a property comes before them all.
    const UINT first = is_put ? 1 : 0;
    std::vector<Argument> arguments;
    for (UINT i = parameters.cArgs; i-- > first;) {
      if (bad_argument != nullptr) *bad_argument = i;
      const VARIANT& given = parameters.rgvarg[i];
      arguments.push_back({value_of(given), (V_VT(&given) & VT_BYREF) != 0});
    }
    Value answer;
    if (is_put) {
      object_->put(name, arguments, value_of(parameters.rgvarg[0]));
    } else if ((flags & DISPATCH_METHOD) != 0) {
      answer = object_->invoke(name, arguments);
    } else {
      answer = object_->get(name, arguments);
    }
    for (std::size_t i = 0; i < arguments.size(); ++i)
      if (arguments[i].by_reference) write_back(parameters.rgvarg[parameters.cArgs - 1 - i], arguments[i].value);
    if (result != nullptr) *result = variant_of(answer).release();
  }

  ObjectRef object_;
  std::vector<std::u16string> names_;
};

class AutomationClient final : public AutomationObject {
 public:
  explicit AutomationClient(IDispatch* dispatch) : dispatch_(dispatch) { dispatch->AddRef(); }

  // Both ask for "method or property", as script hosts do, so it does not matter which of the two the server offers.
  Value get(std::u16string_view member, std::span<Argument> arguments) override {
    return call(member, DISPATCH_PROPERTYGET | DISPATCH_METHOD, arguments, nullptr);
  }
  Value invoke(std::u16string_view member, std::span<Argument> arguments) override {
    return call(member, DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments, nullptr);
  }
  void put(std::u16string_view member, std::span<Argument> arguments, const Value& value) override {
    const bool is_object = std::holds_alternative<ObjectRef>(value);
    call(member, is_object ? DISPATCH_PROPERTYPUTREF | DISPATCH_PROPERTYPUT : DISPATCH_PROPERTYPUT, arguments, &value);
  }
  bool has_member(std::u16string_view member) const override {
    DISPID id = DISPID_UNKNOWN;
    return SUCCEEDED(find_id(member, id));
  }

  unique_interface<IDispatch> dispatch() const {
    dispatch_.get()->AddRef();
    return unique_interface<IDispatch>(dispatch_.get());
  }

 private:
  HRESULT find_id(std::u16string_view member, DISPID& id) const {
    const auto known = ids_.find(member);
    if (known != ids_.end()) {
      id = known->second;
      return S_OK;
    }
    std::wstring name = to_wide(member);
    LPOLESTR names[] = {name.data()};
    const HRESULT result = dispatch_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    if (SUCCEEDED(result)) ids_.emplace(member, id);
    return result;
  }

  [[noreturn]] static void raise(HRESULT result, std::u16string_view member, EXCEPINFO* info) {
    std::u16string description;
    std::u16string source = u"K19FPW";
    if (result == DISP_E_EXCEPTION && info != nullptr) {
      // A server may fill in the texts only when they are asked for.
      if (info->pfnDeferredFillIn != nullptr) info->pfnDeferredFillIn(info);
      description = from_bstr(info->bstrDescription);
      if (info->bstrSource != nullptr) source = from_bstr(info->bstrSource);
      if (info->scode != S_OK) {
        result = info->scode;
      } else if (info->wCode != 0) {
        // An older server's own error number.
        result = MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, info->wCode);
      }
    }
    if (description.empty()) description = system_text(static_cast<DWORD>(result));
    description += u" (" + std::u16string(member) + u")";
    failure reason(number_of_hresult(result), std::move(description), std::move(source));
    if (reason.is(FailureNumber::kInterrupted)) throw interruption();
    throw reason;
  }

  Value call(std::u16string_view member, WORD flags, std::span<Argument> arguments, const Value* new_value) {
    DISPID id = DISPID_UNKNOWN;
    const HRESULT found = find_id(member, id);
    if (FAILED(found)) raise(found, member, nullptr);

    // Arguments are in reverse order. A by-reference argument points into `storage` with the type of its value, because
    // a server with a typed parameter accepts only a reference to exactly that type; an empty one points to the whole
    // variant.
    const std::size_t first = new_value != nullptr ? 1 : 0;
    const std::size_t count = arguments.size() + first;
    std::vector<unique_variant> storage(count);
    std::vector<VARIANT> passed(count);
    if (new_value != nullptr) storage[0] = variant_of(*new_value);
    for (std::size_t i = 0; i < arguments.size(); ++i) storage[count - 1 - i] = variant_of(arguments[i].value);
    for (std::size_t i = 0; i < count; ++i) passed[i] = storage[i].get();
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      if (!arguments[i].by_reference) continue;
      VARIANT& own = *storage[count - 1 - i];
      VARIANT& reference = passed[count - 1 - i];
      VariantInit(&reference);
      const bool is_typed = V_VT(&own) != VT_EMPTY && V_VT(&own) != VT_ERROR;
      if (is_typed) {
        V_VT(&reference) = static_cast<VARTYPE>(VT_BYREF | V_VT(&own));
        V_BYREF(&reference) = &V_I4(&own);  // the payload; every member of the union starts there
      } else {
        V_VT(&reference) = VT_BYREF | VT_VARIANT;
        V_VARIANTREF(&reference) = &own;
      }
    }

    DISPID put_id = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{passed.data(), nullptr, static_cast<UINT>(count), 0};
    if (new_value != nullptr) {
      parameters.rgdispidNamedArgs = &put_id;
      parameters.cNamedArgs = 1;
    }
    unique_variant answer;
    unique_exception_info info;
    const HRESULT result = dispatch_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                             new_value != nullptr ? nullptr : answer.put(), info.put(), nullptr);
    if (FAILED(result)) raise(result, member, &*info);
    for (std::size_t i = 0; i < arguments.size(); ++i)
      if (arguments[i].by_reference) arguments[i].value = value_of(storage[count - 1 - i].get());
    return value_of(answer.get());
  }

  unique_interface<IDispatch> dispatch_;
  mutable std::map<std::u16string, DISPID, LessIgnoringCase> ids_;
};

}  // namespace

unique_interface<IDispatch> make_dispatch(ObjectRef object) {
  if (const auto* client = dynamic_cast<const AutomationClient*>(object.get())) return client->dispatch();
  return unique_interface<IDispatch>(new DispatchAdapter(std::move(object)));
}

ObjectRef make_object(IDispatch* dispatch) { return std::make_shared<AutomationClient>(dispatch); }

long live_dispatch_objects() noexcept { return live_objects; }

}  // namespace kavo
