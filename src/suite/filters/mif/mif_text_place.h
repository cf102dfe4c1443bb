// Where a text of a MIF document stands, which decides how its translation is written. Kept as the context of its
// segment.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace kavo::mif {

inline constexpr std::size_t kLongestSeparator = 64;  // bytes

struct MifTextPlace {
  // A side text is looked for as one string: nothing else may stand beside it.
  bool is_side_text = false;
  // What stands in front of a statement: a line end and the indentation. At most kLongestSeparator bytes.
  std::string_view separator;
  std::string_view font;  // in effect there: its statement, "" for the paragraph's own
};

inline std::string to_context(const MifTextPlace& place) {
  std::string context(place.is_side_text ? "s" : "p");
  context += static_cast<char>(place.separator.size());
  return context.append(place.separator).append(place.font);
}

// `context` must outlive the place.
inline MifTextPlace to_place(std::string_view context) {
  if (context.size() < 2) return {};
  const std::size_t size = std::min<std::size_t>(static_cast<unsigned char>(context[1]), context.size() - 2);
  return {context[0] == 's', context.substr(2, size), context.substr(2 + size)};
}

// What filter and skeleton call the place where the colours of highlighting are defined: the opening of the document's
// catalogue of colours or, without one, of the first statement that shows any text.
enum ComputedKind : unsigned { kColours = 1 };
inline constexpr std::string_view kColourCatalogue = "<ColorCatalog";

}  // namespace kavo::mif
