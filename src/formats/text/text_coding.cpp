#include "formats/text/text_coding.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "formats/text/euc_japanese.h"
#include "platform/failure.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

constexpr char32_t kInvalid = 0xFFFFFFFF;

// The first byte that is not plain ASCII. A control character other than tab and line ends is not plain either, since
// no text may contain it.
const char* skip_ascii(const char* p, const char* end) {
  // Takes eight bytes at a time. Plain ones have no top bit, and subtracting 0x20 from them borrows nowhere.
  constexpr std::uint64_t tops = 0x8080808080808080;
  constexpr std::uint64_t blanks = 0x2020202020202020;
  for (;; ++p) {
    for (; end - p >= 8; p += 8) {
      std::uint64_t eight;
      std::memcpy(&eight, p, 8);
      if (((eight | (eight - blanks)) & tops) != 0) break;
    }
    if (p == end) return p;
    const auto byte = static_cast<unsigned char>(*p);
    if (byte >= 0x80 || (byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r')) return p;
  }
}

unsigned unit_at(std::string_view bytes, std::size_t at, bool big_endian) {
  const auto first = static_cast<unsigned char>(bytes[at]);
  const auto second = static_cast<unsigned char>(bytes[at + 1]);
  return big_endian ? first << 8 | second : second << 8 | first;
}

bool is_high_half(unsigned unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool is_low_half(unsigned unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

void append_unit(std::string& bytes, unsigned unit, bool big_endian) {
  const char high = static_cast<char>(unit >> 8);
  const char low = static_cast<char>(unit & 0xFF);
  bytes += big_endian ? high : low;
  bytes += big_endian ? low : high;
}

}  // namespace

// Characters of the code page, fetched when first needed; 0 stands for "not fetched yet".
struct TextCoding::Tables {
  explicit Tables(std::unique_ptr<CodePage> used) : page(std::move(used)) {
    for (unsigned byte = 0; byte < 256; ++byte) single[byte] = ask(std::string(1, static_cast<char>(byte)));
  }

  // Asks the system for the character of these bytes. It counts only if it converts back to the same bytes.
  char32_t ask(const std::string& character) const {
    const std::u16string unit = page->decode(character);
    if (unit.size() != 1 || (unit[0] >= 0xD800 && unit[0] <= 0xDFFF)) return kInvalid;
    return page->encode(unit) == character ? unit[0] : kInvalid;
  }

  char32_t pair(unsigned char lead, unsigned char trail) {
    auto& row = rows[lead];
    if (!row) row = std::make_unique<std::array<char32_t, 256>>();
    char32_t& known = (*row)[trail];
    if (known == 0) known = ask({static_cast<char>(lead), static_cast<char>(trail)});
    return known;
  }

  // The one or two bytes of the character; kMissing when the code page lacks it.
  static constexpr std::uint32_t kMissing = 0xFFFFFFFF;
  std::uint32_t encoded(char32_t character) {
    if (character > 0xFFFF) return kMissing;
    auto& row = bytes[character / 256];
    if (!row) row = std::make_unique<std::array<std::uint32_t, 256>>();
    std::uint32_t& known = (*row)[character % 256];
    if (known == 0) {
      const std::u16string unit(1, static_cast<char16_t>(character));
      const std::string code = page->encode(unit);
      const bool is_right = !code.empty() && code.size() <= 2 && page->decode(code) == unit;
      known = !is_right          ? kMissing
              : code.size() == 1 ? static_cast<unsigned char>(code[0])
                                 : static_cast<unsigned char>(code[0]) << 8 | static_cast<unsigned char>(code[1]);
    }
    return known;
  }

  std::unique_ptr<CodePage> page;
  std::array<char32_t, 256> single;
  std::array<std::unique_ptr<std::array<char32_t, 256>>, 256> rows;
  std::array<std::unique_ptr<std::array<std::uint32_t, 256>>, 256> bytes;
};

TextCoding::TextCoding(unsigned number) : number_(number) {
  if (is_utf16() || number_ == kUtf8CodePage) return;
  tables_ =
      std::make_unique<Tables>(number == kEucJapanese ? make_euc_japanese() : make_code_page(std::to_string(number)));
  for (unsigned byte = 0; byte < 256; ++byte) {
    is_lead_[byte] = tables_->page->is_lead_byte(static_cast<unsigned char>(byte));
    has_lead_bytes_ = has_lead_bytes_ || is_lead_[byte];
  }
}

TextCoding::~TextCoding() = default;

std::size_t TextCoding::decode_one(std::string_view bytes, std::string& utf8, bool& valid) const {
  valid = true;
  const auto first = static_cast<unsigned char>(bytes.front());
  if (is_utf16()) {
    const bool big_endian = number_ == kUtf16BigEndian;
    valid = bytes.size() >= 2;
    if (!valid) return 1;
    const unsigned unit = unit_at(bytes, 0, big_endian);
    if (is_high_half(unit) && bytes.size() >= 4 && is_low_half(unit_at(bytes, 2, big_endian))) {
      append_utf8(utf8, 0x10000 + ((unit - 0xD800) << 10) + (unit_at(bytes, 2, big_endian) - 0xDC00));
      return 4;
    }
    valid = unit < 0xD800 || unit > 0xDFFF;
    if (valid) append_utf8(utf8, unit);
    return 2;
  }
  if (!tables_) {
    const std::size_t length = utf8_character_length(bytes);
    valid = length != 0;
    utf8 += bytes.substr(0, length);
    return valid ? length : 1;
  }
  if (number_ == kEucJapanese && first == kEucThreeBytes) {
    valid = false;
    return std::min<std::size_t>(3, bytes.size());
  }
  std::size_t length = 1;
  char32_t character = tables_->single[first];
  if (is_lead_[first]) {
    character = kInvalid;
    if (bytes.size() >= 2) character = tables_->pair(first, static_cast<unsigned char>(bytes[1]));
    length = character == kInvalid ? 1 : 2;
  }
  valid = character != kInvalid;
  if (valid) append_utf8(utf8, character);
  return length;
}

std::size_t TextCoding::decode_run(std::string_view bytes, std::string& utf8) const {
  const char* const begin = bytes.data();
  const char* const end = begin + bytes.size();
  const char* p = begin;
  while (p != end) {
    if (!is_utf16()) {
      const char* const plain = skip_ascii(p, end);
      utf8.append(p, plain);
      p = plain;
      if (p == end || static_cast<unsigned char>(*p) < 0x20) break;
    }
    const std::size_t before = utf8.size();
    bool valid = false;
    const std::size_t length = decode_one({p, static_cast<std::size_t>(end - p)}, utf8, valid);
    if (valid && !is_xml_character(utf8_code_point(std::string_view(utf8).substr(before)))) {
      utf8.resize(before);
      valid = false;
    }
    if (!valid) break;
    p += length;
  }
  return static_cast<std::size_t>(p - begin);
}

std::size_t TextCoding::incomplete_tail(std::string_view bytes) const {
  if (is_utf16()) {
    const std::size_t odd = bytes.size() % 2;
    if (bytes.size() < 2) return odd;
    const bool cut = is_high_half(unit_at(bytes, bytes.size() - odd - 2, number_ == kUtf16BigEndian));
    return odd + (cut ? 2 : 0);
  }
  if (tables_) return tables_->page->incomplete_tail(bytes);
  // A character has up to four bytes, so the first byte of one that is cut off is among the last three.
  for (std::size_t back = 1; back <= 3 && back <= bytes.size(); ++back) {
    const auto byte = static_cast<unsigned char>(bytes[bytes.size() - back]);
    if ((byte & 0xC0) == 0x80) continue;
    const std::size_t length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC2 ? 2 : 1;
    return back < length ? back : 0;
  }
  return 0;
}

void TextCoding::encode(std::string_view utf8, std::string& bytes, const Missing& missing) const {
  if (!is_utf16() && !tables_) {
    bytes += utf8;
    return;
  }
  const char* p = utf8.data();
  const char* const end = p + utf8.size();
  while (p != end) {
    if (tables_) {
      const char* const plain = skip_ascii(p, end);
      bytes.append(p, plain);
      p = plain;
      if (p == end) return;
    }
    const std::size_t length = utf8_character_length({p, static_cast<std::size_t>(end - p)});
    const std::string_view character(p, length == 0 ? 1 : length);
    p += character.size();
    if (length == 0) {
      missing(character, bytes);
      continue;
    }
    const char32_t code_point = utf8_code_point(character);
    if (is_utf16()) {
      const bool big_endian = number_ == kUtf16BigEndian;
      if (code_point > 0xFFFF) {
        append_unit(bytes, 0xD800 + ((code_point - 0x10000) >> 10), big_endian);
        append_unit(bytes, 0xDC00 + ((code_point - 0x10000) & 0x3FF), big_endian);
      } else {
        append_unit(bytes, code_point, big_endian);
      }
      continue;
    }
    const std::uint32_t code = code_point == 0 ? 0 : tables_->encoded(code_point);
    if (code == Tables::kMissing) {
      missing(character, bytes);
      continue;
    }
    if (code > 0xFF) bytes += static_cast<char>(code >> 8);
    bytes += static_cast<char>(code & 0xFF);
  }
}

bool is_xml_character(char32_t code_point) {
  if (code_point < 0x20) return code_point == '\t' || code_point == '\n' || code_point == '\r';
  return code_point <= 0x10FFFF && (code_point < 0xD800 || code_point > 0xDFFF) && code_point != 0xFFFE &&
         code_point != 0xFFFF;
}

}  // namespace kavo
