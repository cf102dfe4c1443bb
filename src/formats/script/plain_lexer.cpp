// The lexer for scripts in an unknown language (PerlScript, Python ...). What is between two quotes on one line is a
// literal. A backslash escapes the next character.
#include "formats/script/lexer.h"

namespace kavo::script {
namespace {

class PlainLexer final : public Lexer {
 public:
  explicit PlainLexer(const TextCoding* coding) : Lexer(coding) {}
  bool inside_literal() const override { return false; }

 private:
  void scan(Token& token) override;
  void drop_literal() override {}
  bool literal(Token& token);
};

void PlainLexer::scan(Token& token) {
  const char c = current();
  if (white_space(token)) return;
  if (is_name_start(c)) {
    token.kind = TokenKind::kName;
    return skip_name();
  }
  if (is_digit(c)) {
    token.kind = TokenKind::kNumber;
    return number();
  }
  if ((c == '"' || c == '\'') && literal(token)) return;
  token.kind = TokenKind::kOperator;
  skip_character();
}

bool PlainLexer::literal(Token& token) {
  const std::size_t begin = at_;
  const char quote = current();
  for (++at_; !done() && !ends_line(current()); skip_character()) {
    if (current() == '\\') {
      ++at_;
      if (done() || ends_line(current())) break;
      continue;
    }
    if (current() != quote) continue;
    ++at_;
    token.kind = TokenKind::kLiteral;
    token.form = quote == '"' ? LiteralForm::kDouble : LiteralForm::kSingle;
    token.open = token.close = 1;
    return true;
  }
  at_ = begin;
  return false;
}

}  // namespace

std::unique_ptr<Lexer> make_plain_lexer(const TextCoding* coding) { return std::make_unique<PlainLexer>(coding); }

}  // namespace kavo::script
