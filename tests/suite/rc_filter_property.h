// What must hold for a resource script of any bytes, for tests, the fuzzer and its replayed seeds.
#pragma once

#include <string>
#include <string_view>

#include "common/block_reader.h"
#include "platform/failure.h"
#include "suite/document/pseudo_translation.h"
#include "suite/filter_road.h"

namespace kavo::test {

// "" when a script comes back unchanged byte for byte and translated with every text in its place; else what is broken.
// A script whose texts are all in other languages is refused, which is right.
inline std::string broken_rc_property(std::string_view script, unsigned code_page, std::size_t* text_count = nullptr,
                                      std::u16string_view language = u"EN-US") {
  FilterRoad road(u"K19GCP", u".rc", code_page, language);
  std::vector<std::string> texts;
  try {
    texts = road.take_apart(script);
  } catch (const failure& reason) {
    return reason.is(FailureNumber::kInvalidCall) ? std::string() : "it cannot be prepared";
  }
  if (text_count) *text_count = texts.size();
  if (road.put_together({}) != script) return "the unchanged script differs";
  const PseudoTranslation pseudo(road.header());
  std::vector<std::string> wanted;
  for (const std::string& text : texts) wanted.push_back(pseudo.of(text));
  const std::vector<std::string> found = road.take_apart(road.put_together(wanted));
  // In a double-byte code page a broken lead byte takes whatever a translation puts after it as its trail byte.
  const bool may_merge = code_page == 932 || script.find("page") != std::string_view::npos;
  return may_merge ? std::string() : broken_texts(wanted, found);
}

// For any bytes: the first tells the size of the blocks, the second the coding, the rest is the script.
inline std::string broken_rc_filter_property(std::string_view input) {
  if (input.size() < 2) return {};
  const BlockSizeScope scope(static_cast<unsigned char>(input[0]) % 64 + 1u);
  constexpr unsigned code_pages[] = {1252, 65001, 932};
  return broken_rc_property(input.substr(2), code_pages[static_cast<unsigned char>(input[1]) % 3]);
}

}  // namespace kavo::test
