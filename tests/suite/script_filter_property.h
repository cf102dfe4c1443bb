// What must hold for scripts of any bytes, for the fuzzers and their replayed seeds.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "common/block_reader.h"
#include "formats/script/script_reader.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "suite/document/pseudo_translation.h"
#include "suite/filter_road.h"

namespace kavo::test {

// "" when every byte of a piece belongs to one token, in one piece and in two. The first byte of the input chooses the
// coding and what stands between the two, the second where the first of them ends.
inline std::string broken_lexer_property(script::Language language, std::string_view input) {
  if (input.size() < 2) return {};
  const auto choice = static_cast<unsigned char>(input[0]);
  const std::string_view text = input.substr(2);
  const std::size_t cut = text.empty() ? 0 : static_cast<unsigned char>(input[1]) % (text.size() + 1);
  const TextCoding coding(choice % 2 == 0 ? kUtf8CodePage : 932);
  const auto covers = [&](script::Lexer& lexer, std::string_view piece, script::Between between) {
    lexer.begin(piece, between);
    std::size_t place = 0;
    for (script::Token token; lexer.next(token); place = token.end)
      if (token.begin != place || token.end <= token.begin || token.end > piece.size() ||
          token.open + token.close > token.size())
        return false;
    return place == piece.size();
  };
  const std::unique_ptr<script::Lexer> whole = script::make_lexer(language, &coding);
  if (!covers(*whole, text, script::Between::kPage)) return "a byte belongs to no token, or to two";
  const std::unique_ptr<script::Lexer> cut_up = script::make_lexer(language, &coding);
  const auto between = choice / 2 % 2 == 0 ? script::Between::kPage : script::Between::kValue;
  if (!covers(*cut_up, text.substr(0, cut), script::Between::kPage) || !covers(*cut_up, text.substr(cut), between))
    return "a byte belongs to no token, or to two, behind a cut";
  return {};
}

// "" when a script file comes back to the byte, and with every text translated in a way that the proof of its
// rebuilding takes. The first byte of the input chooses the block size, the second the coding and the type of the page;
// the rest is one block, or several when it holds markers.
inline std::string broken_script_filter_property(std::string_view input) {
  if (input.size() < 2) return {};
  const BlockSizeScope blocks(static_cast<unsigned char>(input[0]) % 64 + 1u);
  const unsigned choice = static_cast<unsigned char>(input[1]);
  constexpr unsigned kCodePages[] = {65001, 1252, 932};
  constexpr std::u16string_view kPages[] = {u"_asp.scr", u"_jsp.scr", u"_php.scr", u"_htm.scr"};
  const std::string bytes = "\r\n<!-- ASP2HTML 1 -->\r\n" + std::string(input.substr(2)) + "\r\n";
  FilterRoad road(u"K19TXT", kPages[choice / 3 % 4], kCodePages[choice % 3]);
  const std::vector<std::string> texts = road.take_apart(bytes);
  if (road.put_together({}) != bytes) return "the unchanged scripts are not the source";
  const PseudoTranslation pseudo(road.header());
  std::vector<std::string> wanted;
  for (const std::string& text : texts) wanted.push_back(pseudo.of(text));
  try {
    road.put_together(wanted);
  } catch (const failure& reason) {
    return "refused: " + to_utf8(reason.description());
  }
  return {};
}

}  // namespace kavo::test
