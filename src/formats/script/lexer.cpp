#include "formats/script/lexer.h"

#include "common/byte_scan.h"

namespace kavo::script {

void Lexer::begin(std::string_view text, Between between) {
  text_ = text;
  at_ = 0;
  begins_piece();
  if (between == Between::kPage) drop_literal();
}

bool Lexer::next(Token& token) {
  if (done()) return false;
  token = Token();
  token.begin = at_;
  scan(token);
  token.end = at_;
  return true;
}

void Lexer::skip_character() {
  // No second byte is a quote or another sign: behind a lead byte, that is the script's own.
  constexpr unsigned char kLeastSecond = 0x40;
  const bool is_pair = coding_ != nullptr && coding_->is_lead_byte(static_cast<unsigned char>(current())) &&
                       static_cast<unsigned char>(at(at_ + 1)) >= kLeastSecond;
  at_ = std::min(at_ + (is_pair ? 2 : 1), text_.size());
}

void Lexer::skip_line_end() { at_ += starts("\r\n") ? 2 : 1; }

void Lexer::to_line_end() {
  const char* const end = text_.data() + text_.size();
  at_ = static_cast<std::size_t>(find_any<'\r', '\n'>(text_.data() + at_, end) - text_.data());
}

void Lexer::skip_blanks() {
  while (!done() && is_blank(current())) ++at_;
}

void Lexer::skip_name() {
  while (!done() && is_name_byte(current())) skip_character();
}

bool Lexer::white_space(Token& token) {
  if (is_blank(current())) {
    token.kind = TokenKind::kBlank;
    skip_blanks();
    return true;
  }
  if (!ends_line(current())) return false;
  token.kind = TokenKind::kLineEnd;
  skip_line_end();
  return true;
}

bool Lexer::skip_past(std::string_view closer) {
  const std::size_t found = text_.find(closer, at_);
  at_ = found == std::string_view::npos ? text_.size() : found + closer.size();
  return found != std::string_view::npos;
}

void Lexer::number() {
  while (!done() && (is_name_byte(current()) || current() == '.')) {
    const bool is_exponent = lower(current()) == 'e';
    ++at_;
    if (is_exponent && (current() == '+' || current() == '-') && is_digit(at(at_ + 1))) ++at_;
  }
}

void Lexer::operator_of(std::string_view operators) {
  while (!operators.empty()) {
    const std::size_t blank = operators.find(' ');
    const std::string_view wanted = operators.substr(0, blank);
    if (wanted.front() == current() && starts(wanted)) {
      at_ += wanted.size();
      return;
    }
    operators.remove_prefix(blank == std::string_view::npos ? operators.size() : blank + 1);
  }
  skip_character();
}

std::unique_ptr<Lexer> make_lexer(Language language, const TextCoding* coding) {
  switch (language) {
    case Language::kVbScript:
      return make_vbscript_lexer(coding);
    case Language::kJavaScript:
      return make_javascript_lexer(coding);
    case Language::kJava:
      return make_java_lexer(coding);
    case Language::kPhp:
      return make_php_lexer(coding);
    case Language::kUnknown:
      return make_plain_lexer(coding);
  }
  return nullptr;
}

}  // namespace kavo::script
