// Which coding a MIF document has.
//
// From version 8.0 on MIF is UTF-8: the version statement counts, not the program that wrote the document. Earlier
// documents are ASCII with `\xNN ` escapes for the characters of the format's own set (that of the layout program's
// Western fonts); Asian text stands there in a double-byte code page, as it is or, byte for byte, as such escapes.
// Which one a MIFEncoding statement says by holding a word of its language. Without one it is the code page that the
// user names. The format: the MIF Reference, a public document.
//
// Without MIFEncoding each font may say which coding its strings have (`<FEncoding ...>`), and one paragraph may mix
// them. That is not followed: such a document is read in one coding.
#pragma once

#include <cstddef>
#include <string_view>

#include "formats/text/text_coding.h"

namespace kavo::mif {

// The declarations of a document lie within these first bytes.
inline constexpr std::size_t kDeclarationReach = 4096;

struct DocumentCoding {
  unsigned code_page = kUtf8CodePage;  // of the bytes as they stand
  bool is_utf8 = true;                 // version 8.0 or later
  std::size_t mark_size = 0;           // of the byte order mark in front
  std::string_view declared;           // before 8.0: the word of a MIFEncoding statement that is understood, else ""

  bool reads_as(const DocumentCoding& other) const { return is_utf8 == other.is_utf8 && code_page == other.code_page; }
};

// The coding of a document that begins so. One without a version is read like one before 8.0.
DocumentCoding coding_of(std::string_view beginning, unsigned source_code_page);

}  // namespace kavo::mif
