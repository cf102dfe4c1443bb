// Reads the tags and characters of the XML of presentations and workbooks (docs/office-xml.md) without changing its
// bytes.
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

  // The value as written, "" when there is no such attribute. The values that matter contain no references.
  std::string_view attribute(std::string_view wanted) const;
  // The value in UTF-8, its references decoded. An unknown reference stays as it is.
  std::string text_of(std::string_view wanted) const;
};

// The length of the tag, comment or instruction that begins with the text's "<". Nothing when the text ends inside it.
std::optional<std::size_t> tag_length(std::string_view text);
// Reads a complete tag, comment or instruction.
Tag tag_of(std::string_view bytes);

// The character that a reference ("&lt;", "&#9;") stands for, in UTF-8; "" for one that this XML does not have.
std::string character_of(std::string_view reference);

// The length in bytes of the reference at the start of the text, up to its ";". 0 when none ends within the longest
// one's length.
std::size_t reference_length(std::string_view text);

// What a text's list of runs says about a run. A translation must keep links and fields.
enum class RunKind { kText, kLink, kField };
std::vector<RunKind> run_kinds(std::string_view list);

// True when `place` is `outer` or inside it: "sheet:1/cell:A1" is within "sheet:1".
bool is_within(std::string_view place, std::string_view outer);
// A place without its numbers: "sheet:1/cell:A1" gives "sheet/cell".
std::string kind_of_place(std::string_view place);

}  // namespace kavo::office
