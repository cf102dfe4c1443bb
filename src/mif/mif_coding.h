// How to read the bytes of a MIF file, found out from its beginning. formats/mif/document_coding.h has the rules.
//
// Converters carry the values of a document as bytes. They decode them only to compare the names of marker types, and
// when the side files have another coding than the document. In a double-byte code page a backquote may be the second
// byte of a character. That holds for files before 8.0 only: in UTF-8 every backquote is a backquote.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "formats/mif/document_coding.h"
#include "formats/mif/string_coding.h"

namespace kavo {

class MifCoding {
 public:
  static constexpr std::size_t kHeaderSize = mif::kDeclarationReach;  // bytes of a file that of() looks at

  // The coding of a file that begins with `beginning`. A file before 8.0 without a declaration is in the ANSI code
  // page. Throws `failure` 5 for a code page that is not supported.
  static MifCoding of(std::string_view beginning);

  const mif::DocumentCoding& document() const { return document_; }
  const mif::StringCoding& strings() const { return *strings_; }

  // True when the byte at p is the second one of a double-byte character; [begin, p] begins at a character.
  bool is_trail_byte(const char* begin, const char* p) const {
    return double_byte_ && p != begin && static_cast<unsigned char>(p[-1]) >= 0x80 && follows_lead_byte(begin, p);
  }
  // How many bytes at the end of `bytes` begin a character that is cut off there (0 or 1).
  std::size_t incomplete_tail(std::string_view bytes) const {
    return is_trail_byte(bytes.data(), bytes.data() + bytes.size()) ? 1 : 0;
  }
  // The text of a name, its escapes resolved. What is not a character stays as it is written.
  std::u16string decode(std::string_view bytes) const;

 private:
  bool follows_lead_byte(const char* begin, const char* p) const;

  mif::DocumentCoding document_;
  std::shared_ptr<const mif::StringCoding> strings_;
  bool double_byte_ = false;
};

}  // namespace kavo
