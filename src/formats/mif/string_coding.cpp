#include "formats/mif/string_coding.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <optional>
#include <unordered_map>
#include <vector>

#include "common/byte_scan.h"
#include "formats/mif/character_set.h"
#include "formats/mif/escapes.h"

namespace kavo::mif {
namespace {

constexpr unsigned char kTab = 0x08;  // written as \t
constexpr unsigned char kAutomaticHyphen = 0x06;

// The letter after the backslash and the character that it stands for.
constexpr std::string_view kEscapeLetters = "t>qQ\\";
constexpr std::string_view kEscapedCharacters = "\t>'`\\";
constexpr std::string_view kDigits = "0123456789abcdef";

constexpr std::string_view kBlankCharacters[] = {
    " ", "\t", "\n", "\r", "\xC2\xA0", "\xE2\x80\x87", "\xE2\x80\x89", "\xE2\x80\x82", "\xE2\x80\x83"};

std::optional<unsigned> hexadecimal(std::string_view digits, std::size_t count) {
  digits = digits.substr(0, count);
  unsigned value = 0;
  const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
  if (error != std::errc() || digits.size() != count || stop != digits.data() + count) return std::nullopt;
  return value;
}

// Reads `\uNNNN`, or two of them for a character beyond U+FFFF.
std::size_t unicode_escape(std::string_view text, std::string& utf8) {
  const auto unit_at = [&](std::size_t at) -> std::optional<unsigned> {
    if (!text.substr(std::min(at, text.size())).starts_with("\\u")) return std::nullopt;
    return hexadecimal(text.substr(at + 2), 4);
  };
  const auto first = unit_at(0);
  if (!first || (*first >= 0xDC00 && *first <= 0xDFFF)) return 0;
  if (*first < 0xD800 || *first > 0xDBFF) {
    append_utf8(utf8, *first);
    return 6;
  }
  const auto second = unit_at(6);
  if (!second || *second < 0xDC00 || *second > 0xDFFF) return 0;
  append_utf8(utf8, 0x10000 + ((char32_t{*first} - 0xD800) << 10) + (*second - 0xDC00));
  return 12;
}

// The character in UTF-8; "" for a code that is not text.
std::string character_of_byte(unsigned char byte) {
  static const auto characters = [] {
    std::array<char16_t, 256> all{};
    for (unsigned code = 0x20; code < 0x80; ++code) all[code] = static_cast<char16_t>(code);
    for (const CodedCharacter& row : character_set()) all[row.code] = row.character;
    return all;
  }();
  std::string text;
  if (characters[byte] != 0) append_utf8(text, characters[byte]);
  return text;
}

// The character's byte in the format's own set; 0 when the set lacks it. If two bytes stand for one character, the
// later one counts.
unsigned char byte_of_character(std::string_view utf8) {
  static const auto bytes = [] {
    std::unordered_map<char32_t, unsigned char> map;
    for (const CodedCharacter& row : character_set())
      if (row.code >= 0x80) map[row.character] = row.code;
    return map;
  }();
  const auto found = bytes.find(utf8_code_point(utf8));
  return found == bytes.end() ? 0 : found->second;
}

std::vector<NamedCharacter> make_named_characters() {
  std::vector<NamedCharacter> all;
  for (const CodedCharacter& row : character_set()) {
    if (row.name.empty() || row.character == 0) continue;
    NamedCharacter& named = all.emplace_back();
    named.name = row.name;
    append_utf8(named.text, row.character);
    if (row.code < 0x20 && row.code != kTab) append_byte_escape(row.code, named.escape);
  }
  return all;
}
const std::vector<NamedCharacter>& named_characters() {
  static const std::vector<NamedCharacter> all = make_named_characters();
  return all;
}

}  // namespace

ByteEscape byte_escape(std::string_view text) {
  if (!text.starts_with("\\x")) return {};
  const auto byte = hexadecimal(text.substr(2), 2);
  if (!byte) return {};
  return {static_cast<unsigned char>(*byte), text.substr(4, 1) == " " ? std::size_t{5} : std::size_t{4}};
}

void append_byte_escape(unsigned char byte, std::string& value) {
  value += {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 0xF], ' '};
}

const NamedCharacter* find_named_character(std::string_view name) {
  const auto found = std::ranges::find(named_characters(), name, &NamedCharacter::name);
  return found == named_characters().end() ? nullptr : &*found;
}

const NamedCharacter* find_special_character(std::string_view utf8) {
  // Quick check: every special character begins with one of these.
  if (!utf8.starts_with('\xC2') && !utf8.starts_with("\xE2\x80")) return nullptr;
  for (const NamedCharacter& row : named_characters())
    if (!row.escape.empty() && row.text == utf8) return &row;
  return nullptr;
}

StringCoding::StringCoding(unsigned code_page, bool is_utf8) : bytes_(code_page), is_utf8_(is_utf8) {
  for (unsigned byte = 0x80; byte < 0x100; ++byte)
    is_double_byte_ = is_double_byte_ || bytes_.is_lead_byte(static_cast<unsigned char>(byte));
}

