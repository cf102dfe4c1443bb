// What holds for any bytes on the way through the MIF filter; tests and the fuzzer share it.
#pragma once

#include <cstdint>
#include <map>
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

// A text without the codes at its edges, its other codes numbered anew. An escape that stands for no character gets a
// string of its own when the text beside it is translated; at the edge of the text it then stands outside.
inline std::string without_edge_codes(std::string_view coded) {
  std::vector<CodedPart> parts;
  CodedTextReader reader(coded);
  for (CodedPart part; reader.next(part);) parts.push_back(part);
  const auto is_edge = [](const CodedPart& part) {
    return part.is_code ? part.kind == CodeKind::kStandalone : is_blank_text(part.text);
  };
  while (!parts.empty() && is_edge(parts.front())) parts.erase(parts.begin());
  while (!parts.empty() && is_edge(parts.back())) parts.pop_back();
  // A hard space that becomes a statement of its own stands outside, too.
  if (!parts.empty() && !parts.front().is_code) parts.front().text.remove_prefix(leading_blanks(parts.front().text));
  if (!parts.empty() && !parts.back().is_code) parts.back().text.remove_suffix(trailing_blanks(parts.back().text));
  std::map<std::string_view, std::uint32_t> ids;
  std::string text;
  for (const CodedPart& part : parts) {
    if (part.is_code)
      append_code(text, part.kind,
                  ids.try_emplace(part.text, static_cast<std::uint32_t>(ids.size() + 1)).first->second);
    else
      text += part.text;
  }
  return text;
}

inline std::vector<std::string> without_edge_codes(std::vector<std::string> texts) {
  for (std::string& text : texts) text = without_edge_codes(text);
  return texts;
}

// "" when a document comes back unchanged byte for byte and translated with every text in its place; else what is
// broken.
inline std::string broken_mif_property(std::string_view document, unsigned code_page,
                                       std::size_t* text_count = nullptr) {
  FilterRoad road(u"K19MIF", u".mif", code_page);
  const std::vector<std::string> texts = road.take_apart(document);
  if (text_count) *text_count = texts.size();
  if (road.put_together({}) != document) return "the unchanged document differs";
  const unsigned target_code_page = road.header().target_code_page;
  const PseudoTranslation pseudo(target_code_page);
  std::vector<std::string> wanted;
  for (const std::string& text : texts) wanted.push_back(pseudo.of(text));
  std::string translated;
  try {
    translated = road.put_together(wanted);
  } catch (const failure&) {
    // A document before version 8 may hold a character that its escapes lack.
    const bool holds_all = target_code_page == kUtf8CodePage && code_page != kUtf8CodePage;
    return holds_all ? "a translation was refused" : "";
  }
  const std::string broken = broken_texts(without_edge_codes(wanted), without_edge_codes(road.take_apart(translated)));
  return broken.empty() ? broken : broken + " in " + translated.substr(0, 2000);
}

// For any bytes: the first tells the size of the blocks and the coding, the rest is the document.
inline std::string broken_mif_filter_property(std::string_view input) {
  if (input.empty()) return {};
  const auto choice = static_cast<unsigned char>(input.front());
  const BlockSizeScope scope(choice / 4 == 0 ? 4096 : choice / 4);
  constexpr unsigned code_pages[] = {1252, 65001, 932, 1252};
  return broken_mif_property(input.substr(1), code_pages[choice % 4]);
}

}  // namespace kavo::test
