// UTF-16 text between the core (char16_t) and the system (wchar_t, also 16 bits here). Copies, because the two types
// may not alias each other.
#pragma once

#include <new>
#include <string>
#include <string_view>

#include "platform/win32/owners.h"

namespace kavo {

inline std::wstring to_wide(std::u16string_view text) { return {text.begin(), text.end()}; }
inline std::u16string from_wide(std::wstring_view text) { return {text.begin(), text.end()}; }

// A null BSTR is the empty text, as every automation client expects.
inline std::u16string from_bstr(BSTR text) {
  return text == nullptr ? std::u16string() : from_wide(std::wstring_view(text, SysStringLen(text)));
}

// Never null; throws std::bad_alloc.
inline unique_bstr make_bstr(std::u16string_view text) {
  const std::wstring wide = to_wide(text);
  unique_bstr result(SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size())));
  if (!result) throw std::bad_alloc();
  return result;
}

}  // namespace kavo
