#include <string>
#include <vector>

#include "formats/script/lexer.h"

namespace kavo::script {
namespace {

constexpr std::string_view kOperators =
    "?-> <=> **= ... <<= >>= === !== ?\?= -> => :: == != <> <= >= ++ -- += -= *= /= .= %= &= |= ^= && || ?? << >> **";

class PhpLexer final : public Lexer {
 public:
  explicit PhpLexer(const TextCoding* coding) : Lexer(coding) {}
  bool inside_literal() const override { return !open_.empty(); }

 private:
  enum class State : std::uint8_t { kCode, kText, kInserted, kBlockComment };

  // An open literal. It may hold code, which may hold literals in turn.
  struct Open {
    LiteralForm form = LiteralForm::kDouble;
    std::string label;       // of a heredoc
    std::size_t braces = 0;  // how many "{" are open in the code
  };

  void scan(Token& token) override;
  void drop_literal() override {
    open_.clear();
    state_ = State::kCode;
  }
  void begin_literal(Token& token, LiteralForm form, std::size_t open, std::string_view label = {});
  void text(Token& token);
  void closed(Token& token, std::size_t close);
  bool heredoc(Token& token);
  std::size_t heredoc_end(std::size_t line) const;
  bool begins_insertion() const;
  void inserted(Token& token);
  void comment(Token& token);
  bool name(Token& token);
  bool brace(Token& token, char c);

  bool at_variable(std::size_t place) const { return at(place) == '$' && is_name_start(at(place + 1)); }

