#include "suite/filters/text/line_joint.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "formats/text/ascii.h"
#include "formats/text/columns.h"

namespace kavo {
namespace {

// True for letters and digits, by ASCII below 0x80 and by a rough limit above: other signs below 0xC0 are not letters.
bool is_word_character(char32_t c) {
  return c < 0x80 ? is_letter(static_cast<char>(c)) || is_digit(static_cast<char>(c)) : c >= 0xC0;
}

// Dots of several levels count: "1.2. ", "3.1 ".
std::size_t number_length(std::string_view text) {
  constexpr std::size_t kLongestNumber = 3;
  std::size_t at = 0;
  std::size_t digits = 0;
  bool has_dot = false;
  for (; at < text.size() && (is_digit(text[at]) || (text[at] == '.' && digits != 0)); ++at) {
    digits = text[at] == '.' ? 0 : digits + 1;
    has_dot = has_dot || text[at] == '.';
    if (digits > kLongestNumber) return 0;
  }
  if (at == 0) return 0;
  if (at < text.size() && text[at] == ')') return at + 1;
  return has_dot ? at : 0;
}

std::size_t mark_length(std::string_view text) {
  // The lines of a quoted mail also stand for themselves.
  constexpr std::string_view marks[] = {
      "-", "*", "+", ">", "\xE2\x80\xA2", "\xE2\x80\x93", "\xE2\x80\x94", "\xE2\x97\x8F", "\xE3\x83\xBB"};
  for (const std::string_view mark : marks)
    if (text.starts_with(mark)) return mark.size();
  if (text.starts_with('(')) {
    const std::size_t end = text.substr(0, 6).find(')');
    if (end == std::string_view::npos || end < 2) return 0;
    const std::string_view inside = text.substr(1, end - 1);
    const bool is_number = std::all_of(inside.begin(), inside.end(), is_digit);
    const bool is_letters = std::all_of(inside.begin(), inside.end(), [](char c) { return c >= 'a' && c <= 'z'; });
    return is_number || (is_letters && (end == 2 || inside.find_first_not_of("ivx") == std::string_view::npos))
               ? end + 1
               : 0;
  }
  // A capital with a dot may be an initial.
  if (text.size() > 1 && is_letter(text[0]) && (text[1] == ')' || (text[1] == '.' && text[0] >= 'a'))) return 2;
  return number_length(text);
}

}  // namespace

bool joins_without_blank(char32_t before_last, char32_t last, char32_t after) {
  if (last == U'-') return is_word_character(before_last) && is_word_character(after);
  return is_unspaced(last) && is_unspaced(after);
}

std::size_t bullet_length(std::string_view text) {
  const std::size_t mark = mark_length(text);
  if (mark == 0) return 0;
  std::size_t end = mark;
  while (end < text.size() && (text[end] == ' ' || text[end] == '\t')) ++end;
  return end == mark ? 0 : end;
}

}  // namespace kavo
