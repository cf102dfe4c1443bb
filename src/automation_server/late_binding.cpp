#include "automation_server/late_binding.h"

#include "automation_server/module.h"
#include "platform/automation.h"
#include "platform/failure.h"
#include "platform/win32/guard.h"
#include "platform/win32/system_error.h"
#include "platform/win32/variants.h"

namespace kavo {
namespace {

// Asks the ITypeInfo of a dual interface for its function-table side.
constexpr UINT kTableSide = static_cast<UINT>(-1);

void check(HRESULT result) {
  if (FAILED(result)) throw failure(number_of_hresult(result), system_text(static_cast<DWORD>(result)), u"K19FPW");
}

bool is_left_out(const VARIANT& argument) {
  const VARIANT& value = V_VT(&argument) == (VT_BYREF | VT_VARIANT) ? *V_VARIANTREF(&argument) : argument;
  return V_VT(&value) == VT_ERROR && V_ERROR(&value) == DISP_E_PARAMNOTFOUND;
}

// A reference to the value of a variant, as a function with a by-reference parameter wants it. Every member of the
// variant's union starts at the same place.
VARIANT reference_to(VARIANT& value) {
  VARIANT reference;
  VariantInit(&reference);
  V_VT(&reference) = static_cast<VARTYPE>(VT_BYREF | V_VT(&value));
  V_BYREF(&reference) = &V_I4(&value);
  return reference;
}

void set_argument_error(UINT* bad_argument, UINT index) {
  if (bad_argument != nullptr) *bad_argument = index;
}

// Finds the argument for each parameter. The given arguments come in reverse order, the named ones before all others.
HRESULT place_arguments(const DISPPARAMS& given, std::size_t input_count, std::vector<const VARIANT*>& arguments,
                        UINT* bad_argument) {
  if (given.cArgs != input_count) return DISP_E_BADPARAMCOUNT;
  arguments.assign(input_count, nullptr);
  for (UINT i = 0; i < given.cArgs; ++i) {
    std::size_t place = given.cArgs - 1 - i;
    if (i < given.cNamedArgs) {
      const DISPID name = given.rgdispidNamedArgs[i];
      place = name == DISPID_PROPERTYPUT ? input_count - 1 : static_cast<std::size_t>(name);
    }
    if (place >= input_count || arguments[place] != nullptr) {
      set_argument_error(bad_argument, i);
      return DISP_E_PARAMNOTFOUND;
    }
    arguments[place] = &given.rgvarg[i];
  }
  return S_OK;
}

HRESULT convert_argument(const VARIANT& argument, VARTYPE type, VARIANT& value) {
  if (is_left_out(argument)) return DISP_E_PARAMNOTOPTIONAL;
  if (FAILED(VariantCopyInd(&value, const_cast<VARIANT*>(&argument)))) return DISP_E_TYPEMISMATCH;
  try {
    change_type(value, type);
    return S_OK;
  } catch (const failure& error) {
    return error.is(FailureNumber::kOverflow) ? DISP_E_OVERFLOW : DISP_E_TYPEMISMATCH;
  }
}

}  // namespace

LateBinding::LateBinding(REFIID interface_id) {
  unique_interface<ITypeLib> library;
  check(LoadTypeLibEx(module_path().c_str(), REGKIND_NONE, library.put()));
  check(library->GetTypeInfoOfGuid(interface_id, dispatch_info_.put()));
  HREFTYPE table_side = 0;
  unique_interface<ITypeInfo> table_info;
  check(dispatch_info_->GetRefTypeOfImplType(kTableSide, &table_side));
  check(dispatch_info_->GetRefTypeInfo(table_side, table_info.put()));
  TYPEATTR* attributes = nullptr;
  check(table_info->GetTypeAttr(&attributes));
  const UINT count = attributes->cFuncs;
  table_info->ReleaseTypeAttr(attributes);
  for (UINT index = 0; index < count; ++index) functions_.push_back(read_function(*table_info.get(), index));
}

LateBinding::Function LateBinding::read_function(ITypeInfo& info, UINT index) {
  FUNCDESC* description = nullptr;
  check(info.GetFuncDesc(index, &description));
  Function function{
      description->memid, static_cast<WORD>(description->invkind), static_cast<ULONG_PTR>(description->oVft), {}};
  for (SHORT i = 0; i < description->cParams; ++i) {
    const ELEMDESC& element = description->lprgelemdescParam[i];
    const bool by_reference = element.tdesc.vt == VT_PTR;
    function.parameters.push_back({by_reference ? element.tdesc.lptdesc->vt : element.tdesc.vt, by_reference,
                                   (element.paramdesc.wParamFlags & PARAMFLAG_FRETVAL) != 0});
  }
  info.ReleaseFuncDesc(description);
  return function;
}

HRESULT LateBinding::ids_of_names(LPOLESTR* names, UINT count, DISPID* ids) const noexcept {
  return DispGetIDsOfNames(dispatch_info_.get(), names, count, ids);
}

HRESULT LateBinding::invoke(IDispatch* object, DISPID id, WORD flags, const DISPPARAMS& given, VARIANT* result,
                            EXCEPINFO* info, UINT* bad_argument) const {
  const Function* function = nullptr;
  for (const Function& candidate : functions_)
    if (candidate.id == id && (candidate.kind & flags) != 0) function = &candidate;
  if (function == nullptr) return DISP_E_MEMBERNOTFOUND;
  const std::vector<Parameter>& parameters = function->parameters;
  const std::size_t input_count = function->input_count();

  std::vector<const VARIANT*> arguments;
  const HRESULT placed = place_arguments(given, input_count, arguments, bad_argument);
  if (FAILED(placed)) return placed;
  std::vector<unique_variant> values(parameters.size());
  std::vector<VARIANT> passed(parameters.size());
  std::vector<VARIANT*> passed_pointers(parameters.size());
  std::vector<VARTYPE> passed_types(parameters.size());
  std::vector<Value> before(input_count);
  for (std::size_t i = 0; i < parameters.size(); ++i) {
    VARIANT& value = *values[i];
    if (i < input_count) {
      set_argument_error(bad_argument, static_cast<UINT>(arguments[i] - given.rgvarg));
      const HRESULT converted = convert_argument(*arguments[i], parameters[i].type, value);
      if (FAILED(converted)) return converted;
      before[i] = value_of(value);
    } else {
      V_VT(&value) = parameters[i].type;  // all zero: where the function stores its result
    }
    passed[i] = parameters[i].by_reference ? reference_to(value) : value;
    passed_pointers[i] = &passed[i];
    passed_types[i] = V_VT(&passed[i]);
  }

  SetErrorInfo(0, nullptr);
  VARIANT answer;
  VariantInit(&answer);
  const HRESULT called =
      DispCallFunc(object, function->table_offset, CC_STDCALL, VT_ERROR, static_cast<UINT>(parameters.size()),
                   passed_types.data(), passed_pointers.data(), &answer);
  if (FAILED(called)) return called;
  if (FAILED(V_ERROR(&answer))) {
    if (info == nullptr) return V_ERROR(&answer);
    take_error_info(V_ERROR(&answer), *info);
    return DISP_E_EXCEPTION;
  }

  // Only what the function changed is written back, so that other variables of the caller keep their types.
  for (std::size_t i = 0; i < input_count; ++i) {
    if (!parameters[i].by_reference) continue;
    const Value after = value_of(values[i].get());
    if (after != before[i]) write_back(*arguments[i], after);
  }
  if (result != nullptr && input_count < parameters.size()) *result = values.back().release();
  return S_OK;
}

}  // namespace kavo
