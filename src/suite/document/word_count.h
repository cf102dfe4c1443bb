// Counting words as translators count them.
#pragma once

#include <cstdint>
#include <string_view>

namespace kavo {

// Runs between white space that hold a letter or a digit; each character of a script without spaces (Chinese, Japanese)
// is one word. `text` in UTF-8.
std::uint64_t word_count(std::string_view text);

}  // namespace kavo
