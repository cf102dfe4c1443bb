// The one place where exceptions end: every COM method and every export runs its body inside guarded().
#pragma once

#include <windows.h>
// windows.h first.
#include <oaidl.h>

#include <string_view>
#include <type_traits>

namespace kavo {

// Turns the exception being handled into an HRESULT and leaves error information (number, source, description) for the
// caller's thread; `interface_id` says whose method failed. The library's own failures get `class_name` as their
// source; what another component reported keeps its own.
HRESULT report_current_exception(REFIID interface_id, std::u16string_view class_name) noexcept;

// Moves what the thread's last failing call left into a late-bound caller's structure; a failure without any error
// information gets the system's text. `result` is what the call returned.
void take_error_info(HRESULT result, EXCEPINFO& info) noexcept;

// Runs a body that returns an HRESULT or nothing (S_OK).
template <typename Body>
HRESULT guarded(REFIID interface_id, std::u16string_view class_name, Body&& body) noexcept {
  try {
    if constexpr (std::is_void_v<decltype(body())>) {
      body();
      return S_OK;
    } else {
      return body();
    }
  } catch (...) {
    return report_current_exception(interface_id, class_name);
  }
}

}  // namespace kavo