bool StringCoding::append(std::string_view character, std::string& value) const {
  if (character.size() == 1) {
    const std::size_t place = kEscapedCharacters.find(character.front());
    if (place == std::string_view::npos) {
      value += character;
    } else {
      value += '\\';
      value += kEscapeLetters[place];
    }
    return true;
  }
  if (const NamedCharacter* const special = find_special_character(character)) {
    value += special->escape;
    return true;
  }
  if (is_utf8_ || is_double_byte_) {
    bool is_known = true;
    bytes_.encode(character, value, [&](std::string_view, std::string&) { is_known = false; });
    if (is_known || is_utf8_) return is_known;
  }
  const unsigned char byte = byte_of_character(character);
  if (byte == 0) return false;
  append_byte_escape(byte, value);
  return true;
}

void StringCoding::append_unicode_escape(std::string_view character, std::string& value) {
  const auto append_unit = [&value](char32_t unit) {
    value += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) value += kDigits[unit >> shift & 0xF];
  };
  const char32_t code_point = utf8_code_point(character);
  if (code_point > 0xFFFF) {
    append_unit(0xD800 + ((code_point - 0x10000) >> 10));
    append_unit(0xDC00 + ((code_point - 0x10000) & 0x3FF));
  } else {
    append_unit(code_point);
  }
}

bool StringCoding::joins_escapes(std::string_view written) const {
  const ByteEscape escape = byte_escape(written);
  return escape.length != 0 && bytes_.is_lead_byte(escape.byte);
}

bool StringReader::next(StringPart& part) {
  if (rest_.empty()) return false;
  part.text.clear();
  std::size_t size = find_special();
  if (size != 0) {
    part.kind = StringPart::Kind::kRun;
  } else if (rest_.front() != '\\') {
    size = rest_.starts_with("\r\n") ? 2 : 1;
    part.kind = StringPart::Kind::kBreak;
  } else {
    size = escape(part);
  }
  part.bytes = rest_.substr(0, size);
  rest_.remove_prefix(size);
  return true;
}

// The first backslash or line end that is not part of a character.
std::size_t StringReader::find_special() const {
  const char* const begin = rest_.data();
  const char* const end = begin + rest_.size();
  const char* p = find_any<'\\', '\r', '\n'>(begin, end);
  if (!coding_.is_double_byte()) return static_cast<std::size_t>(p - begin);
  for (p = begin; p != end && *p != '\\' && *p != '\r' && *p != '\n'; ++p)
    if (coding_.bytes().is_lead_byte(static_cast<unsigned char>(*p)) && end - p > 1 && p[1] != '\r' && p[1] != '\n')
      ++p;
  return static_cast<std::size_t>(p - begin);
}

std::size_t StringReader::escape(StringPart& part) const {
  part.kind = StringPart::Kind::kText;
  if (rest_.size() == 1) {
    part.text = '\\';
    return 1;
  }
  const char letter = rest_[1];
  if (const std::size_t place = kEscapeLetters.find(letter); place != std::string_view::npos) {
    part.text = kEscapedCharacters[place];
    return 2;
  }
  if (const std::size_t length = unicode_escape(rest_, part.text)) return length;
  const ByteEscape first = byte_escape(rest_);
  if (first.length != 0 && coding_.bytes().is_lead_byte(first.byte)) {
    const ByteEscape second = byte_escape(rest_.substr(first.length));
    const char pair[] = {static_cast<char>(first.byte), static_cast<char>(second.byte)};
    bool is_valid = false;
    if (second.length != 0 && coding_.bytes().decode_one({pair, 2}, part.text, is_valid) == 2 && is_valid)
      return first.length + second.length;
    part.text.clear();
  }
  if (first.length != 0) part.text = character_of_byte(first.byte);
  if (!part.text.empty()) return first.length;
  part.kind = first.length != 0 && first.byte == kAutomaticHyphen ? StringPart::Kind::kHyphen : StringPart::Kind::kCode;
  if (first.length != 0) return first.length;
  // Takes the backslash and the character after it, which may have several bytes.
  std::string ignored;
  bool is_valid = false;
  return 1 + coding_.bytes().decode_one(rest_.substr(1), ignored, is_valid);
}

std::string decode_string(std::string_view value, const StringCoding& coding) {
  std::string text;
  StringReader reader(value, coding);
  for (StringPart part; reader.next(part);) {
    if (part.kind == StringPart::Kind::kText) text += part.text;
    if (part.kind == StringPart::Kind::kBreak) text += ' ';
    if (part.kind != StringPart::Kind::kRun) continue;
    for (std::string_view run = part.bytes; !run.empty();) {
      run.remove_prefix(coding.bytes().decode_run(run, text));
      std::string ignored;
      bool is_valid = false;
      if (!run.empty()) run.remove_prefix(coding.bytes().decode_one(run, ignored, is_valid));
    }
  }
  return text;
}

bool is_blank_character(std::string_view utf8) {
  return std::find(std::begin(kBlankCharacters), std::end(kBlankCharacters), utf8) != std::end(kBlankCharacters);
}

bool is_visible_string(std::string_view value, const StringCoding& coding) {
  // Quick check: nearly all values begin with a letter.
  if (!value.empty() && value.front() > ' ' && value.front() != '\\' && value.front() != '\x7F') return true;
  const std::string text = decode_string(value, coding);
  for (std::string_view rest = text; !rest.empty();) {
    const std::size_t length = utf8_character_length(rest);
    const std::string_view character = rest.substr(0, length);
    if (!is_blank_character(character) && is_xml_character(utf8_code_point(character))) return true;
    rest.remove_prefix(length);
  }
  return false;
}

}  // namespace kavo::mif
