// What is needed, besides its bytes, to write the translation of an RTF text. It is kept as the context of its segment.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace kavo::rtf {

struct SegmentContext {
  bool is_plain = false;         // the text cannot have formatting: a title, an index entry
  unsigned fallback = 1;         // how many bytes follow each \uN at the beginning
  std::int32_t font = 0;         // the number of the font at the beginning
  std::int32_t colour = 0;       // the number of the colour at the beginning
  std::int32_t last_colour = 0;  // the number of the colour after the segment
  // Control words that change the look at the beginning into that of the segment's text.
  std::string text_words;
  // The same, by the id of a code, for the text in a pair of formatting codes, and for a code that is shown in another
  // look than the text around it.
  std::map<std::uint32_t, std::string> code_words;
  // What the formatting of the source leaves behind: braces that nothing in the segment matches, and control words
  // that stay in effect.
  std::string rest;

  std::string to_bytes() const;
  // Damaged parts count as missing.
  static SegmentContext from_bytes(std::string_view bytes);
};

}  // namespace kavo::rtf
