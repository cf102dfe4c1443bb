// The text of a literal: quotes, escapes, joined lines, printf markers.
//
// Escapes are those of string literals in resource scripts: \a \n \r \t \\ \" "" \x with up to two digits (four in
// L"..."), octal numbers of up to three digits. Where the compilers do not agree (other letters after a backslash)
// nothing is changed. In "..." a number is a byte of the script's code page, in L"..." a unit of UTF-16.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "formats/text/text_coding.h"

namespace kavo::rc {

struct RcPiece {
  enum Kind : std::uint8_t {
    kHidden,     // an enclosing quote, or what joins two lines
    kText,       // characters that stand for themselves
    kCharacter,  // one character in another form; `text` is its UTF-8
    kLineBreak,  // \n, \r\n, a line end
    kTab,
    kMarker,  // of printf or FormatMessage: "%d", "%1!s!"
    kOther,   // an escape for a character that XML cannot hold
  };
  Kind kind = kText;
  std::string_view bytes;
  std::string text;
};

// Reads the literals of one text. Give each of them to start() in turn.
class RcLiteralReader {
 public:
  // `coding` is the coding of the bytes. `numbers` is the coding of numbers in "...", or null. Both must outlive the
  // reader.
  RcLiteralReader(const TextCoding& coding, const TextCoding* numbers) : coding_(coding), numbers_(numbers) {}

  // A literal without the quote that closes it.
  void start(std::string_view literal);
  // False at its end.
  bool next(RcPiece& piece);

 private:
  void escape(RcPiece& piece);
  void number(RcPiece& piece, std::size_t digits_at, unsigned base, std::size_t most);
  void line_end(RcPiece& piece);
  void plain(RcPiece& piece);
  void give(RcPiece& piece, RcPiece::Kind kind, std::size_t length);

  const TextCoding& coding_;
  const TextCoding* numbers_;
  std::string_view rest_;
  bool is_wide_ = false;
  bool is_first_ = false;
  char before_ = 0;  // the byte in front of `rest_`
};

// The length of the printf marker or FormatMessage insert at the start of `text`; 0 when there is none. A percent sign
// between a digit and a word ("50%discount") is not a marker; `before` is the byte in front of `text`.
std::size_t marker_length(std::string_view text, char before);

// Writes a text as a literal, or as several with macros between them.
//
// The literal becomes L"..." when the coding lacks a character of the text, or when the second byte of a character
// looks like a backslash (compilers that read bytes would take it for one). In L"..." characters beyond ASCII are
// numbers, unless the script is in UTF-16: compilers do not agree on what other bytes mean there.
class RcLiteralWriter {
 public:
  // `coding` is the coding of the bytes and must outlive the writer.
  RcLiteralWriter(const TextCoding& coding, bool is_wide) : coding_(coding), is_wide_(is_wide) {}

  // An empty text opens a literal, too.
  void text(std::string_view utf8);
  // Adds bytes to the literal exactly as the script has them.
  void code(std::string_view bytes) { parts_.push_back({Part::kCode, std::string(bytes)}); }
  // Ends the literal and adds the bytes of a macro.
  void macro(std::string_view bytes) { parts_.push_back({Part::kMacro, std::string(bytes)}); }
  // True when it is or has become L"...".
  bool is_wide() const { return is_wide_; }
  // Appends the literals and macros; an empty literal when there is nothing.
  void finish(std::string& bytes) const;

 private:
  struct Part {
    enum Kind : std::uint8_t { kText, kCode, kMacro };
    Kind kind;
    std::string text;
  };
  // False for a character that must be written as a number.
  bool fits(std::string_view character) const;
  void append(std::string_view utf8, std::string& bytes) const;

  const TextCoding& coding_;
  bool is_wide_;
  std::vector<Part> parts_;
};

}  // namespace kavo::rc
