#include "formats/script/literal_value.h"

#include <algorithm>

namespace kavo::script {
namespace {

struct Escape {
  char letter;
  char meaning;
};
constexpr Escape kJavaScriptEscapes[] = {{'n', '\n'}, {'t', '\t'}, {'r', '\r'}, {'b', '\b'}, {'f', '\f'}, {'v', '\v'}};
constexpr Escape kJavaEscapes[] = {{'n', '\n'}, {'t', '\t'}, {'r', '\r'},  {'b', '\b'}, {'f', '\f'},
                                   {'s', ' '},  {'"', '"'},  {'\'', '\''}, {'\\', '\\'}};
constexpr Escape kPhpEscapes[] = {{'n', '\n'}, {'t', '\t'}, {'r', '\r'},   {'v', '\v'},
                                  {'f', '\f'}, {'$', '$'},  {'e', '\x1B'}, {'\\', '\\'}};

template <std::size_t kCount>
const Escape* find(const Escape (&rows)[kCount], char letter) {
  for (const Escape& row : rows)
    if (row.letter == letter) return &row;
  return nullptr;
}

// The escapes of an unknown language are interpreted neither in reading nor in writing.
bool is_raw(const Quoting& quoting) {
  return quoting.form == LiteralForm::kNowdoc || quoting.language == Language::kUnknown;
}

unsigned digit_value(char c) {
  if (is_digit(c)) return static_cast<unsigned>(c - '0');
  return static_cast<unsigned>(lower(c) - 'a' + 10);
}

bool is_high_half(char32_t c) { return c >= 0xD800 && c < 0xDC00; }
bool is_low_half(char32_t c) { return c >= 0xDC00 && c < 0xE000; }

}  // namespace

bool LiteralReader::next(Character& character) {
  if (at_ >= text_.size()) return false;
  character = Character();
  character.begin = at_;
  buffer_.clear();
  const char c = text_[at_];
  if (quoting_.language == Language::kVbScript && c == '"' && at(at_ + 1) == '"') {
    take('"', at_ + 2, character);
  } else if (c == '\\' && quoting_.language == Language::kUnknown && at_ + 1 < text_.size()) {
    // A backslash and what it escapes: no text that a translator may change.
    bool valid = true;
    at_ += 1 + coding_.decode_one(text_.substr(at_ + 1), buffer_, valid);
    character.is_text = false;
  } else if (c != '\\' || quoting_.language == Language::kVbScript || is_raw(quoting_) || !escape(character)) {
    bool valid = true;
    at_ += coding_.decode_one(text_.substr(at_), buffer_, valid);
    character.is_text = valid;
  }
  character.utf8 = buffer_;
  character.end = at_;
  return true;
}

void LiteralReader::take(char32_t value, std::size_t end, Character& character) {
  if (value > 0x10FFFF || is_high_half(value) || is_low_half(value))
    character.is_text = false;
  else
    append_utf8(buffer_, value);
  at_ = end;
}

// Called at a backslash. False when the backslash is an ordinary character.
bool LiteralReader::escape(Character& character) {
  const char letter = at(at_ + 1);
  const std::size_t behind = at_ + 2;
  if (behind > text_.size()) return false;
  const bool is_php = quoting_.language == Language::kPhp;
  if (is_php && quoting_.form == LiteralForm::kSingle) {
    if (letter != '\'' && letter != '\\') return false;
    take(static_cast<unsigned char>(letter), behind, character);
    return true;
  }
  const Escape* row = is_php                                       ? find(kPhpEscapes, letter)
                      : quoting_.language == Language::kJavaScript ? find(kJavaScriptEscapes, letter)
                                                                   : find(kJavaEscapes, letter);
  if (row != nullptr) {
    take(static_cast<unsigned char>(row->meaning), behind, character);
    return true;
  }
  if (letter == 'u' && unicode(behind, character)) return true;
  if (letter >= '0' && letter <= '7') return octal(at_ + 1, character);
  if (is_php) {
    char32_t value = 0;
    std::size_t end = 0;
    if (letter == 'x' && number(behind, 1, 2, 16, value, end)) {
      take(value, end, character);
      if (value >= 0x80) character.is_text = false;  // the escape stands for a byte, not for a character
      return true;
    }
    const char quote = quoting_.form == LiteralForm::kDouble    ? '"'
                       : quoting_.form == LiteralForm::kCommand ? '`'
                                                                : '\0';
    if (quote == '\0' || letter != quote) return false;
    take(static_cast<unsigned char>(quote), behind, character);
    return true;
  }
  if (ends_line(letter)) {
    at_ = behind + (letter == '\r' && at(behind) == '\n' ? 1 : 0);
    return true;
  }
  if (quoting_.language != Language::kJavaScript) return false;
  char32_t value = 0;
  std::size_t end = 0;
  if (letter == 'x' && number(behind, 2, 2, 16, value, end)) {
    take(value, end, character);
    return true;
  }
  // Any other character stands for itself.
  ++at_;
  bool valid = true;
  at_ += coding_.decode_one(text_.substr(at_), buffer_, valid);
  character.is_text = valid;
  return true;
}

bool LiteralReader::number(std::size_t begin, std::size_t least, std::size_t most, unsigned base, char32_t& value,
                           std::size_t& end) const {
  value = 0;
  end = begin;
  while (end < begin + most && is_hex_digit(at(end)) && digit_value(at(end)) < base)
    value = value * base + digit_value(at(end++));
  return end >= begin + least;
}

// Reads "\u00e9", "\u{e9}", in Java also "\uu00e9". Two surrogates are one character.
bool LiteralReader::unicode(std::size_t begin, Character& character) {
  constexpr std::size_t kMostDigits = 6;
  char32_t value = 0;
  std::size_t end = 0;
  if (at(begin) == '{' && quoting_.language != Language::kJava) {
    if (!number(begin + 1, 1, kMostDigits, 16, value, end) || at(end) != '}') return false;
    take(value, end + 1, character);
    return true;
  }
  if (quoting_.language == Language::kPhp) return false;
  if (quoting_.language == Language::kJava)
    while (at(begin) == 'u') ++begin;
  if (!number(begin, 4, 4, 16, value, end)) return false;
  // In Java, a backslash written as "\u005c" begins an escape in turn. Nobody writes that, so it does not count as
  // text.
  if (quoting_.language == Language::kJava && value == '\\') {
    character.is_text = false;
    at_ = end;
    return true;
  }
  char32_t low = 0;
  std::size_t low_end = 0;
  if (is_high_half(value) && at(end) == '\\' && at(end + 1) == 'u' && number(end + 2, 4, 4, 16, low, low_end) &&
      is_low_half(low)) {
    value = 0x10000 + (((value - 0xD800) << 10) | (low - 0xDC00));
    end = low_end;
  }
  take(value, end, character);
  return true;
}

bool LiteralReader::octal(std::size_t begin, Character& character) {
  char32_t value = 0;
  std::size_t end = 0;
  const std::size_t most = quoting_.language == Language::kPhp || at(begin) <= '3' ? 3 : 2;
  if (!number(begin, 1, most, 8, value, end)) return false;
  take(value & 0xFF, end, character);
  if (quoting_.language == Language::kPhp && value >= 0x80) character.is_text = false;
  return true;
}

}  // namespace kavo::script
