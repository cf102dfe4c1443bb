#include "suite/filters/rtf/rtf_colours.h"

#include <algorithm>

#include "formats/rtf/destinations.h"
#include "formats/rtf/token_scanner.h"

namespace kavo::rtf {
namespace {

void append_colour(std::uint32_t colour, std::string& bytes) {
  const auto part = [&](std::string_view name, unsigned shift) {
    bytes.append("\\").append(name).append(std::to_string(colour >> shift & 0xFF));
  };
  part("red", 0);
  part("green", 8);
  part("blue", 16);
  bytes += ';';
}

std::string colour_word(std::int32_t colour) { return "\\cf" + std::to_string(colour) + " "; }

// Control words that may change the colour.
bool changes_colour(const Token& word) { return word.name == "plain" || word.name == "cs"; }

// True when the text in a group with this destination belongs to the line itself.
bool is_in_line(std::string_view word) {
  const auto destination = destination_of(word);
  return !destination || *destination == Destination::kText || *destination == Destination::kField ||
         *destination == Destination::kResult;
}

}  // namespace

std::int32_t append_colours(std::string_view original, const SegmentColours& colours, std::string& bytes) {
  const auto count = static_cast<std::int32_t>(std::ranges::count(original, ';'));
  const bool has_table = !original.empty();
  bytes += has_table ? original : std::string_view("{\\colortbl;");
  // The last entry may lack its end.
  const std::size_t behind = original.rfind(';') + 1;
  const bool is_open = original.find('\\', behind) != original.npos;
  if (is_open || (has_table && count == 0)) bytes += ';';
  for (const std::uint32_t colour : colours) append_colour(colour, bytes);
  if (!has_table) bytes += '}';
  return !has_table ? 1 : is_open || count == 0 ? count + 1 : count;
}

void append_coloured(std::string_view segment, std::int32_t colour, std::int32_t last_colour, std::string& bytes) {
  const std::string word = colour_word(colour);
  bool is_coloured = false;
  std::size_t depth = 0;
  std::size_t left_alone = 0;  // depth of a group whose text does not belong to the line; 0 when there is none
  bool has_star = false;
  TokenScanner scanner;
  Token token;
  for (; !segment.empty(); segment.remove_prefix(token.bytes.size())) {
    scanner.next(segment, true, nullptr, token);
    if (token.kind == TokenKind::kOpen) ++depth;
    if (left_alone == 0) {
      const bool is_word = token.kind == TokenKind::kWord;
      if (token.kind == TokenKind::kSymbol && token.symbol() == '*') has_star = true;
      if (is_word && depth != 0 && (!is_in_line(token.name) || (has_star && !destination_of(token.name))))
        left_alone = depth;
      if (is_word) has_star = false;
      const bool is_text = token.kind == TokenKind::kText || token.kind == TokenKind::kByte || token.is_word("u");
      if (is_text && !is_coloured) bytes += word;
      if (is_text) is_coloured = true;
      if (token.kind == TokenKind::kOpen || token.kind == TokenKind::kClose || changes_colour(token))
        is_coloured = false;
    }
    if (token.kind == TokenKind::kClose) {
      if (depth == left_alone) left_alone = 0;
      if (depth != 0) --depth;
    }
    if (left_alone != 0 || !token.is_word("cf")) bytes += token.bytes;
  }
  bytes += colour_word(last_colour);
}

}  // namespace kavo::rtf
