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

// Where the end tag of the element begins, `text.size()` when it has none. It ends the element in quotes, too.
std::size_t find_end_tag(std::string_view text, std::size_t begin, std::string_view name) {
  for (std::size_t at = text.find("</", begin); at != std::string_view::npos; at = text.find("</", at + 2)) {
    const std::size_t behind = at + 2 + name.size();
    if (begins_with(text, at + 2, name) && (behind == text.size() || !is_name_byte(text[behind]))) return at;
  }
  return text.size();
}

constexpr std::string_view kScript = "script";
constexpr std::string_view kJava = "java";

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
  else if (block.starts_with("<") && (begins_with(block, 1, kScript) || begins_with(block, 1, kJava)))
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
  const bool is_java = begins_with(text, begin + 1, kJava);
  ScriptTag tag = read_script_tag(text.substr(begin, at - begin), Language::kJavaScript, server_);
  if (is_java) tag = {Language::kJava, true, true};
  // Server blocks in the tag itself.
  for (std::size_t inner = find_server_block(text, begin + 1); inner < at; inner = find_server_block(text, inner)) {
    const std::size_t inner_end = std::min(server_block_end(text, inner), at);
    server_block(text, inner, inner_end, pieces);
    inner = inner_end;
  }
  Piece piece;
  piece.language = tag.language;
  piece.on_server = tag.on_server;
  piece.element = ++elements_;
  for (;; piece.goes_on = true) {
    const std::size_t inner = tag.on_server ? end : find_server_block(text, at);
    piece.begin = at;
    piece.end = find_end_tag(text.substr(0, inner), at, is_java ? kJava : kScript);
    const bool is_last = piece.end != inner || inner == end;
    if (tag.is_script && (piece.end > piece.begin || (piece.goes_on && !is_last))) pieces.push_back(piece);
    if (is_last) break;
    at = server_block_end(text, inner);
    server_block(text, inner, at, pieces);
  }
}

}  // namespace kavo::script
