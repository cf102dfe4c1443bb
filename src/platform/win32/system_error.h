// System error codes turned into failures, and failures into the HRESULTs that automation clients understand.
#pragma once

#include <windows.h>

#include <string>

#include "platform/failure.h"

namespace kavo {

// The system's own text for an error code or HRESULT, without its line end; "Error N" when it has none.
std::u16string system_text(DWORD code);
// The run-time error number for an error code of the system: 53, 61, 70 ..., 57 (device error) for any other.
FailureNumber number_of_system_error(DWORD code);
// The failure for an error code, with the system's text.
failure system_failure(DWORD code);
[[noreturn]] void throw_last_error();

// A run-time error number n of 1 to 0xFFFF travels as 0x800A0000 + n (how automation hosts recognise theirs, so that
// 0x800A0009 is Err.Number 9); any other number is an HRESULT itself.
HRESULT hresult_of(const failure& error) noexcept;
// The number that a failing HRESULT stands for: the reverse of the above, the automation calls' own errors (438, 450,
// 13 ...), the system errors that have a run-time number, else the HRESULT itself.
std::int32_t number_of_hresult(HRESULT result) noexcept;

}  // namespace kavo
