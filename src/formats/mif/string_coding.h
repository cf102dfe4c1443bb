// Converts strings of MIF documents to text and back. document_coding.h decides which coding a document has,
// character_set.h which characters its escapes and names mean.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "formats/text/text_coding.h"

namespace kavo::mif {

// A character that has a name of its own in a `Char` statement.
struct NamedCharacter {
  std::string_view name;
  std::string text;    // UTF-8
  std::string escape;  // its form in a string when it is always escaped there, else ""
};
// Null for an unknown name, and for one that is not text (a line break, a mark for hyphenation).
const NamedCharacter* find_named_character(std::string_view name);
// Null for a character that is written as it is or has no name.
const NamedCharacter* find_special_character(std::string_view utf8);

// How a document writes its strings. Making one takes time, so make one for each document.
class StringCoding {
 public:
  // Throws `failure` 5 for a code page that is not supported.
  StringCoding(unsigned code_page, bool is_utf8);

  const TextCoding& bytes() const { return bytes_; }  // the coding of bytes that are not escaped
  bool is_utf8() const { return is_utf8_; }
  bool is_double_byte() const { return is_double_byte_; }

  // Appends one character (UTF-8), escaped where it must be. Returns false and appends nothing when the document cannot
  // hold the character.
  bool append(std::string_view character, std::string& value) const;
  // Appends a character that the document cannot hold as `\uNNNN`, which this program reads in documents of all
  // versions.
  static void append_unicode_escape(std::string_view character, std::string& value);
  // True when `written`, an escape that append() wrote, and another escape after it would read as one double-byte
  // character.
  bool joins_escapes(std::string_view written) const;

 private:
  TextCoding bytes_;
  bool is_utf8_;
  bool is_double_byte_ = false;
};

// A part of a string's value.
struct StringPart {
  enum class Kind : unsigned char {
    kRun,     // text without escapes
    kText,    // one character in another form
    kBreak,   // a line end of the file, not part of the text
    kHyphen,  // the hyphen of an automatic line break, not part of the text
    kCode,    // an escape that is not a character
  };
  Kind kind = Kind::kRun;
  std::string_view bytes;
  std::string text;  // of kText, UTF-8
};

class StringReader {
 public:
  // Both must outlive the reader.
  StringReader(std::string_view value, const StringCoding& coding) : rest_(value), coding_(coding) {}
  bool next(StringPart& part);

 private:
  std::size_t find_special() const;
  std::size_t escape(StringPart& part) const;

  std::string_view rest_;
  const StringCoding& coding_;
};

// The value as people read it, in UTF-8, without what is not a character.
std::string decode_string(std::string_view value, const StringCoding& coding);
// True when the value holds more than blanks of any kind.
bool is_visible_string(std::string_view value, const StringCoding& coding);
bool is_blank_character(std::string_view utf8);

}  // namespace kavo::mif
