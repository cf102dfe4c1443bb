// Converts between the core's `Value` and the system's VARIANT.
#pragma once

#include "platform/automation.h"
#include "platform/win32/owners.h"

namespace kavo {

// The value that a VARIANT stands for; references (VT_BYREF) are followed. Whole numbers of 8 and 16 bits become 16-bit
// numbers, others that fit become 32-bit numbers, and everything else that is a number, currency or date becomes
// double. Null becomes Empty, IUnknown a late-bound object. Throws `failure` 13 for arrays, records and objects without
// late binding.
Value value_of(const VARIANT& variant);

// Objects travel as IDispatch. Throws std::bad_alloc.
unique_variant variant_of(const Value& value);

// Stores a value where a by-reference argument points to, converted to the type that the caller's variable has.
// Throws `failure` 13 or 6 when it does not convert.
void write_back(const VARIANT& target, const Value& value);

// Converts in place as automation hosts do, in a neutral locale ("1.5" is a number whatever the user's decimal sign).
// Throws `failure` 13 or 6.
void change_type(VARIANT& variant, VARTYPE type);

}  // namespace kavo
