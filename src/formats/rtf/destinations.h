// What the groups of an RTF document (RTF 1.9) hold: text that people read, or data.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace kavo::rtf {

enum class Destination : std::uint8_t {
  kText,         // a part of what it stands in: a group without a destination, the parts of a field or a drawing
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
  kVariants,  // two forms of one text: for programs that know no Unicode, and, in \ud, for the others
  kNote,      // a footnote, an endnote or an annotation: a story that its reference needs
  kData,      // everything else, as every unknown \* destination
};

// The destination that a control word begins; nothing for a word that begins none. A group of \* whose word begins none
// is data.
std::optional<Destination> destination_of(std::string_view word);

// Whether the result of a field is text that people read and translate, by the first word of its instruction: a link
// is, a page number or a table of contents, which the word processor computes, is not.
bool has_readable_result(std::string_view field_type);

}  // namespace kavo::rtf
