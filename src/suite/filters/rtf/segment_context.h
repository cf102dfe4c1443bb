// What it takes, besides its bytes, to write the translation of an RTF text. Kept as the context of its segment.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace kavo::rtf {

struct SegmentContext {
  bool is_plain = false;       // no formatting can stand there: a title, an index entry
  unsigned fallback = 1;       // bytes behind each \uN, in effect at the beginning
  std::int32_t font = 0;       // in effect there: its number
  std::int32_t colour = 0;     // the same
  std::int32_t last_colour = 0;  // in effect behind the segment
  // Control words that make the look at the beginning that of the segment's text.
  std::string text_words;
  // The same for what stands in a pair of formatting codes, and for a code that shows itself in another look than the
  // text around it, by the id of the code.
  std::map<std::uint32_t, std::string> code_words;
  // What the formatting of the source leaves behind: braces that nothing in the segment matches, and control words
  // that stay in effect.
  std::string rest;

  std::string to_bytes() const;
  // Damaged parts count as missing.
  static SegmentContext from_bytes(std::string_view bytes);
};

}  // namespace kavo::rtf
