#include <algorithm>
#include <iterator>
#include <vector>

#include "formats/script/lexer.h"

namespace kavo::script {
namespace {

constexpr std::string_view kOperators =
    ">>>= ... === !== **= <<= >>= >>> &&= ||= ?\?= => == != <= >= ++ -- << >> && || ?? ?. += -= *= /= %= &= |= ^= **";

// Behind these words an expression must follow, so a "/" begins a pattern.
constexpr std::string_view kBeforeValue[] = {"return", "typeof", "case", "in",         "of",    "delete", "void",
                                             "throw",  "new",    "else", "instanceof", "yield", "await",  "do"};
// The same holds after the ")" of these.
constexpr std::string_view kBeforeStatement[] = {"if", "while", "for", "with"};

template <class Words>
bool is_one_of(const Words& words, std::string_view word) {
  return std::find(std::begin(words), std::end(words), word) != std::end(words);
}

class JavaScriptLexer final : public Lexer {
 public:
  explicit JavaScriptLexer(const TextCoding* coding) : Lexer(coding) {}
  bool inside_literal() const override { return state_ == State::kLiteral; }

 private:
  enum class State : std::uint8_t { kCode, kLiteral, kBlockComment, kLineComment };

  void scan(Token& token) override;
  void begins_piece() override { no_pattern_before_ = 0; }
  void drop_literal() override {
    if (state_ != State::kBlockComment) state_ = State::kCode;
    at_line_start_ = true;
    expects_value_ = true;
  }
  void begin_literal(Token& token, LiteralForm form);
  void literal(Token& token);
  void template_text(Token& token);
  void escaped();
  void comment(Token& token);
  bool begins_comment();
  bool pattern(Token& token);
  void name(Token& token);
  void bracket(char c);

