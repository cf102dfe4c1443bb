// The fonts of an RTF document: their names and the character sets of their text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "formats/rtf/token_scanner.h"

namespace kavo::rtf {

// The character set of fonts whose bytes are pictures.
inline constexpr std::int32_t kSymbolCharset = 2;
inline constexpr std::int32_t kNoCharset = -1;  // not declared
// Font numbers have 16 bits. No word processor writes a longer table; fonts beyond this many are ignored.
inline constexpr std::size_t kMostFonts = 32'768;

// The Windows code page of a character set (\fcharset). 0 for a set that means the document's code page.
unsigned code_page_of_charset(std::int32_t charset);
// The character set of a Windows code page, or kNoCharset.
std::int32_t charset_of_code_page(unsigned code_page);

struct Font {
  std::int32_t number = 0;
  std::int32_t charset = kNoCharset;
  unsigned code_page = 0;  // \cpg, 0 when not declared
  std::string name;        // in the font's own coding
  // The bytes of the entry between its number and its name (the family, the pitch), without groups, the character set
  // and the code page.
  std::string look;
  // The first font of the same name, not counting endings for other scripts (" CE", " Cyr"): people see these as one
  // font.
  std::size_t same_as = 0;
};

class FontTable {
 public:
  // Null for a number that the table does not define.
  const Font* find(std::int32_t number) const;
  const std::vector<Font>& fonts() const { return fonts_; }
  std::int32_t highest_number() const { return highest_; }
  // Completes `same_as`. When two fonts have one number, the last counts. Drops what exceeds the limit.
  void add(Font font);

 private:
  std::vector<Font> fonts_;
  std::unordered_map<std::int32_t, std::size_t> by_number_;
  std::unordered_map<std::string, std::size_t> by_name_;
  std::int32_t highest_ = 0;
};

// Takes the tokens of a font table group in order, without the braces around it.
class FontTableReader {
 public:
  explicit FontTableReader(FontTable& table) : table_(table) {}
  void take(const Token& token);
  // Call it after the last token.
  void finish();
  // True while the bytes of the next text belong to a name.
  bool is_in_name() const { return depth_ == entry_depth_; }

 private:
  void text(std::string_view bytes);

  FontTable& table_;
  Font font_;
  bool has_font_ = false;
  std::size_t depth_ = 0;
  std::size_t entry_depth_ = 0;  // where the font's number stands
};

// The codings of a document's text. Each is made when it is first asked for.
class CodingSet {
 public:
  // Null for a code page that is not supported.
  const TextCoding* find(unsigned code_page);

 private:
  std::unordered_map<unsigned, std::unique_ptr<TextCoding>> codings_;
};

// The code page of text in a font, which may be null (unknown). `document` is the document's code page.
unsigned code_page_of(const Font* font, unsigned document);

}  // namespace kavo::rtf
