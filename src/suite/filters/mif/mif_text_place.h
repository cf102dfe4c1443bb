// Where a text is in a MIF document. This decides how its translation is written. It is kept as the context of its
// segment.
#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kavo::mif {

inline constexpr std::size_t kLongestSeparator = 64;  // bytes

struct MifTextPlace {
  // The library expects a side text to be one string, so nothing else may be beside it.
  bool is_side_text = false;
  // The text is on a master page, and its translation also goes where the same text occurs again (kRepeatedText).
  bool is_repeated = false;
  // The line end and the indentation before a statement. At most kLongestSeparator bytes.
  std::string_view separator;
  std::string_view font;  // the statement of the font in effect there; "" for the paragraph's own font
  // Where fonts decide the coding: the code page at the beginning of the text, then the one after each of its fonts.
  // Empty when all text is in the document's coding.
  std::vector<unsigned> code_pages;
};

inline std::string to_context(const MifTextPlace& place) {
  std::string context(place.is_side_text ? "s" : place.is_repeated ? "m" : place.code_pages.empty() ? "p" : "f");
  context += static_cast<char>(place.separator.size());
  context.append(place.separator);
  for (const unsigned code_page : place.code_pages) (context += std::to_string(code_page)) += ',';
  if (!place.code_pages.empty()) context += ';';
  return context.append(place.font);
}

// `context` must outlive the place.
inline MifTextPlace to_place(std::string_view context) {
  if (context.size() < 2) return {};
  const std::size_t size = std::min<std::size_t>(static_cast<unsigned char>(context[1]), context.size() - 2);
  MifTextPlace place{context[0] == 's', context[0] == 'm', context.substr(2, size), context.substr(2 + size), {}};
  while (context[0] == 'f' && !place.font.empty()) {
    unsigned code_page = 0;
    const char* const end = place.font.data() + place.font.size();
    const auto [stop, error] = std::from_chars(place.font.data(), end, code_page);
    if (error == std::errc()) place.code_pages.push_back(code_page);
    place.font.remove_prefix(
        std::min<std::size_t>(static_cast<std::size_t>(stop - place.font.data()) + 1, place.font.size()));
    if (error != std::errc()) break;
  }
  return place;
}

// The computed places of a MIF skeleton.
enum ComputedKind : std::uint32_t {
  // Where the colours of highlighting are defined: the opening of the document's catalogue of colours or, without one,
  // of the first statement that shows any text.
  kColours = 1,
  // A text of a master page that is the same as one before it. This number stands for the first of those texts, the
  // next number for the second, and so on.
  kRepeatedText = 2,
};
inline constexpr std::string_view kColourCatalogue = "<ColorCatalog";

}  // namespace kavo::mif
