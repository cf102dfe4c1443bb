#include "formats/rtf/text_reader.h"

#include <algorithm>

#include "formats/rtf/characters.h"
#include "formats/text/ascii.h"

namespace kavo::rtf {
namespace {

bool is_plain(char c) { return c >= ' ' && c <= '~' && c != '\\' && c != '{' && c != '}'; }
bool is_high_half(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool is_low_half(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// A 16-bit number is written with a sign. Some programs omit the sign, and some write a whole code point.
char32_t unit_of(std::int32_t number) { return static_cast<char32_t>(number < 0 ? number & 0xFFFF : number); }

bool is_unicode_word(const Token& token) { return token.name == "u" && token.has_number; }

}  // namespace

unsigned fallback_of(const Token& uc) { return static_cast<unsigned>(std::clamp(uc.number, 0, 16)); }

bool TextReader::next(TextUnit& unit) {
  if (at_ == bytes_.size()) return false;
  unit.text.clear();
  const char c = bytes_[at_];
  if (is_line_end(c)) return give(unit, TextUnit::Kind::kNothing, behind_line_ends(at_));
  if (is_plain(c)) return plain(unit);
  if (byte_at(at_).value >= 0x80) return coded(unit);
  return c == '\\' ? control(unit) : give(unit, TextUnit::Kind::kInvalid, at_ + 1);
}

bool TextReader::give(TextUnit& unit, TextUnit::Kind kind, std::size_t end) {
  unit.kind = kind;
  unit.bytes = bytes_.substr(at_, end - at_);
  at_ += unit.bytes.size();
  return true;
}

bool TextReader::plain(TextUnit& unit) {
  std::size_t end = at_ + 1;
  while (end < bytes_.size() && is_plain(bytes_[end])) ++end;
  unit.text = bytes_.substr(at_, end - at_);
  return give(unit, TextUnit::Kind::kPlain, end);
}

bool TextReader::control(TextUnit& unit) {
  const std::string_view rest = bytes_.substr(at_);
  if (rest.size() > 1 && is_letter(rest[1])) {
    const Token word = word_at(rest);
    if (word.name == "uc") {
      fallback_ = fallback_of(word);
      return give(unit, TextUnit::Kind::kNothing, at_ + word.bytes.size());
    }
    if (is_unicode_word(word)) return unicode(unit, word.number, at_ + word.bytes.size());
    unit.text = character_of(word);
    return give(unit, unit.text.empty() ? TextUnit::Kind::kInvalid : TextUnit::Kind::kCharacter,
                at_ + word.bytes.size());
  }
  Token symbol;
  symbol.kind = TokenKind::kSymbol;
  symbol.bytes = rest.substr(0, 2);
  unit.text = character_of(symbol);
  std::size_t size = symbol.bytes.size();
  // A character below 0x80 in hexadecimal is itself.
  if (const Byte byte = byte_at(at_); byte.value >= 0 && unit.text.empty()) {
    size = byte.size;
    if (is_xml_character(static_cast<char32_t>(byte.value))) append_utf8(unit.text, static_cast<char32_t>(byte.value));
  }
  return give(unit, unit.text.empty() ? TextUnit::Kind::kInvalid : TextUnit::Kind::kCharacter, at_ + size);
}

// Gathers bytes until they are a character.
bool TextReader::coded(TextUnit& unit) {
  if (is_pair_with_syntax(at_)) {
    bool is_valid = false;
    coding_->decode_one(bytes_.substr(at_, 2), unit.text, is_valid);
    return give(unit, TextUnit::Kind::kCharacter, at_ + 2);
  }
  const std::size_t most = !coding_ ? 0 : coding_->number() == kUtf8CodePage ? 4 : coding_->has_lead_bytes() ? 2 : 1;
  const std::size_t first_end = at_ + byte_at(at_).size;
  std::string gathered;
  std::size_t place = at_;
  while (gathered.size() < most) {
    // A raw byte after a hexadecimal one may begin another character.
    if (place != at_ && bytes_[at_] == '\\' && is_pair_with_syntax(place)) break;
    // The second byte of a raw character may be a backslash.
    const Byte byte = byte_at(place, place == at_ + 1);
    if (byte.value < 0) break;
    gathered += static_cast<char>(byte.value);
    place += byte.size;
    bool valid = false;
    unit.text.clear();
    const std::size_t length = coding_->decode_one(gathered, unit.text, valid);
    if (valid && length == gathered.size() && is_xml_character(utf8_code_point(unit.text)))
      return give(unit, TextUnit::Kind::kCharacter, place);
    place = behind_line_ends(place);
  }
  unit.text.clear();
  return give(unit, TextUnit::Kind::kInvalid, first_end);
}

bool TextReader::unicode(TextUnit& unit, std::int32_t number, std::size_t end) {
  end = behind_fallback(end);
  char32_t code_point = unit_of(number);
  if (char32_t second = 0; is_high_half(code_point) && second_half(end, second))
    code_point = 0x10000 + ((code_point - 0xD800) << 10) + (second - 0xDC00);
  const bool is_valid = is_xml_character(code_point);
  if (is_valid) append_utf8(unit.text, code_point);
  return give(unit, is_valid ? TextUnit::Kind::kCharacter : TextUnit::Kind::kInvalid, end);
}

// Reads the second half of a character and moves `place` past it. When there is none, returns false and changes
// nothing.
bool TextReader::second_half(std::size_t& place, char32_t& half) {
  const unsigned before = fallback_;
  for (std::size_t at = behind_line_ends(place);;) {
    const std::string_view rest = bytes_.substr(at);
    if (rest.size() < 2 || rest[0] != '\\' || !is_letter(rest[1])) break;
    const Token word = word_at(rest);
    at += word.bytes.size();
    if (word.name == "uc") {
      fallback_ = fallback_of(word);
      at = behind_line_ends(at);
      continue;
    }
    half = unit_of(word.number);
    if (!is_unicode_word(word) || !is_low_half(half)) break;
    place = behind_fallback(at);
    return true;
  }
  fallback_ = before;
  return false;
}

TextReader::Byte TextReader::byte_at(std::size_t place, bool is_second) const {
  const std::string_view rest = bytes_.substr(place);
  if (rest.empty() || is_line_end(rest[0])) return {};
  if (rest[0] != '\\') return {static_cast<unsigned char>(rest[0]), 1};
  if (const int value = byte_value(rest); value >= 0) return {value, 4};
  if (rest.size() > 1 && (rest[1] == '\\' || rest[1] == '{' || rest[1] == '}'))
    return {static_cast<unsigned char>(rest[1]), 2};
  return is_second ? Byte{'\\', 1} : Byte{};
}

std::size_t TextReader::behind_line_ends(std::size_t place) const {
  while (place < bytes_.size() && is_line_end(bytes_[place])) ++place;
  return place;
}

bool TextReader::is_pair_with_syntax(std::size_t place) const {
  const std::string_view pair = bytes_.substr(place, 2);
  if (pair.size() < 2 || !coding_ || !coding_->is_lead_byte(static_cast<unsigned char>(pair[0]))) return false;
  if (pair[1] != '\\' && pair[1] != '{' && pair[1] != '}') return false;
  if (byte_value(bytes_.substr(place + 1)) >= 0) return false;
  std::string character;
  bool is_valid = false;
  return coding_->decode_one(pair, character, is_valid) == 2 && is_valid;
}

// The place after what older programs show instead: bytes, or characters with names.
std::size_t TextReader::behind_fallback(std::size_t place) const {
  for (unsigned left = fallback_; left > 0; --left) {
    const std::size_t next = behind_line_ends(place);
    const std::string_view rest = bytes_.substr(next);
    if (rest.empty()) return place;
    // A raw character whose second byte looks like a brace or a backslash is skipped whole, even if fewer bytes are to
    // be skipped.
    if (is_pair_with_syntax(next)) {
      place = next + 2;
      if (left > 1) --left;
      continue;
    }
    if (const Byte byte = byte_at(next); byte.value >= 0) {
      place = next + byte.size;
      continue;
    }
    Token token;
    TokenScanner().next(rest, true, nullptr, token);
    if (character_of(token).empty()) return place;
    place = next + token.bytes.size();
  }
  return place;
}

}  // namespace kavo::rtf
