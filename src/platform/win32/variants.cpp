#include "platform/win32/variants.h"

#include <cstring>
#include <limits>

#include "platform/failure.h"
#include "platform/win32/dispatch.h"
#include "platform/win32/system_error.h"
#include "platform/win32/text.h"

namespace kavo {
namespace {

constexpr LCID kNeutralLocale = LOCALE_INVARIANT;

void check_conversion(HRESULT result) {
  if (result == E_OUTOFMEMORY) throw std::bad_alloc();
  if (FAILED(result)) throw failure(number_of_hresult(result), system_text(static_cast<DWORD>(result)), u"K19FPW");
}

template <typename Whole>
Value value_of_whole(Whole number) {
  if (std::in_range<std::int32_t>(number)) return static_cast<std::int32_t>(number);
  return static_cast<double>(number);
}

Value value_of_unknown(IUnknown* unknown) {
  if (unknown == nullptr) return ObjectRef();
  unique_interface<IDispatch> dispatch;
  const HRESULT result = unknown->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(dispatch.put()));
  if (FAILED(result)) check_conversion(DISP_E_TYPEMISMATCH);
  return make_object(dispatch.get());
}

}  // namespace

void change_type(VARIANT& variant, VARTYPE type) {
  if (V_VT(&variant) == type) return;
  check_conversion(VariantChangeTypeEx(&variant, &variant, kNeutralLocale, VARIANT_ALPHABOOL, type));
}

Value value_of(const VARIANT& variant) {
  unique_variant copy;
  // Follows references at every level; a plain value is copied.
  check_conversion(VariantCopyInd(copy.put(), const_cast<VARIANT*>(&variant)));
  VARIANT& v = *copy;
  switch (V_VT(&v)) {
    case VT_EMPTY:
    case VT_NULL:
      return Empty{};
    case VT_ERROR:
      if (V_ERROR(&v) == DISP_E_PARAMNOTFOUND) return Omitted{};
      return static_cast<std::int32_t>(V_ERROR(&v));
    case VT_BOOL:
      return V_BOOL(&v) != VARIANT_FALSE;
    case VT_I1:
    case VT_UI1:
    case VT_I2:
      change_type(v, VT_I2);
      return static_cast<std::int16_t>(V_I2(&v));
    case VT_UI2:
    case VT_I4:
    case VT_INT:
      change_type(v, VT_I4);
      return static_cast<std::int32_t>(V_I4(&v));
    case VT_UI4:
      return value_of_whole(V_UI4(&v));
    case VT_UINT:
      return value_of_whole(V_UINT(&v));
    case VT_I8:
      return value_of_whole(V_I8(&v));
    case VT_UI8:
      return value_of_whole(V_UI8(&v));
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_DECIMAL:
      change_type(v, VT_R8);
      return V_R8(&v);
    case VT_BSTR:
      return from_bstr(V_BSTR(&v));
    case VT_DISPATCH:
      return V_DISPATCH(&v) == nullptr ? ObjectRef() : make_object(V_DISPATCH(&v));
    case VT_UNKNOWN:
      return value_of_unknown(V_UNKNOWN(&v));
    default:
      check_conversion(DISP_E_TYPEMISMATCH);
      return Empty{};
  }
}

unique_variant variant_of(const Value& value) {
  unique_variant result;
  VARIANT& v = *result;
  if (std::holds_alternative<Omitted>(value)) {
    V_VT(&v) = VT_ERROR;
    V_ERROR(&v) = DISP_E_PARAMNOTFOUND;
  } else if (const bool* flag = std::get_if<bool>(&value)) {
    V_VT(&v) = VT_BOOL;
    V_BOOL(&v) = *flag ? VARIANT_TRUE : VARIANT_FALSE;
  } else if (const std::int16_t* small = std::get_if<std::int16_t>(&value)) {
    V_VT(&v) = VT_I2;
    V_I2(&v) = *small;
  } else if (const std::int32_t* number = std::get_if<std::int32_t>(&value)) {
    V_VT(&v) = VT_I4;
    V_I4(&v) = *number;
  } else if (const double* real = std::get_if<double>(&value)) {
    V_VT(&v) = VT_R8;
    V_R8(&v) = *real;
  } else if (const std::u16string* text = std::get_if<std::u16string>(&value)) {
    V_BSTR(&v) = make_bstr(*text).release();
    V_VT(&v) = VT_BSTR;
  } else if (const ObjectRef* object = std::get_if<ObjectRef>(&value)) {
    V_DISPATCH(&v) = *object ? make_dispatch(*object).release() : nullptr;
    V_VT(&v) = VT_DISPATCH;
  }
  return result;
}

void write_back(const VARIANT& target, const Value& value) {
  if ((V_VT(&target) & VT_BYREF) == 0) return;
  const VARTYPE wanted = static_cast<VARTYPE>(V_VT(&target) & ~VT_BYREF);
  unique_variant source = variant_of(value);
  if (wanted == VT_VARIANT) {
    VARIANT* variable = V_VARIANTREF(&target);
    // A variable of the caller may itself be a reference to the one that is meant.
    if ((V_VT(variable) & VT_BYREF) != 0) return write_back(*variable, value);
    check_conversion(VariantClear(variable));
    *variable = source.release();
    return;
  }
  change_type(*source, wanted);
  const VARIANT& converted = source.get();
  switch (wanted) {
    case VT_BSTR:
      SysFreeString(*V_BSTRREF(&target));
      *V_BSTRREF(&target) = V_BSTR(&converted);
      source.release();
      break;
    case VT_DISPATCH:
    case VT_UNKNOWN: {
      IUnknown* old = *V_UNKNOWNREF(&target);
      *V_UNKNOWNREF(&target) = V_UNKNOWN(&converted);
      source.release();
      if (old != nullptr) old->Release();
      break;
    }
    case VT_I1:
    case VT_UI1:
      *V_UI1REF(&target) = V_UI1(&converted);
      break;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      *V_I2REF(&target) = V_I2(&converted);
      break;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_ERROR:
    case VT_R4:
      std::memcpy(V_BYREF(&target), &V_I4(&converted), 4);
      break;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      std::memcpy(V_BYREF(&target), &V_I8(&converted), 8);
      break;
    case VT_DECIMAL:
      *V_DECIMALREF(&target) = V_DECIMAL(&converted);
      break;
    default:
      check_conversion(DISP_E_TYPEMISMATCH);
  }
}

}  // namespace kavo
