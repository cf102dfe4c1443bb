// What holds for any bytes on the way through the RTF filter; tests and the fuzzer share it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/block_reader.h"
#include "platform/failure.h"
#include "suite/document/blank_text.h"
#include "suite/document/coded_text.h"
#include "suite/document/pseudo_translation.h"
#include "suite/filter_road.h"

namespace kavo::test {

// The words of texts, without the blanks at their edges: bytes that are no character get a place of their own when the
// text beside them is translated, and a blank after the last one then stands outside. Codes are compared by tests of
// their own.
inline std::vector<std::string> plain_texts(std::vector<std::string> texts) {
  for (std::string& text : texts) {
    text = plain_text(text);
    text.erase(text.size() - trailing_blanks(text));
    text.erase(0, leading_blanks(text));
  }
  return texts;
}

// "" when a document comes back unchanged byte for byte and translated with every text in its place; else what is
// broken.
inline std::string broken_rtf_property(std::string_view document, unsigned code_page,
                                       std::size_t* text_count = nullptr) {
  FilterRoad road(u"K19RTF", u".rtf", code_page);
  std::vector<std::string> texts;
  try {
    texts = road.take_apart(document);
  } catch (const failure& reason) {
    // What does not begin as RTF does is refused.
    return reason.is(FailureNumber::kInvalidCall) ? "" : "the document was not read";
  }
  if (text_count) *text_count = texts.size();
  if (road.put_together({}) != document) return "the unchanged document differs";
  const PseudoTranslation pseudo(kUtf8CodePage);  // every character can be written
  std::vector<std::string> wanted;
  for (const std::string& text : texts) wanted.push_back(pseudo.of(text));
  const std::string translated = road.put_together(wanted);
  const std::string broken = broken_texts(plain_texts(wanted), plain_texts(road.take_apart(translated)));
  return broken.empty() ? broken : broken + " in " + translated.substr(0, 4000);
}

// For any bytes: the first tells the size of the blocks and the coding, the rest is the document.
inline std::string broken_rtf_filter_property(std::string_view input) {
  if (input.empty()) return {};
  const auto choice = static_cast<unsigned char>(input.front());
  const BlockSizeScope scope(choice / 4 == 0 ? 4096 : choice / 4);
  constexpr unsigned code_pages[] = {1252, 65001, 932, 936};
  return broken_rtf_property(input.substr(1), code_pages[choice % 4]);
}

}  // namespace kavo::test
