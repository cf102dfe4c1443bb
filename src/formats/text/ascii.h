// Classes of ASCII characters. No byte beyond ASCII belongs to any of them, whatever the locale.
#pragma once

namespace kavo {

constexpr bool is_digit(char c) { return c >= '0' && c <= '9'; }
constexpr bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
constexpr bool is_line_end(char c) { return c == '\r' || c == '\n'; }
constexpr char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

}  // namespace kavo
