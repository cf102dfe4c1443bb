// UTF-8 to UTF-16 and back, without loss for any byte string.
//
// A byte that is not part of well-formed UTF-8 becomes the lone surrogate U+DC00 + byte and turns back into that byte,
// so that file names and texts that are not valid UTF-8 survive the round trip (known as "surrogateescape").
#pragma once

#include <string>
#include <string_view>

namespace kavo {

std::u16string to_utf16(std::string_view utf8);
// A lone surrogate outside U+DC80..U+DCFF is written as its three-byte (generalised UTF-8) form.
std::string to_utf8(std::u16string_view utf16);

// Upper case of the ASCII letters only; every other unit stays.
std::u16string ascii_upper(std::u16string_view text);
std::u16string ascii_lower(std::u16string_view text);
// Equal when ASCII letters are compared without case.
bool equal_ignoring_ascii_case(std::u16string_view a, std::u16string_view b) noexcept;

}  // namespace kavo
