// What must hold for a text of any bytes, for the fuzzer and its replayed seeds.
#pragma once

#include <string>
#include <string_view>

#include "common/block_reader.h"
#include "suite/document/pseudo_translation.h"
#include "suite/filter_road.h"

namespace kavo::test {

// "" when it holds: unchanged the text comes back to the byte; translated, rebuilt and converted again it gives the
// translations, all of them, in order. The first byte of the input chooses the block size, the second the coding and
// whether it is a script file.
inline std::string broken_text_filter_property(std::string_view input) {
  if (input.size() < 2) return {};
  const BlockSizeScope blocks(static_cast<unsigned char>(input[0]) % 64 + 1u);
  const unsigned choice = static_cast<unsigned char>(input[1]);
  constexpr unsigned kCodePages[] = {65001, 1252, 932};
  const std::string_view bytes = input.substr(2);
  FilterRoad road(u"K19TXT", choice / 3 % 2 == 0 ? u".txt" : u".scr", kCodePages[choice % 3]);
  const std::vector<std::string> texts = road.take_apart(bytes);
  if (road.put_together({}) != bytes) return "the unchanged text is not the source";

  // In a double-byte code page a broken lead byte takes whatever a translation puts after it as its trail byte.
  const bool may_merge = road.header().source_code_page == 932;
  const PseudoTranslation pseudo(road.header());
  std::vector<std::string> wanted;
  for (const std::string& text : texts) wanted.push_back(pseudo.of(text));
  const std::vector<std::string> found = road.take_apart(road.put_together(wanted));
  return may_merge ? std::string() : broken_texts(wanted, found);
}

}  // namespace kavo::test
