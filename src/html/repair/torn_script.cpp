#include "html/repair/torn_script.h"

#include <string>
#include <vector>

#include "formats/html/marker_reader.h"
#include "formats/script/lexer.h"
#include "formats/script/page_scripts.h"

namespace kavo {
namespace {

bool goes_on(std::string_view code) {
  const auto lexer = script::make_lexer(script::Language::kPhp, nullptr);
  lexer->begin(code);
  script::Token last;
  for (script::Token token; lexer->next(token);) last = token;
  const std::string_view text = code.substr(last.begin, last.size());
  const bool in_comment =
      last.kind == script::TokenKind::kComment && text.starts_with("/*") && (text.size() < 4 || !text.ends_with("*/"));
  return in_comment || lexer->inside_literal();
}

}  // namespace

std::optional<std::uint64_t> find_torn_script(std::u16string_view script_file, script::Language server) {
  html::MarkerReader markers(script_file, true);
  script::PageScripts scripts(server);
  std::vector<script::Piece> pieces;
  std::string before;
  for (bool has_next = markers.next() != 0; has_next;) {
    const std::uint64_t begin = markers.position();
    before.clear();
    has_next = markers.next(&before) != 0;
    const std::string_view block = html::text_of_block(before);
    if (!block.ends_with("?>") || before.size() > html::kLongestBlock) continue;
    pieces.clear();
    scripts.add_block(block, 0, block.size(), pieces);
    for (const script::Piece& piece : pieces)
      if (piece.language == script::Language::kPhp && piece.end + 2 == block.size() &&
          goes_on(block.substr(piece.begin, piece.end - piece.begin)))
        return begin + static_cast<std::uint64_t>(block.data() - before.data()) + piece.end;
  }
  return std::nullopt;
}

}  // namespace kavo
