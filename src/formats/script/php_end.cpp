#include "formats/script/php_end.h"

#include "formats/script/lexer.h"

namespace kavo::script {

std::size_t php_end(std::string_view code) {
  const auto lexer = make_lexer(Language::kPhp, nullptr);
  lexer->begin(code);
  for (Token token; lexer->next(token);)
    if (token.kind == TokenKind::kBlockEnd) return token.end;
  return std::string_view::npos;
}

}  // namespace kavo::script
