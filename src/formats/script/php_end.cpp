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

bool goes_on_behind(std::string_view block, const Piece& piece) {
  const std::string_view closer = block.substr(piece.end);
  return piece.language == Language::kPhp && (closer.empty() || closer == "?>") &&
         php_end(block.substr(piece.begin)) == std::string_view::npos;
}

}  // namespace kavo::script