  State state_ = State::kCode;
  std::vector<Open> open_;
};

void PhpLexer::scan(Token& token) {
  if (state_ == State::kBlockComment) return comment(token);
  if (state_ == State::kInserted || (state_ == State::kText && at_variable(at_))) return inserted(token);
  if (state_ == State::kText) {
    token.begins = false;
    return text(token);
  }
  const char c = current();
  if (white_space(token)) return;
  if (starts("/*") || starts("//") || (c == '#' && at(at_ + 1) != '[')) return comment(token);
  if (starts("?>")) {
    token.kind = TokenKind::kBlockEnd;
    at_ += 2;
    return;
  }
  if (c == '"') return begin_literal(token, LiteralForm::kDouble, 1);
  if (c == '\'') return begin_literal(token, LiteralForm::kSingle, 1);
  if (c == '`') return begin_literal(token, LiteralForm::kCommand, 1);
  if (starts("<<<") && heredoc(token)) return;
  if (name(token) || brace(token, c)) return;
  if (is_digit(c) || (c == '.' && is_digit(at(at_ + 1)))) {
    token.kind = TokenKind::kNumber;
    return number();
  }
  token.kind = TokenKind::kOperator;
  operator_of(kOperators);
}

// "$name", "$$name", "name", "\Space\name"
bool PhpLexer::name(Token& token) {
  std::size_t begin = at_;
  while (at(begin) == '$') ++begin;
  if (at(begin) == '\\' && begin == at_) ++begin;
  if (!is_name_start(at(begin))) return false;
  token.kind = TokenKind::kName;
  at_ = begin;
  skip_name();
  while (current() == '\\' && is_name_start(at(at_ + 1))) {
    ++at_;
    skip_name();
  }
  return true;
}

// Counts the braces of the code in a literal. True when this brace ends the code and the literal's text continues.
bool PhpLexer::brace(Token& token, char c) {
  if (open_.empty()) return false;
  if (c == '{') ++open_.back().braces;
  if (c != '}') return false;
  if (open_.back().braces != 0) {
    --open_.back().braces;
    return false;
  }
  token.begins = false;
  token.open = 1;
  ++at_;
  text(token);
  return true;
}

void PhpLexer::begin_literal(Token& token, LiteralForm form, std::size_t open, std::string_view label) {
  token.open = open;
  at_ += open;
  open_.push_back({form, std::string(label), 0});
  text(token);
}

void PhpLexer::text(Token& token) {
  const LiteralForm form = open_.back().form;
  const bool inserts = form != LiteralForm::kSingle && form != LiteralForm::kNowdoc;
  const bool is_document = form == LiteralForm::kHeredoc || form == LiteralForm::kNowdoc;
  const char quote = form == LiteralForm::kSingle ? '\'' : form == LiteralForm::kCommand ? '`' : '"';
  token.kind = TokenKind::kLiteral;
  token.form = form;
  token.ends = false;
  state_ = State::kText;
  if (is_document && token.begins)
    if (const std::size_t size = heredoc_end(at_)) return closed(token, size);
  while (!done()) {
    const char c = current();
    if (is_document && ends_line(c)) {
      const std::size_t line = at_ + (starts("\r\n") ? 2 : 1);
      if (const std::size_t size = heredoc_end(line)) return closed(token, line - at_ + size);
      at_ = line;
    } else if (c == '\\' && form != LiteralForm::kNowdoc) {
      ++at_;
      if (!done() && !ends_line(current())) skip_character();
    } else if (!is_document && c == quote) {
      return closed(token, 1);
    } else if (inserts && begins_insertion()) {
      if (at_variable(at_)) {
        state_ = State::kInserted;
      } else {
        token.close = c == '{' ? 1 : 2;
        at_ += token.close;
        state_ = State::kCode;
      }
      return;
    } else {
      skip_character();
    }
  }
}

void PhpLexer::closed(Token& token, std::size_t close) {
  at_ += close;
  token.close = close;
  token.ends = true;
  open_.pop_back();
  state_ = State::kCode;
}

// "$name", "{$", "${"
bool PhpLexer::begins_insertion() const {
  return at_variable(at_) || (current() == '{' && at(at_ + 1) == '$') || (current() == '$' && at(at_ + 1) == '{');
}

// Reads "<<<X", "<<<"X"" or "<<<'X'" with its line end.
bool PhpLexer::heredoc(Token& token) {
  std::size_t begin = at_ + 3;
  while (at(begin) == ' ' || at(begin) == '\t') ++begin;
  const char quote = at(begin) == '"' || at(begin) == '\'' ? at(begin) : '\0';
  if (quote != '\0') ++begin;
  if (!is_name_start(at(begin))) return false;
  std::size_t end = begin;
  while (end < text_.size() && is_name_byte(text_[end])) ++end;
  const std::string_view label = text_.substr(begin, end - begin);
  if (quote != '\0' && at(end++) != quote) return false;
  if (end >= text_.size() || !ends_line(text_[end])) return false;
  end += text_.compare(end, 2, "\r\n") == 0 ? 2 : 1;
  begin_literal(token, quote == '\'' ? LiteralForm::kNowdoc : LiteralForm::kHeredoc, end - at_, label);
  return true;
}

// The length of the blanks and the label that end the heredoc, or 0 when the line at `line` does not end it.
std::size_t PhpLexer::heredoc_end(std::size_t line) const {
  const std::string& label = open_.back().label;
  std::size_t begin = line;
  while (at(begin) == ' ' || at(begin) == '\t') ++begin;
  const std::size_t end = begin + label.size();
  if (text_.compare(std::min(begin, text_.size()), label.size(), label) != 0 || is_name_byte(at(end))) return 0;
  return end - line;
}

// Reads a "$name", "$name[key]" or "$name->member" inside a text.
void PhpLexer::inserted(Token& token) {
  state_ = State::kText;
  token.kind = TokenKind::kName;
  ++at_;
  skip_name();
  if (current() == '[') {
    std::size_t end = at_ + 1;
    while (is_name_byte(at(end)) || at(end) == '$' || at(end) == '-') ++end;
    if (end > at_ + 1 && at(end) == ']') at_ = end + 1;
  } else if (starts("->") || starts("?->")) {
    const std::size_t member = at_ + (current() == '?' ? 3 : 2);
    if (!is_name_start(at(member))) return;
    at_ = member;
    skip_name();
  }
}

void PhpLexer::comment(Token& token) {
  token.kind = TokenKind::kComment;
  if (state_ == State::kBlockComment || starts("/*")) {
    if (state_ == State::kCode) at_ += 2;
    state_ = skip_past("*/") ? State::kCode : State::kBlockComment;
    return;
  }
  // "?>" ends the block even inside such a comment.
  while (!done() && !ends_line(current()) && !starts("?>")) skip_character();
}

}  // namespace

std::unique_ptr<Lexer> make_php_lexer(const TextCoding* coding) { return std::make_unique<PhpLexer>(coding); }

}  // namespace kavo::script
