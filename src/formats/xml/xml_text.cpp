#include "formats/xml/xml_text.h"

#include <algorithm>

#include "common/byte_scan.h"
#include "formats/text/ascii.h"

namespace kavo {
namespace {

std::string_view reference_of(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\t':
      return "&#9;";
    case '\n':
      return "&#10;";
    default:
      return "&#13;";
  }
}

template <char... kSpecial>
void append_escaped(std::string& xml, std::string_view text) {
  const char* p = text.data();
  const char* const end = p + text.size();
  while (p != end) {
    const char* const special = find_any<kSpecial...>(p, end);
    xml.append(p, special);
    if (special == end) return;
    xml += reference_of(*special);
    p = special + 1;
  }
}

char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

}  // namespace

void append_xml_text(std::string& xml, std::string_view text) { append_escaped<'&', '<', '>', '\r'>(xml, text); }

void append_xml_attribute(std::string& xml, std::string_view text) {
  append_escaped<'&', '<', '>', '"', '\t', '\n', '\r'>(xml, text);
}

// By RFC 5646: the language in small letters, a script of four letters with a capital, a region of two letters in
// capitals.
std::string bcp47_of(std::string_view suite_code) {
  std::string code;
  for (std::string_view rest = suite_code;;) {
    const std::size_t end = std::min(rest.find_first_of("-_"), rest.size());
    const std::string_view part = rest.substr(0, end);
    const bool is_first = code.empty();
    const bool is_word = !part.empty() && part.size() <= 8 && std::all_of(part.begin(), part.end(), [&](char c) {
      return is_letter(c) || (is_digit(c) && !is_first);
    });
    if (!is_word) return "und";
    if (!is_first) code += '-';
    for (std::size_t i = 0; i < part.size(); ++i) {
      const bool is_capital = !is_first && (part.size() == 2 || (part.size() == 4 && i == 0));
      code += is_capital ? upper(part[i]) : lower(part[i]);
    }
    if (end == rest.size()) return code;
    rest.remove_prefix(end + 1);
  }
}

}  // namespace kavo
