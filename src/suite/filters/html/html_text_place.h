// Where a text is in a page. This decides what its white space means and how its translation must be written. It is
// kept as the context of the text's segment.
#pragma once

#include <string>
#include <string_view>

namespace kavo::html {

enum class PlaceKind : char {
  kFlow = 'f',     // among tags
  kContent = 'c',  // in an element that can hold no tags: a title, an option
  kDouble = '"',   // in an attribute with double quotes
  kSingle = '\'',
  kUnquoted = 'u',  // in an attribute without quotes, which gets quotes when it is written
};

struct TextPlace {
  PlaceKind kind = PlaceKind::kFlow;
  // The line end that the page uses, for preformatted text, which keeps its white space. "" for other text.
  std::string_view line_end;

  bool is_attribute() const { return kind != PlaceKind::kFlow && kind != PlaceKind::kContent; }
  bool keeps_space() const { return !line_end.empty(); }
};

inline std::string to_context(const TextPlace& place) {
  return static_cast<char>(place.kind) + std::string(place.line_end);
}

// `context` must outlive the place.
inline TextPlace to_place(std::string_view context) {
  if (context.empty()) return {};
  return {static_cast<PlaceKind>(context.front()), context.substr(1)};
}

// The computed places in a page's skeleton. They are rewritten when the page's coding or language changes.
enum ComputedKind : unsigned {
  kCharset = 1,   // the name of the coding
  kLanguage = 2,  // of the page, BCP 47
  kRawText = 3,   // the content of a script or a style sheet, where references are not allowed
};

}  // namespace kavo::html
