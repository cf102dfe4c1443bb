// Finds what nobody sees in a text: blanks, tabs, line ends and no-break spaces.
#pragma once

#include <cstddef>
#include <string_view>

namespace kavo {

inline constexpr std::string_view kBlanks = " \t\r\n";
inline constexpr std::string_view kNoBreakSpace = "\xC2\xA0";

// How many bytes of blanks a UTF-8 text begins with.
inline std::size_t leading_blanks(std::string_view utf8) {
  std::size_t size = 0;
  for (;;) {
    const std::string_view rest = utf8.substr(size);
    if (rest.starts_with(kNoBreakSpace))
      size += kNoBreakSpace.size();
    else if (!rest.empty() && kBlanks.find(rest[0]) != kBlanks.npos)
      ++size;
    else
      return size;
  }
}

// How many bytes of blanks it ends with.
inline std::size_t trailing_blanks(std::string_view utf8) {
  std::size_t size = utf8.size();
  for (;;) {
    const std::string_view rest = utf8.substr(0, size);
    if (rest.ends_with(kNoBreakSpace))
      size -= kNoBreakSpace.size();
    else if (!rest.empty() && kBlanks.find(rest.back()) != kBlanks.npos)
      --size;
    else
      return utf8.size() - size;
  }
}

inline bool is_blank_text(std::string_view utf8) { return leading_blanks(utf8) == utf8.size(); }

}  // namespace kavo
