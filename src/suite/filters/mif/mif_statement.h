// Reads parts of MIF statements for the filter.
#pragma once

#include <string_view>

#include "formats/text/ascii.h"
#include "platform/trimmed.h"

namespace kavo::mif {

inline constexpr std::string_view kFont = "Font";
inline constexpr std::string_view kReference = "x-xref";  // the type of a cross-reference's codes

inline bool is_blank(char c) { return c == ' ' || c == '\t'; }

inline std::string_view trimmed(std::string_view text) { return kavo::trimmed(text, " \t\r\n"); }

// What is between the name of a statement and its end.
inline std::string_view word_of(std::string_view statement, std::string_view name) {
  return trimmed(statement.substr(1 + name.size(), statement.size() - name.size() - 2));
}

}  // namespace kavo::mif
