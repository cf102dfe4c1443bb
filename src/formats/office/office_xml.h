// The XML of presentations and workbooks (docs/office-xml.md): its tags and characters, for whoever keeps its bytes.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kavo::office {

// A tag, a comment or a processing instruction. The views point into its bytes.
struct Tag {
  std::string_view bytes;
  std::string_view name;  // of an element; "" for anything else
  bool is_end = false;    // "</g>"
  bool is_empty = false;  // "<x/>"

  // The value as it stands, "" when there is no such attribute. The values that matter hold no references.
  std::string_view attribute(std::string_view wanted) const;
  // The value without references, UTF-8; one that is not known stays as it is.
  std::string text_of(std::string_view wanted) const;
};

// The length of the tag, comment or instruction that begins with the text's "<"; nothing when the text ends before it
// does.
std::optional<std::size_t> tag_length(std::string_view text);
// The whole of one.
Tag tag_of(std::string_view bytes);

// The character that a reference ("&lt;", "&#9;") stands for, in UTF-8; "" for one that this XML does not have.
std::string character_of(std::string_view reference);

// Bytes of the reference that the text begins with, up to its ";"; 0 when none ends within the longest one's length.
std::size_t reference_length(std::string_view text);

// What the list of a text's runs says: for each run whether it is a link or a field, which a translation must keep.
enum class RunKind { kText, kLink, kField };
std::vector<RunKind> run_kinds(std::string_view list);

// Whether a place stands in another one or is it: "sheet:1/cell:A1" in "sheet:1".
bool is_within(std::string_view place, std::string_view outer);
// A place without its numbers: "sheet:1/cell:A1" gives "sheet/cell".
std::string kind_of_place(std::string_view place);

}  // namespace kavo::office
