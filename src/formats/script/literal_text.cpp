// Writes a text as a literal of a language.
#include <algorithm>
#include <charconv>

#include "formats/script/literal_value.h"
#include "platform/failure.h"
#include "platform/unicode.h"

namespace kavo::script {

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

std::string number_text(char32_t value, int base, std::size_t digits) {
  char buffer[16];
  const auto result = std::to_chars(buffer, buffer + sizeof(buffer), static_cast<std::uint32_t>(value), base);
  const std::string text(buffer, result.ptr);
  return text.size() < digits ? std::string(digits - text.size(), '0') + text : text;
}

std::string unit_escape(char32_t unit) { return "\\u" + number_text(unit, 16, 4); }
std::string byte_escape(char32_t byte) { return "\\x" + number_text(byte, 16, 2); }
std::string wide_call(char32_t unit) { return "ChrW(" + number_text(unit, 10, 1) + ")"; }

// Writes one text. It remembers the last character, because some pairs of characters must not stand side by side.
class TextWriter {
 public:
  TextWriter(const Quoting& quoting, const TextCoding& coding, std::string& bytes)
      : quoting_(quoting), coding_(coding), bytes_(bytes) {}

  void character(std::string_view utf8) {
    // Before ECMAScript 2019 these two ended a line.
    const bool ends_line = quoting_.language == Language::kJavaScript && (utf8 == "\u2028" || utf8 == "\u2029");
    if (utf8.size() == 1)
      ascii(utf8[0]);
    else if (ends_line)
      escaped(utf8_code_point(utf8));
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
    if (quoting_.language == Language::kUnknown) return false;
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

  // "%>", "?>" and "<%", "<?" begin and end server code, whatever the quotes; "</", and "<!" with "<script", may decide
  // where an element ends.
  bool ends_script(char c) const {
    if (c == '>') return last_ == '%' || last_ == '?';
    if (last_ != '<') return false;
    if (c == '%' || c == '?') return true;
    return quoting_.in_element && (c == '/' || c == '!' || (lower(c) == 's' && !quoting_.is_constant));
  }

  // Writes the second character of such a pair so that the two are no longer side by side.
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
        if (!can_interrupt()) throw no_way(quoted(std::string{last_, c}));
        interrupt("");
        return plain(c);
      case Language::kUnknown:
        throw no_way(quoted(std::string{last_, c}));
      default:
        return plain(unit_escape(static_cast<unsigned char>(c)));
    }
  }

  void line_break(char c) {
    if (quoting_.language == Language::kVbScript) {
      // The CR has already written the whole CR LF.
      if (c == '\n' && last_ == '\r') return;
      if (!can_interrupt()) throw no_way("a line break");
      return interrupt("vbCrLf");
    }
    if (quoting_.language == Language::kUnknown) throw no_way("a line break");
    const bool has_escapes = quoting_.language != Language::kPhp ||
                             (quoting_.form != LiteralForm::kSingle && quoting_.form != LiteralForm::kNowdoc);
    if (has_escapes) return plain(c == '\n' ? "\\n" : "\\r");
    plain(c);
  }

  bool can_interrupt() const { return !quoting_.is_constant && !quote_of(quoting_.form).empty(); }

  // Closes the literal, joins `value` to it, and opens it again.
  void interrupt(std::string_view value) {
    const std::string_view quote = quote_of(quoting_.form);
    const std::string_view joint = text_operator_of(quoting_.language);
    for (const std::string_view part : {quote, joint, value, value.empty() ? std::string_view() : joint, quote})
      plain(part);
  }

  // Writes a character that the coding lacks, or a control character.
  void escaped(char32_t c) {
    const bool is_wide = c > 0xFFFF;
    const char32_t high = 0xD800 + ((c - 0x10000) >> 10);
    const char32_t low = 0xDC00 + ((c - 0x10000) & 0x3FF);
    switch (quoting_.language) {
      case Language::kVbScript:
        if (!can_interrupt()) break;
        if (is_wide) return interrupt(wide_call(high) + " & " + wide_call(low));
        return interrupt(wide_call(c));
      case Language::kJavaScript:
      case Language::kJava:
        if (is_wide) return plain(unit_escape(high) + unit_escape(low));
        return plain(unit_escape(c));
      case Language::kPhp:
        // "\u{e9}" would produce UTF-8 bytes, which are wrong in any other coding.
        if (c < 0x20 && quoting_.form != LiteralForm::kSingle && quoting_.form != LiteralForm::kNowdoc)
          return plain(byte_escape(c));
        if (c < 0x20) return plain(static_cast<char>(c));
        break;
      case Language::kUnknown:
        break;
    }
    std::string shown;
    append_utf8(shown, c);
    const std::string code = "U+" + number_text(c, 16, 4);
    throw no_way(c < 0x20 ? code : quoted(shown) + " (" + code + ")");
  }

  static std::string quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

  failure no_way(std::string_view what) const {
    const std::string reason = quoting_.is_constant ? ", because a constant is a single literal" : "";
    return failure(FailureNumber::kInvalidCall, to_utf16(std::string(what) + " cannot be written there" + reason));
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
