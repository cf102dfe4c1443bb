// The fonts of a rebuilt document: the source's fonts, replaced where the user's map says so, and copies of them with
// the target's character set for characters that their own sets lack.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "formats/rtf/font_table.h"
#include "suite/filters/rtf/font_map.h"

namespace kavo::rtf {

class TargetFonts {
 public:
  // `code_page` is the code page of the document's text, `added_charset` the character set of the target language or
  // kNoCharset.
  TargetFonts(unsigned code_page, std::int32_t added_charset, FontMap map)
      : code_page_(code_page), added_charset_(added_charset), map_(std::move(map)) {}

  // Writes the source's font table with the changes. Call it first: before that no font is known.
  void write_table(std::string_view original, std::string& bytes);
  // The coding of text in a font; null when none is known.
  const TextCoding* coding_of(std::int32_t font);
  // The font of the same look that has the target's characters, or `font` itself.
  std::int32_t twin_of(std::int32_t font) const;

 private:
  void copy_with_names(std::string_view original, std::string& bytes) const;
  void add_twin(const Font& font, std::string& bytes);

  unsigned code_page_;
  std::int32_t added_charset_;
  FontMap map_;
  FontTable fonts_;
  std::map<std::int32_t, std::int32_t> twins_;
  std::int32_t highest_ = 0;
  CodingSet codings_;
};

}  // namespace kavo::rtf
