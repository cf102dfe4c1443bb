#include "formats/html/entities.h"

#include <algorithm>
#include <cstdint>

#include "formats/text/ascii.h"
#include "formats/text/text_coding.h"

namespace kavo::html {
namespace {

struct Entity {
  std::string_view name;
  char32_t first;
  char32_t second;  // 0 for none
  bool needs_no_semicolon;
};

constexpr Entity kEntities[] = {
#include "formats/html/entities.inc"
};
static_assert(std::ranges::is_sorted(kEntities, {}, &Entity::name));

constexpr std::size_t kLongestName = [] {
  std::size_t longest = 0;
  for (const Entity& row : kEntities) longest = std::max(longest, row.name.size());
  return longest;
}();
static_assert(kLongestName + 2 <= kLongestReference);

// The shortest name that needs no semicolon.
constexpr std::size_t kShortestLegacy = 2;
constexpr std::size_t kLongestLegacy = [] {
  std::size_t longest = 0;
  for (const Entity& row : kEntities)
    if (row.needs_no_semicolon) longest = std::max(longest, row.name.size());
  return longest;
}();

// What the numbers of C1 control characters mean in pages: the characters of Windows-1252, by the HTML Standard.
constexpr char16_t kC1[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
                              0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
                              0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

const Entity* find_entity(std::string_view name) {
  const auto* const found = std::ranges::lower_bound(kEntities, name, {}, &Entity::name);
  return found != std::end(kEntities) && found->name == name ? found : nullptr;
}

void append_characters(std::string& text, const Entity& entity) {
  append_utf8(text, entity.first);
  if (entity.second != 0) append_utf8(text, entity.second);
}

bool is_name_character(char c) { return is_digit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

int hexadecimal_value(char c) {
  if (is_digit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

Reference read_number(std::string_view bytes) {
  const bool is_hexadecimal = bytes.size() > 2 && (bytes[2] == 'x' || bytes[2] == 'X');
  const std::size_t first = is_hexadecimal ? 3 : 2;
  std::size_t at = first;
  char32_t character = 0;
  for (; at < bytes.size() && at < kLongestReference; ++at) {
    const int digit = hexadecimal_value(bytes[at]);
    if (digit < 0 || (digit > 9 && !is_hexadecimal)) break;
    if (character <= 0x10FFFF) character = character * (is_hexadecimal ? 16 : 10) + static_cast<unsigned>(digit);
  }
  Reference reference;
  if (at == first) return reference;
  reference.length = at < bytes.size() && bytes[at] == ';' ? at + 1 : at;
  if (character >= 0x80 && character < 0xA0) character = kC1[character - 0x80];
  if (character != 0 && character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF))
    append_utf8(reference.text, character);
  return reference;
}

}  // namespace

Reference read_reference(std::string_view bytes, bool in_attribute) {
  bytes = bytes.substr(0, kLongestReference + 1);
  if (bytes.size() > 1 && bytes[1] == '#') return read_number(bytes);
  const auto* const end = std::find_if_not(bytes.begin() + 1, bytes.end(), is_name_character);
  const std::string_view name = bytes.substr(1, static_cast<std::size_t>(end - bytes.begin()) - 1);
  const char next = end == bytes.end() ? '\0' : *end;
  Reference reference;
  if (name.empty()) return reference;
  if (next == ';') {
    if (const Entity* const entity = name.size() <= kLongestName ? find_entity(name) : nullptr) {
      reference.length = name.size() + 2;
      append_characters(reference.text, *entity);
      return reference;
    }
  }
  for (std::size_t size = std::min(name.size(), kLongestLegacy); size >= kShortestLegacy; --size) {
    if (in_attribute && (size < name.size() || next == '=')) continue;
    const Entity* const entity = find_entity(name.substr(0, size));
    if (!entity || !entity->needs_no_semicolon) continue;
    reference.length = size + 1;
    append_characters(reference.text, *entity);
    return reference;
  }
  if (next == ';' && !is_digit(name.front())) reference.length = name.size() + 2;
  return reference;
}

}  // namespace kavo::html
