// Breaks the translation of a hard-wrapped paragraph into lines again.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kavo {

// The layout of a paragraph's lines. Kept as the context of its segment.
struct ParagraphShape {
  std::size_t width = 0;       // columns of its longest line, the indentation included
  std::size_t column = 0;      // where the text of its first line begins
  std::string_view separator;  // a line end and the indentation of the lines after the first; UTF-8
};

std::string to_context(const ParagraphShape& shape);
// False when the context holds no shape because the text is one line. `context` must outlive the shape.
bool to_shape(std::string_view context, ParagraphShape& shape);

// Breaks a coded text into lines, with the separator between them. A line is no longer than the width unless it is one
// word; line ends of the text itself are blanks. Joining the lines gives the text back. Linear time.
std::string wrapped(std::string_view coded, const ParagraphShape& shape);

}  // namespace kavo
