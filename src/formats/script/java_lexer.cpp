#include "formats/script/lexer.h"

namespace kavo::script {
namespace {

constexpr std::string_view kOperators =
    ">>>= ... <<= >>= >>> -> :: == != <= >= ++ -- << >> && || += -= *= /= %= &= |= ^=";

class JavaLexer final : public Lexer {
 public:
  explicit JavaLexer(const TextCoding* coding) : Lexer(coding) {}
  bool inside_literal() const override { return in_literal_; }

 private:
  // A character of the source, written as itself or as an escape ("\u0022").
  struct Character {
    char byte = 0;           // 0 at the end; beyond ASCII the first byte, or 0x80 for an escape
    std::size_t length = 0;  // in bytes
  };

  void scan(Token& token) override;
  void drop_literal() override { in_literal_ = in_line_comment_ = false; }
  Character character(std::size_t place) const;
  void skip(const Character& c);
  void literal(Token& token);
  void text_block(Token& token);
  void single(Token& token);
  void comment(Token& token);
  void line_end(Token& token);

  bool in_literal_ = false;
  LiteralForm form_ = LiteralForm::kDouble;
  bool in_comment_ = false;
  bool in_line_comment_ = false;
};

void JavaLexer::scan(Token& token) {
  if (in_literal_) {
    token.begins = false;
    return form_ == LiteralForm::kTextBlock ? text_block(token) : literal(token);
  }
  if (in_comment_ || in_line_comment_) return comment(token);
  const char c = current();
  if (is_blank(c)) {
    token.kind = TokenKind::kBlank;
    return skip_blanks();
  }
  const Character first = character(at_);
  if (ends_line(first.byte)) return line_end(token);
  if (starts("//") || starts("/*")) {
    (at(at_ + 1) == '*' ? in_comment_ : in_line_comment_) = true;
    at_ += 2;
    return comment(token);
  }
  if (starts("\"\"\"")) {
    token.open = 3;
    at_ += 3;
    form_ = LiteralForm::kTextBlock;
    return text_block(token);
  }
  if (first.byte == '"') {
    token.open = first.length;
    at_ += first.length;
    form_ = LiteralForm::kDouble;
    return literal(token);
  }
  if (first.byte == '\'') return single(token);
  if (is_name_start(first.byte) || first.byte == '$' || first.byte == '@') {
    token.kind = TokenKind::kName;
    skip(first);
    for (Character next = character(at_); is_name_byte(next.byte) || next.byte == '$'; next = character(at_))
      skip(next);
    return;
  }
  if (is_digit(c) || (c == '.' && is_digit(at(at_ + 1)))) {
    token.kind = TokenKind::kNumber;
    return number();
  }
  token.kind = TokenKind::kOperator;
  operator_of(kOperators);
}

// Java reads "\u0022" as the character before it looks for tokens, unless the backslash is itself escaped. The callers
// skip both bytes of "\\", so an escaped backslash never comes here.
JavaLexer::Character JavaLexer::character(std::size_t place) const {
  if (place >= text_.size()) return {};
  if (text_[place] != '\\' || at(place + 1) != 'u') return {text_[place], 1};
  std::size_t digits = place + 1;
  while (at(digits) == 'u') ++digits;
  unsigned value = 0;
  for (std::size_t i = digits; i < digits + 4; ++i) {
    if (!is_hex_digit(at(i))) return {text_[place], 1};
    const char digit = lower(at(i));
    value = value * 16 + static_cast<unsigned>(is_digit(digit) ? digit - '0' : digit - 'a' + 10);
  }
  return {value < 0x80 ? static_cast<char>(value) : '\x80', digits + 4 - place};
}

void JavaLexer::skip(const Character& c) {
  if (c.length == 1)
    skip_character();
  else
    at_ += c.length;
}

// Reads on after the opening quote, or from the start of a piece that continues the literal. The literal ends with
// the line at the latest.
void JavaLexer::literal(Token& token) {
  token.kind = TokenKind::kLiteral;
  token.form = LiteralForm::kDouble;
  token.ends = false;
  in_literal_ = true;
  for (Character c = character(at_); c.length != 0; c = character(at_)) {
    if (ends_line(c.byte)) {
      in_literal_ = false;
      break;
    }
    skip(c);
    if (c.byte == '"') {
      token.close = c.length;
      token.ends = true;
      in_literal_ = false;
      return;
    }
    // The character after a backslash is skipped too, whether or not it is an escape itself.
    if (c.byte == '\\' && !done() && !ends_line(current())) skip(character(at_));
  }
  if (at_ != token.begin || done()) return;
  line_end(token);
}

void JavaLexer::text_block(Token& token) {
  token.kind = TokenKind::kLiteral;
  token.form = LiteralForm::kTextBlock;
  token.ends = false;
  in_literal_ = true;
  while (!done()) {
    if (starts("\"\"\"")) {
      at_ += 3;
      token.close = 3;
      token.ends = true;
      in_literal_ = false;
      return;
    }
    const Character c = character(at_);
    skip(c);
    if (c.byte == '\\' && !done()) skip(character(at_));
  }
}

// 'c', '\n', '\'', '\u0027'. A quote that does not begin a character is a token of its own.
void JavaLexer::single(Token& token) {
  token.kind = TokenKind::kUnknown;
  skip(character(at_));
  const std::size_t behind_quote = at_;
  Character c = character(at_);
  if (c.length == 0 || ends_line(c.byte) || c.byte == '\'') return;
  // The character may have several bytes, so the closing quote is looked for nearby.
  constexpr std::size_t kLongestCharacter = 24;  // bytes, of two "\uXXXX" escapes with some room
  while (at_ - behind_quote < kLongestCharacter && c.length != 0 && !ends_line(c.byte)) {
    skip(c);
    if (c.byte == '\\' && !done() && !ends_line(current())) skip(character(at_));
    c = character(at_);
    if (c.byte != '\'' || c.length == 0) continue;
    skip(c);
    token.kind = TokenKind::kCharacter;
    return;
  }
  at_ = behind_quote;
}

void JavaLexer::comment(Token& token) {
  token.kind = TokenKind::kComment;
  if (in_comment_) {
    in_comment_ = !skip_past("*/");
    return;
  }
  for (Character c = character(at_); c.length != 0; c = character(at_)) {
    if (ends_line(c.byte)) {
      in_line_comment_ = false;
      break;
    }
    // A comment has no escapes except "\uXXXX", and the second of two backslashes does not begin one.
    skip(c);
    if (c.byte == '\\' && current() == '\\') ++at_;
  }
  if (at_ != token.begin) return;
  line_end(token);
}

void JavaLexer::line_end(Token& token) {
  token = Token{.kind = TokenKind::kLineEnd, .begin = at_};
  if (ends_line(current()))
    skip_line_end();
  else
    skip(character(at_));
}

}  // namespace

std::unique_ptr<Lexer> make_java_lexer(const TextCoding* coding) { return std::make_unique<JavaLexer>(coding); }

}  // namespace kavo::script
