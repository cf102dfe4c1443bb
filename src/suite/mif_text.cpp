#include "suite/mif_text.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>
#include <unordered_map>

#include "common/byte_scan.h"
#include "suite/euc_japanese.h"

namespace kavo::maker {
namespace {

constexpr int kFirstUtf8Version = 8;
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// 0x80 to 0xFF of the format's own character set, as documented for Windows and UNIX. Early Macintosh versions had
// other signs in a few of these places; what is read here as one sign is written as the same byte again.
constexpr char16_t kUpperHalf[] =
    u"ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü†°¢£§•¶ß®©™´¨¦ÆØ×±ðŠ¥µ¹²³¼½ªº¾æø¿¡¬ÐƒÝý«»…þÀÃÕŒœ–—“”‘’÷ÞÿŸ⁄¤‹›ﬁﬂ‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔš"
    u"ÒÚÛÙı"
    u"ˆ˜¯˘˙˚¸˝˛ˇ";
static_assert(std::size(kUpperHalf) == 128 + 1);

// What a MIFEncoding statement holds, in the coding that it stands for: "Japanese", "Chinese", "Korean".
struct DeclaredCoding {
  std::string_view word;
  unsigned code_page;
};
constexpr DeclaredCoding kDeclaredCodings[] = {
    {"\x93\xFA\x96\x7B\x8C\xEA", 932}, {"\xD6\xD0\xCE\xC4", 936}, {"\xA4\xA4\xA4\xE5", 950},
    {"\xC7\xD1\xB1\xB9\xBE\xEE", 949}, {"\xC7\xD1\xB1\xDB", 949}, {"\xC6\xFC\xCB\xDC\xB8\xEC", kEucJapanese},
};

constexpr NamedCharacter kNamedCharacters[] = {
    {"Tab", "\t", ""},
    {"HardSpace", "\xC2\xA0", "\\x11 "},
    {"HardHyphen", "\xE2\x80\x91", "\\x15 "},
    {"DiscHyphen", "\xC2\xAD", "\\x04 "},
    {"NumberSpace", "\xE2\x80\x87", "\\x10 "},
    {"ThinSpace", "\xE2\x80\x89", "\\x12 "},
    {"EnSpace", "\xE2\x80\x82", "\\x13 "},
    {"EmSpace", "\xE2\x80\x83", "\\x14 "},
    {"Cent", "\xC2\xA2", ""},
    {"Pound", "\xC2\xA3", ""},
    {"Yen", "\xC2\xA5", ""},
    {"EnDash", "\xE2\x80\x93", ""},
    {"EmDash", "\xE2\x80\x94", ""},
    {"Dagger", "\xE2\x80\xA0", ""},
    {"DoubleDagger", "\xE2\x80\xA1", ""},
    {"Bullet", "\xE2\x80\xA2", ""},
};

// The letter behind the backslash and the character that it stands for.
constexpr std::string_view kEscapeLetters = "t>qQ\\";
constexpr std::string_view kEscapedCharacters = "\t>'`\\";

constexpr std::string_view kBlankCharacters[] = {
    " ", "\t", "\n", "\r", "\xC2\xA0", "\xE2\x80\x87", "\xE2\x80\x89", "\xE2\x80\x82", "\xE2\x80\x83"};

std::optional<unsigned> hexadecimal(std::string_view digits, std::size_t count) {
  digits = digits.substr(0, count);
  unsigned value = 0;
  const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
  if (error != std::errc() || digits.size() != count || stop != digits.data() + count) return std::nullopt;
  return value;
}

// `\xNN` and the blank behind it, which is a part of it.
struct ByteEscape {
  unsigned char byte = 0;
  std::size_t length = 0;  // 0 for something else
};
ByteEscape byte_escape(std::string_view text) {
  if (!text.starts_with("\\x")) return {};
  const auto byte = hexadecimal(text.substr(2), 2);
  if (!byte) return {};
  return {static_cast<unsigned char>(*byte), text.substr(4, 1) == " " ? std::size_t{5} : std::size_t{4}};
}

// `\uNNNN`, two of them for a character beyond the first 65536.
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

std::string character_of_byte(unsigned char byte) {
  std::string text;
  if (byte >= 0x80) {
    append_utf8(text, kUpperHalf[byte - 0x80]);
  } else if (byte >= 0x20) {
    text = static_cast<char>(byte);
  } else if (byte == 0x08) {  // 0x09 is a forced return, which stays as it is written
    text = "\t";
  } else {
    for (const NamedCharacter& named : kNamedCharacters)
      if (!named.escape.empty() && byte_escape(named.escape).byte == byte) text = named.text;
  }
  return text;
}

// The byte of a character in the format's own set, 0 for one that it lacks.
unsigned char byte_of_character(std::string_view utf8) {
  static const auto bytes = [] {
    std::unordered_map<char32_t, unsigned char> map;
    for (unsigned i = 0; i < 128; ++i) map.emplace(kUpperHalf[i], static_cast<unsigned char>(0x80 + i));
    return map;
  }();
  const auto found = bytes.find(utf8_code_point(utf8));
  return found == bytes.end() ? 0 : found->second;
}

std::string unescaped(std::string_view value) {
  std::string bytes;
  for (std::size_t at = 0; at < value.size();) {
    const ByteEscape escape = byte_escape(value.substr(at));
    bytes += escape.length != 0 ? static_cast<char>(escape.byte) : value[at];
    at += std::max<std::size_t>(escape.length, 1);
  }
  return bytes;
}

std::optional<unsigned> declared_code_page(std::string_view beginning) {
  constexpr std::string_view statement = "<MIFEncoding";
  const std::size_t at = beginning.find(statement);
  if (at == std::string_view::npos) return std::nullopt;
  const std::string_view rest = beginning.substr(at + statement.size());
  const std::string value = unescaped(rest.substr(0, rest.find('>')));
  for (const DeclaredCoding& declared : kDeclaredCodings)
    if (value.find(declared.word) != std::string::npos) return declared.code_page;
  return std::nullopt;
}

}  // namespace

MifTextCoding coding_of(std::string_view beginning, unsigned source_code_page) {
  MifTextCoding coding;
  if (beginning.starts_with(kUtf8Mark)) {
    coding.mark_size = kUtf8Mark.size();
    return coding;
  }
  for (const std::string_view opening : {"<MIFFile", "<Book"}) {
    if (!beginning.starts_with(opening)) continue;
    std::string_view version = beginning.substr(opening.size());
    version.remove_prefix(std::min(version.find_first_not_of(" \t"), version.size()));
    int number = 0;
    std::from_chars(version.data(), version.data() + version.size(), number);
    if (number >= kFirstUtf8Version) return coding;
  }
  coding.is_utf8 = false;
  coding.code_page = declared_code_page(beginning).value_or(source_code_page);
  return coding;
}

const NamedCharacter* find_named_character(std::string_view name) {
  const auto* const found = std::find_if(std::begin(kNamedCharacters), std::end(kNamedCharacters),
                                         [&](const NamedCharacter& row) { return row.name == name; });
  return found == std::end(kNamedCharacters) ? nullptr : found;
}

const NamedCharacter* find_special_character(std::string_view utf8) {
  // All of them begin with one of these.
  if (!utf8.starts_with('\xC2') && !utf8.starts_with("\xE2\x80")) return nullptr;
  const auto* const found =
      std::find_if(std::begin(kNamedCharacters), std::end(kNamedCharacters),
                   [&](const NamedCharacter& row) { return !row.escape.empty() && row.text == utf8; });
  return found == std::end(kNamedCharacters) ? nullptr : found;
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
  constexpr std::string_view digits = "0123456789abcdef";
  value += {'\\', 'x', digits[byte >> 4], digits[byte & 0xF], ' '};
  return true;
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

// The first backslash or line end that is no part of a character.
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
  part.kind = StringPart::Kind::kCode;
  if (first.length != 0) return first.length;
  // The backslash and what it stands before, which may be a character of several bytes.
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
  // Nearly all begin with a letter.
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

}  // namespace kavo::maker
