// Knows what the groups of an RTF document (RTF 1.9) contain: text that people read, or data.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace kavo::rtf {

enum class Destination : std::uint8_t {
  kText,         // a part of the text around it: a group without a destination, the parts of a field or a drawing
  kStory,        // a text of its own: a header, a footnote, a text box, a title
  kEntry,        // a text of its own inside a line: an index entry, a text of a form field
  kField,        // a field
  kInstruction,  // what a field does
  kResult,       // what a field shows
  kFontTable,
  kColourTable,
  kStyleSheet,
  kMarker,    // our own, for a picture or an object
  kPicture,   // a picture or an object
  kVariants,  // two forms of one text: one for programs without Unicode and, in \ud, one for the others
  kNote,      // a footnote, an endnote or an annotation: a story that its reference needs
  kData,      // everything else, also every unknown \* destination
};

// The destination that a control word begins; nothing for any other word. A group with \* and another word is data.
std::optional<Destination> destination_of(std::string_view word);

// Whether the result of a field is translated. `field_type` is the first word of its instruction. True for a link.
// False for what the word processor computes, such as a page number or a table of contents.
bool has_readable_result(std::string_view field_type);

}  // namespace kavo::rtf
