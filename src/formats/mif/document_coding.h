// Finds out which coding a MIF document has.
//
// From version 8.0 on MIF is UTF-8; the version statement decides, not the program that wrote the document. Earlier
// documents are ASCII. The characters of the format's own set (that of the layout program's Western fonts) are written
// as `\xNN ` escapes. Asian text is in a double-byte code page, either directly or escaped byte by byte. A MIFEncoding
// statement declares the code page: it holds a word of the language. Without one each font may declare the coding of
// its strings (font_codings.h). Everything else is in the code page that the user names. The format: the MIF Reference,
// a public document.
#pragma once

#include <cstddef>
#include <string_view>

#include "formats/text/text_coding.h"

namespace kavo::mif {

// The declarations of a document are within this many bytes from its beginning.
inline constexpr std::size_t kDeclarationReach = 4096;

struct DocumentCoding {
  unsigned code_page = kUtf8CodePage;  // the code page of the bytes
  bool is_utf8 = true;                 // version 8.0 or later
  std::size_t mark_size = 0;           // length of the byte order mark
  std::string_view declared;           // before 8.0: the word of a known MIFEncoding statement, else ""

  // True when the declarations of fonts count.
  bool fonts_decide() const { return !is_utf8 && declared.empty(); }
  bool reads_as(const DocumentCoding& other) const { return is_utf8 == other.is_utf8 && code_page == other.code_page; }
};

// The coding of a document that begins with `beginning`. A document without a version is read like one before 8.0.
DocumentCoding coding_of(std::string_view beginning, unsigned source_code_page);
// The code page that `FEncoding` gives to a font in a document of `document_code_page`. 0 for an unknown name.
unsigned code_page_of_font(std::string_view encoding, unsigned document_code_page);

}  // namespace kavo::mif
