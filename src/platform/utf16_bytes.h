// UTF-16 as bytes, the lower byte of each unit first: the form of registry values and of Windows profile files.
#pragma once

#include <string>
#include <string_view>

namespace kavo {

void append_utf16_bytes(std::string& bytes, std::u16string_view text);
// A byte after the last whole unit does not count.
std::u16string from_utf16_bytes(std::string_view bytes);

}  // namespace kavo