  State state_ = State::kCode;
  LiteralForm form_ = LiteralForm::kDouble;  // of the literal that is being read
  bool at_line_start_ = true;
  bool expects_value_ = true;          // a "/" would begin a pattern
  bool after_dot_ = false;             // the next name is a member, even if it is a keyword
  bool before_statement_ = false;      // the last name was one of kBeforeStatement
  std::size_t no_pattern_before_ = 0;  // up to here a search found no end of a pattern; nothing is searched twice
  std::vector<bool> parens_;           // for each open "(": whether a statement follows the ")"
  std::vector<std::size_t> braces_;    // for each open "${", the outermost first: how many "{" are open in it
};

void JavaScriptLexer::scan(Token& token) {
  if (state_ == State::kLiteral) {
    token.begins = false;
    return literal(token);
  }
  if (state_ != State::kCode) return comment(token);
  const char c = current();
  if (white_space(token)) {
    if (token.kind == TokenKind::kLineEnd) at_line_start_ = true;
    return;
  }
  if (begins_comment()) return comment(token);
  at_line_start_ = false;
  if (c == '"') return begin_literal(token, LiteralForm::kDouble);
  if (c == '\'') return begin_literal(token, LiteralForm::kSingle);
  if (c == '`') return begin_literal(token, LiteralForm::kTemplate);
  if (c == '/' && expects_value_ && pattern(token)) return;
  if (is_name_start(c) || c == '$' || c == '#' || c == '\\') return name(token);
  const bool after_dot = after_dot_;
  after_dot_ = false;
  if (is_digit(c) || (c == '.' && is_digit(at(at_ + 1)))) {
    token.kind = TokenKind::kNumber;
    expects_value_ = false;
    return number();
  }
  if (c == '}' && !braces_.empty() && braces_.back() == 0) {
    braces_.pop_back();
    token.begins = false;
    token.open = 1;
    ++at_;
    form_ = LiteralForm::kTemplate;
    return literal(token);
  }
  token.kind = TokenKind::kOperator;
  operator_of(kOperators);
  const std::string_view text = text_.substr(token.begin, at_ - token.begin);
  after_dot_ = text == "." || text == "?.";
  if ((text == "++" || text == "--") && !after_dot) return;
  expects_value_ = true;
  bracket(c);
}

void JavaScriptLexer::bracket(char c) {
  switch (c) {
    case '(':
      parens_.push_back(before_statement_);
      before_statement_ = false;
      break;
    case ')':
      expects_value_ = !parens_.empty() && parens_.back();
      if (!parens_.empty()) parens_.pop_back();
      break;
    case ']':
      expects_value_ = false;
      break;
    case '{':
      if (!braces_.empty()) ++braces_.back();
      break;
    case '}':
      if (!braces_.empty()) --braces_.back();
      break;
    default:
      break;
  }
}

void JavaScriptLexer::name(Token& token) {
  token.kind = TokenKind::kName;
  do {
    // An escape such as "\u0041" may be part of a name.
    if (current() == '\\' || current() == '#') ++at_;
    while (!done() && (is_name_byte(current()) || current() == '$')) skip_character();
  } while (current() == '\\' && at(at_ + 1) == 'u' && at_ > token.begin);
  const std::string_view word = text_.substr(token.begin, at_ - token.begin);
  expects_value_ = !after_dot_ && is_one_of(kBeforeValue, word);
  before_statement_ = !after_dot_ && is_one_of(kBeforeStatement, word);
  after_dot_ = false;
}

void JavaScriptLexer::begin_literal(Token& token, LiteralForm form) {
  token.open = 1;
  ++at_;
  form_ = form;
  literal(token);
}

// Reads on after the opening quote, or from the start of a piece that continues the literal.
void JavaScriptLexer::literal(Token& token) {
  token.kind = TokenKind::kLiteral;
  token.form = form_;
  token.ends = false;
  after_dot_ = before_statement_ = expects_value_ = false;
  state_ = State::kLiteral;
  if (form_ == LiteralForm::kTemplate) return template_text(token);
  const char quote = form_ == LiteralForm::kDouble ? '"' : '\'';
  while (!done() && !ends_line(current())) {
    const char c = current();
    if (c == '\\') {
      escaped();
    } else if (c == quote) {
      ++at_;
      token.close = 1;
      token.ends = true;
      state_ = State::kCode;
      return;
    } else {
      skip_character();
    }
  }
  if (done()) return;
  state_ = State::kCode;  // not closed on its line
  if (at_ != token.begin) return;
  token = Token{.kind = TokenKind::kLineEnd, .begin = at_};
  skip_line_end();
}

void JavaScriptLexer::template_text(Token& token) {
  while (!done()) {
    const char c = current();
    if (c == '\\') {
      escaped();
    } else if (c == '`') {
      ++at_;
      token.close = 1;
      token.ends = true;
      state_ = State::kCode;
      return;
    } else if (starts("${")) {
      at_ += 2;
      token.close = 2;
      braces_.push_back(0);
      expects_value_ = true;
      state_ = State::kCode;
      return;
    } else {
      skip_character();
    }
  }
}

// A backslash and the character after it. A line end there does not end the string.
void JavaScriptLexer::escaped() {
  ++at_;
  if (done()) return;
  if (ends_line(current()))
    skip_line_end();
  else
    skip_character();
}

// "<!--" and, at the start of a line, "-->" hide a line from old browsers.
bool JavaScriptLexer::begins_comment() {
  if (starts("/*")) {
    at_ += 2;
    state_ = State::kBlockComment;
    return true;
  }
  if (!starts("//") && !starts("<!--") && !(at_line_start_ && starts("-->"))) return false;
  state_ = State::kLineComment;
  return true;
}

void JavaScriptLexer::comment(Token& token) {
  token.kind = TokenKind::kComment;
  if (state_ == State::kBlockComment) {
    if (skip_past("*/")) state_ = State::kCode;
    return;
  }
  to_line_end();
  if (!done()) state_ = State::kCode;
  if (at_ != token.begin) return;
  token.kind = TokenKind::kLineEnd;
  at_line_start_ = true;
  skip_line_end();
}

// False when the line holds no second "/". The first one is then an operator.
bool JavaScriptLexer::pattern(Token& token) {
  if (at_ < no_pattern_before_) return false;
  bool in_class = false;
  std::size_t end = at_ + 1;
  for (; end < text_.size() && !ends_line(text_[end]); ++end) {
    const char c = text_[end];
    if (c == '\\') {
      ++end;
    } else if (c == '[') {
      in_class = true;
    } else if (c == ']') {
      in_class = false;
    } else if (c == '/' && !in_class) {
      at_ = end + 1;
      skip_name();
      token.kind = TokenKind::kPattern;
      expects_value_ = after_dot_ = false;
      return true;
    }
  }
  no_pattern_before_ = end;
  return false;
}

}  // namespace

std::unique_ptr<Lexer> make_javascript_lexer(const TextCoding* coding) {
  return std::make_unique<JavaScriptLexer>(coding);
}

}  // namespace kavo::script
