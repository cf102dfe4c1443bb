#include "formats/script/lexer.h"

namespace kavo::script {
namespace {

class VbScriptLexer final : public Lexer {
 public:
  explicit VbScriptLexer(const TextCoding* coding) : Lexer(coding) {}
  bool inside_literal() const override { return in_literal_; }

 private:
  void scan(Token& token) override;
  void begins_piece() override { no_bracket_before_ = 0; }
  void drop_literal() override {
    in_literal_ = in_comment_ = after_dot_ = false;
    at_line_start_ = true;
  }
  void literal(Token& token);
  void comment(Token& token);
  bool word(Token& token);
  bool continues_line();
  bool based_number();
  bool date();

  bool in_literal_ = false;
  bool in_comment_ = false;            // in a comment that a block interrupts
  bool at_line_start_ = true;          // only blanks since the line began
  std::size_t no_bracket_before_ = 0;  // up to here a search found no "]"; nothing is searched twice
  bool after_dot_ = false;             // the next word names a member: the "Rem" of "x.Rem" does not begin a comment
};

void VbScriptLexer::scan(Token& token) {
  if (in_comment_) return comment(token);
  if (in_literal_) {
    token.begins = false;
    return literal(token);
  }
  const char c = current();
  const bool after_dot = after_dot_;
  if (white_space(token)) {
    if (token.kind == TokenKind::kLineEnd) {
      after_dot_ = false;
      at_line_start_ = true;
    }
    return;
  }
  after_dot_ = false;
  const bool at_line_start = at_line_start_;
  at_line_start_ = false;
  if (c == '\'' || (at_line_start && (starts("<!--") || starts("-->")))) return comment(token);
  if (c == '"') {
    token.open = 1;
    ++at_;
    return literal(token);
  }
  if (c == '_' && continues_line()) {
    token.kind = TokenKind::kBlank;
    return;
  }
  if (is_name_start(c)) {
    token.kind = TokenKind::kName;
    const std::size_t begin = at_;
    skip_name();
    if (!after_dot && equal_word(text_.substr(begin, at_ - begin), "rem")) comment(token);
    return;
  }
  if (c == '[' && word(token)) return;
  if (is_digit(c) || (c == '.' && is_digit(at(at_ + 1)))) {
    token.kind = TokenKind::kNumber;
    return number();
  }
  // In "&Hello" the "&" is an operator; "&HFF" is a number.
  if (c == '&' && based_number()) {
    token.kind = TokenKind::kNumber;
    return;
  }
  if (c == '#' && date()) {
    token.kind = TokenKind::kNumber;
    return;
  }
  token.kind = TokenKind::kOperator;
  after_dot_ = c == '.';
  at_line_start_ = c == ':';
  operator_of("<> <= >= := =< =>");
}

// Reads on after the opening quote, or from the start of a piece that continues the literal. The literal ends with
// the line at the latest.
void VbScriptLexer::literal(Token& token) {
  token.kind = TokenKind::kLiteral;
  token.ends = false;
  in_literal_ = true;
  while (!done() && !ends_line(current())) {
    if (current() != '"') {
      skip_character();
    } else if (at(at_ + 1) == '"') {
      at_ += 2;
    } else {
      ++at_;
      token.close = 1;
      token.ends = true;
      in_literal_ = false;
      return;
    }
  }
  if (!done()) in_literal_ = false;
  // The piece begins with a line end, so the literal does not continue in it.
  if (at_ == token.begin) {
    token = Token{.kind = TokenKind::kLineEnd, .begin = at_};
    at_line_start_ = true;
    skip_line_end();
  }
}

void VbScriptLexer::comment(Token& token) {
  token.kind = TokenKind::kComment;
  to_line_end();
  in_comment_ = done();
  if (at_ != token.begin) return;
  token.kind = TokenKind::kLineEnd;
  at_line_start_ = true;
  skip_line_end();
}

// "[any name]"
bool VbScriptLexer::word(Token& token) {
  if (at_ < no_bracket_before_) return false;
  std::size_t end = at_ + 1;
  // Nothing in a literal ends a name.
  for (bool in_quotes = false; end < text_.size() && (text_[end] != ']' || in_quotes) && !ends_line(text_[end]); ++end)
    in_quotes = in_quotes != (text_[end] == '"');
  if (at(end) != ']') {
    no_bracket_before_ = end;
    return false;
  }
  token.kind = TokenKind::kName;
  at_ = end + 1;
  return true;
}

// A "_" with nothing but blanks after it continues the statement on the next line.
bool VbScriptLexer::continues_line() {
  std::size_t end = at_ + 1;
  while (is_blank(at(end))) ++end;
  if (end >= text_.size() || !ends_line(text_[end])) return false;
  at_ = end;
  skip_line_end();
  return true;
}

// "&HFF", "&O17&"
bool VbScriptLexer::based_number() {
  const char base = lower(at(at_ + 1));
  if (base != 'h' && base != 'o') return false;
  std::size_t end = at_ + 2;
  while (base == 'h' ? is_hex_digit(at(end)) : at(end) >= '0' && at(end) <= '7') ++end;
  if (end == at_ + 2 || is_name_byte(at(end))) return false;
  at_ = end + (at(end) == '&' ? 1 : 0);
  return true;
}

// "#31.12.1999#"; no date is longer than this.
bool VbScriptLexer::date() {
  constexpr std::size_t kLongestDate = 40;  // bytes
  for (std::size_t end = at_ + 1; end < text_.size() && end - at_ < kLongestDate; ++end) {
    const char c = text_[end];
    if (c == '"' || ends_line(c)) return false;
    if (c != '#') continue;
    at_ = end + 1;
    return true;
  }
  return false;
}

}  // namespace

std::unique_ptr<Lexer> make_vbscript_lexer(const TextCoding* coding) { return std::make_unique<VbScriptLexer>(coding); }

}  // namespace kavo::script
