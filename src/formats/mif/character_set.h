// The characters that `\xNN ` escapes and `<Char NAME>` statements of MIF stand for. The table is made from
// character_set.tsv, which says where it comes from.
#pragma once

#include <span>
#include <string_view>

namespace kavo::mif {

struct CodedCharacter {
  unsigned char code;     // below 0x20, or 0x80 and above
  char16_t character;     // 0 for a code that stands for no text, such as a line break
  std::string_view name;  // in a `Char` statement; "" when it has none
};

// In the order of the codes.
std::span<const CodedCharacter> character_set();

}  // namespace kavo::mif
