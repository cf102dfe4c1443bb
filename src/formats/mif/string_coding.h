// Strings of MIF documents as text, and text as strings. Which coding a document has: document_coding.h; which
// characters its escapes and names stand for: character_set.h.
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
  std::string escape;  // in a string, for one that is always written by name or escape; "" for another
};
// Null for a name that is none, or that is no text (a line break, a mark for hyphenation).
const NamedCharacter* find_named_character(std::string_view name);
// Null for a character that is written as it is or has no name.
const NamedCharacter* find_special_character(std::string_view utf8);

// How the strings of a document are written. Made once for a document.
class StringCoding {
 public:
  // Throws `failure` 5 for a code page that is not supported.
  StringCoding(unsigned code_page, bool is_utf8);

  const TextCoding& bytes() const { return bytes_; }  // of those that stand as they are
  bool is_utf8() const { return is_utf8_; }
  bool is_double_byte() const { return is_double_byte_; }

  // One character (UTF-8) in a string, escaped where it must be. False, and nothing is appended, when the document
  // cannot hold it.
  bool append(std::string_view character, std::string& value) const;
  // A character that the document cannot hold: as `\uNNNN`, which this program reads in documents of all versions.
  static void append_unicode_escape(std::string_view character, std::string& value);
  // True when the escape that append() wrote and another one behind it would read as one character of two bytes.
  bool joins_escapes(std::string_view written) const;

 private:
  TextCoding bytes_;
  bool is_utf8_;
  bool is_double_byte_ = false;
};

// A part of a string's value.
struct StringPart {
  enum class Kind : unsigned char {
    kRun,     // text as it stands
    kText,    // one character in another form
    kBreak,   // a line end, which is one of the file and not of the text
    kHyphen,  // the hyphen of an automatic line break, which is not of the text either
    kCode,    // an escape that means no character
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

// A value as people read it, UTF-8; what means no character is left out.
std::string decode_string(std::string_view value, const StringCoding& coding);
// True when it holds more than blanks of any kind.
bool is_visible_string(std::string_view value, const StringCoding& coding);
bool is_blank_character(std::string_view utf8);

}  // namespace kavo::mif
