#include "formats/script/literal_value.h"

#include <algorithm>
#include <charconv>

#include "platform/failure.h"
#include "platform/unicode.h"

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

bool is_raw(LiteralForm form) { return form == LiteralForm::kNowdoc; }

unsigned digit_value(char c) {
  if (is_digit(c)) return static_cast<unsigned>(c - '0');
  return static_cast<unsigned>(lower(c) - 'a' + 10);
}

std::string number_text(char32_t value, int base, std::size_t digits) {
  char buffer[16];
  const auto result = std::to_chars(buffer, buffer + sizeof(buffer), static_cast<std::uint32_t>(value), base);
  const std::string text(buffer, result.ptr);
  return text.size() < digits ? std::string(digits - text.size(), '0') + text : text;
}

std::string unit_escape(char32_t unit) { return "\\u" + number_text(unit, 16, 4); }
std::string byte_escape(char32_t byte) { return "\\x" + number_text(byte, 16, 2); }
std::string wide_call(char32_t unit) { return "ChrW(" + number_text(unit, 10, 1) + ")"; }

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
  } else if (c != '\\' || quoting_.language == Language::kVbScript || is_raw(quoting_.form) || !escape(character)) {
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

// At a backslash; false when it is one of the text.
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
      if (value >= 0x80) character.is_text = false;  // a byte, not a character
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

// "\u00e9", "\u{e9}", in Java also "\uu00e9"; two halves of UTF-16 are one character.
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
  // An escaped backslash of Java escapes in turn; nobody writes that, and it is no text here.
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

// ---- Writing

std::string_view text_operator_of(Language language) {
  switch (language) {
    case Language::kVbScript:
      return " & ";
    case Language::kPhp:
      return " . ";
    default:
      return " + ";
  }
}

std::string_view quote_of(LiteralForm form) {
  switch (form) {
    case LiteralForm::kDouble:
      return "\"";
    case LiteralForm::kSingle:
      return "'";
    case LiteralForm::kTemplate:
    case LiteralForm::kCommand:
      return "`";
    default:
      return "";
  }
}

namespace {

// Writes one text, and remembers what it wrote last: some pairs of characters may not stand side by side.
class TextWriter {
 public:
  TextWriter(const Quoting& quoting, const TextCoding& coding, std::string& bytes)
      : quoting_(quoting), coding_(coding), bytes_(bytes) {}

  void character(std::string_view utf8) {
    if (utf8.size() == 1)
      ascii(utf8[0]);
    else
      coding_.encode(utf8, bytes_,
                     [this](std::string_view missing, std::string&) { escaped(utf8_code_point(missing)); });
    last_ = utf8.size() == 1 ? utf8[0] : '\0';
  }

 private:
  void ascii(char c) {
    if (c == '\n' || c == '\r') return line_break(c);
    if (ends_script(c)) return broken_pair(c);
    if (static_cast<unsigned char>(c) < 0x20 && c != '\t') return escaped(static_cast<unsigned char>(c));
    const std::string_view doubled = quoting_.language == Language::kVbScript ? "\"" : "";
    if (doubled.find(c) != std::string_view::npos) plain(c);
    if (needs_backslash(c)) plain('\\');
    plain(c);
  }

  void plain(char c) { coding_.encode(std::string_view(&c, 1), bytes_, {}); }
  void plain(std::string_view text) { coding_.encode(text, bytes_, {}); }

  bool needs_backslash(char c) const {
    switch (quoting_.form) {
      case LiteralForm::kDouble:
        if (quoting_.language == Language::kVbScript) return false;
        return c == '"' || c == '\\' || (c == '$' && quoting_.language == Language::kPhp);
      case LiteralForm::kSingle:
        return c == '\'' || c == '\\';
      case LiteralForm::kTemplate:
        return c == '`' || c == '\\' || c == '$';
      case LiteralForm::kTextBlock:
        return c == '"' || c == '\\';
      case LiteralForm::kHeredoc:
        return c == '\\' || c == '$';
      case LiteralForm::kCommand:
        return c == '`' || c == '\\' || c == '$';
      case LiteralForm::kNowdoc:
        return false;
    }
    return false;
  }

  // "%>", "?>" and "<%", "<?" begin and end server code, whatever the quotes; "</" and "<!" may end an element.
  bool ends_script(char c) const {
    if (c == '>') return last_ == '%' || last_ == '?';
    if (last_ != '<') return false;
    return c == '%' || c == '?' || (quoting_.in_element && (c == '/' || c == '!'));
  }

  // The second character of such a pair, so that the two no longer stand together.
  void broken_pair(char c) {
    switch (quoting_.language) {
      case Language::kJavaScript:
        plain('\\');
        return plain(c);
      case Language::kPhp:
        if (quoting_.form != LiteralForm::kSingle && quoting_.form != LiteralForm::kNowdoc)
          return plain(byte_escape(static_cast<unsigned char>(c)));
        [[fallthrough]];
      case Language::kVbScript:
        interrupt("");
        return plain(c);
      default:
        return plain(unit_escape(static_cast<unsigned char>(c)));
    }
  }

  void line_break(char c) {
    if (quoting_.language == Language::kVbScript) {
      // Of a CR LF the CR is written as both.
      if (c == '\n' && last_ == '\r') return;
      return interrupt("vbCrLf");
    }
    const bool has_escapes = quoting_.language != Language::kPhp ||
                             (quoting_.form != LiteralForm::kSingle && quoting_.form != LiteralForm::kNowdoc);
    if (has_escapes) return plain(c == '\n' ? "\\n" : "\\r");
    plain(c);
  }

  // Closes the literal and opens it again, with `value` between.
  void interrupt(std::string_view value) {
    const std::string_view quote = quote_of(quoting_.form);
    if (quote.empty()) throw no_way(U'>');
    const std::string_view joint = text_operator_of(quoting_.language);
    for (const std::string_view part : {quote, joint, value, value.empty() ? std::string_view() : joint, quote})
      plain(part);
  }

  // A character that the coding lacks, or a control character.
  void escaped(char32_t c) {
    const bool is_wide = c > 0xFFFF;
    const char32_t high = 0xD800 + ((c - 0x10000) >> 10);
    const char32_t low = 0xDC00 + ((c - 0x10000) & 0x3FF);
    switch (quoting_.language) {
      case Language::kVbScript:
        if (is_wide) return interrupt(wide_call(high) + " & " + wide_call(low));
        return interrupt(wide_call(c));
      case Language::kJavaScript:
      case Language::kJava:
        if (is_wide) return plain(unit_escape(high) + unit_escape(low));
        return plain(unit_escape(c));
      case Language::kPhp:
        // "\u{e9}" means its bytes in UTF-8, which are wrong in another coding.
        if (c < 0x20 && quoting_.form != LiteralForm::kSingle && quoting_.form != LiteralForm::kNowdoc)
          return plain(byte_escape(c));
        if (c < 0x20) return plain(static_cast<char>(c));
        break;
      case Language::kUnknown:
        break;
    }
    throw no_way(c);
  }

  failure no_way(char32_t c) const {
    std::string shown;
    append_utf8(shown, c);
    return failure(FailureNumber::kInvalidCall,
                   to_utf16("\"" + shown + "\" (U+" + number_text(c, 16, 4) + ") cannot be written there"));
  }

  Quoting quoting_;
  const TextCoding& coding_;
  std::string& bytes_;
  char last_ = '\0';
};

}  // namespace

void append_literal_text(std::string_view utf8, const Quoting& quoting, const TextCoding& coding, std::string& bytes) {
  TextWriter writer(quoting, coding, bytes);
  while (!utf8.empty()) {
    const std::size_t length = std::max<std::size_t>(utf8_character_length(utf8), 1);
    writer.character(utf8.substr(0, length));
    utf8.remove_prefix(length);
  }
}

}  // namespace kavo::script
