// A translation of a hard-wrapped paragraph, broken into lines again.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kavo {

// How the lines of a paragraph stand. Kept as the context of its segment.
struct ParagraphShape {
  std::size_t width = 0;       // columns of its longest line, the indentation included
  std::size_t column = 0;      // where the text of its first line begins
  std::string_view separator;  // a line end and the indentation of the lines behind the first; UTF-8
};

std::string to_context(const ParagraphShape& shape);
// False for a context of none: of a text that is one line. `context` must outlive the shape.
bool to_shape(std::string_view context, ParagraphShape& shape);

// A coded text with the separator where its lines end. A line is no longer than the width unless it is one word; line
// ends of the text itself are blanks. Joining the lines gives the text back. Linear time.
std::string wrapped(std::string_view coded, const ParagraphShape& shape);

}  // namespace kavo
