#include "formats/script/page_scripts.h"

#include <algorithm>

namespace kavo::script {
namespace {

bool begins_with(std::string_view text, std::size_t at, std::string_view lower_case) {
  return text.size() - at >= lower_case.size() && equal_word(text.substr(at, lower_case.size()), lower_case);
}

// The place after the ">" that ends the tag at `begin`. A ">" in quotes or in a server block does not count.
std::size_t tag_end(std::string_view text, std::size_t begin, std::size_t end) {
  char quote = '\0';
  for (std::size_t at = begin; at < end;) {
    const char c = text[at];
    if (c == '<' && at != begin && at + 1 < end && (text[at + 1] == '%' || text[at + 1] == '?')) {
      at = server_block_end(text, at);
      continue;
    }
    ++at;
    if (quote != '\0') {
      if (c == quote) quote = '\0';
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '>') {
      return at;
    }
  }
  return end;
}

}  // namespace

std::size_t server_block_end(std::string_view text, std::size_t begin) {
  const std::string_view closer = text.compare(begin, 4, "<%--") == 0 ? "--%>" : text[begin + 1] == '%' ? "%>" : "?>";
  const std::size_t found = text.find(closer, begin + 2);
  return found == std::string_view::npos ? text.size() : found + closer.size();
}

std::size_t find_server_block(std::string_view text, std::size_t begin) {
  for (std::size_t at = text.find('<', begin); at != std::string_view::npos; at = text.find('<', at + 1)) {
    const std::string_view rest = text.substr(at);
    if (rest.starts_with("<%")) return at;
    if (!rest.starts_with("<?") || begins_with(rest, 0, "<?xml")) continue;
    if (begins_with(rest, 0, "<?php") || rest.starts_with("<?=") ||
        (rest.size() > 2 && (is_blank(rest[2]) || ends_line(rest[2]))))
      return at;
  }
  return text.size();
}

void PageScripts::add_block(std::string_view text, std::size_t begin, std::size_t end, std::vector<Piece>& pieces) {
  const std::string_view block = text.substr(begin, end - begin);
  if (block.starts_with("<%") || block.starts_with("<?"))
    server_block(text, begin, end, pieces);
  else if (block.starts_with("<"))
    element(text, begin, end, pieces);
}

void PageScripts::server_block(std::string_view text, std::size_t begin, std::size_t end, std::vector<Piece>& pieces) {
  const std::string_view block = text.substr(begin, end - begin);
  Piece piece;
  if (block.starts_with("<%--")) return;
  if (block.starts_with("<%@")) {
    server_ = language_of_directive(block, server_);
    return;
  }
  const bool is_php = block[1] == '?';
  std::size_t code = begin + 2;
  if (begins_with(block, 0, "<?php"))
    code += 3;
  else if (block.size() > 2 && (block[2] == '=' || block[2] == '!'))
    ++code;
  if (code > begin + 2 && text[code - 1] == '=') piece.kind = PieceKind::kValue;
  if (code > begin + 2 && text[code - 1] == '!') piece.kind = PieceKind::kDeclarations;
  piece.language = is_php ? Language::kPhp : server_;
  piece.begin = code;
  piece.end = end;
  if (block.ends_with(is_php ? "?>" : "%>") && end >= code + 2) piece.end -= 2;
  pieces.push_back(piece);
}

void PageScripts::element(std::string_view text, std::size_t begin, std::size_t end, std::vector<Piece>& pieces) {
  text = text.substr(0, end);  // no search leaves the element
  std::size_t at = tag_end(text, begin, end);
  const bool is_java = begins_with(text, begin, "<java");
  ScriptTag tag = read_script_tag(text.substr(begin, at - begin), Language::kJavaScript, server_);
  if (is_java) tag = {Language::kJava, true, true};
  const std::size_t last = text.rfind('<');
  const std::size_t content_end =
      last != std::string_view::npos && last >= at && text.compare(last, 2, "</") == 0 ? last : end;
  // Server blocks inside the tag itself.
  for (std::size_t inner = find_server_block(text, begin + 1); inner < at; inner = find_server_block(text, inner)) {
    const std::size_t inner_end = std::min(server_block_end(text, inner), at);
    server_block(text, inner, inner_end, pieces);
    inner = inner_end;
  }
  Piece piece;
  piece.language = tag.language;
  piece.on_server = tag.on_server;
  piece.element = ++elements_;
  while (at < content_end || !piece.goes_on) {
    const std::size_t inner = tag.on_server ? content_end : std::min(find_server_block(text, at), content_end);
    piece.begin = at;
    piece.end = inner;
    if (tag.is_script && (piece.end > piece.begin || piece.goes_on)) pieces.push_back(piece);
    if (inner >= content_end) break;
    at = std::min(server_block_end(text, inner), content_end);
    server_block(text, inner, at, pieces);
    piece.goes_on = true;
  }
}

}  // namespace kavo::script
