// The characters that `\xNN ` escapes and `<Char NAME>` statements of MIF mean. The rows come from character_set.tsv,
// which names their source.
#pragma once

#include <span>
#include <string_view>

namespace kavo::mif {

struct CodedCharacter {
  unsigned char code;     // below 0x20, or 0x80 and above
  char16_t character;     // 0 for a code that stands for no text, such as a line break
  std::string_view name;  // in a `Char` statement; "" when it has none
};

// Sorted by code.
std::span<const CodedCharacter> character_set();

}  // namespace kavo::mif
