// The tokens of scripts, the same for every language.
//
// Every byte of a script belongs to exactly one token: all tokens of a piece in succession are the piece.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "formats/text/ascii.h"

namespace kavo::script {

enum class Language : std::uint8_t {
  kUnknown,  // a language that has no lexer here (PerlScript ...)
  kVbScript,
  kJavaScript,  // also JScript, which has the same tokens
  kJava,
  kPhp,
};

enum class TokenKind : std::uint8_t {
  kBlank,    // blanks and tabs; in VBScript also the "_" that continues a line, with its line end
  kLineEnd,  // one CR LF, LF or CR
  kComment,  // without the line end after it
  kName,     // words and keywords; in PHP with "$" and namespace, in VBScript with "[ ]"; also a value that a string of
             // PHP inserts without braces ("$row[key]")
  kNumber,   // also a date of VBScript
  kOperator,   // one operator or bracket
  kLiteral,    // a string, or a piece of a string that inserted values interrupt
  kCharacter,  // 'c' in Java
  kPattern,    // /regular expression/flags
  kBlockEnd,   // "?>" of PHP, the last token of a piece
  kUnknown,    // bytes that are not valid in the language
};

// How a literal is quoted, which decides how its value is written.
enum class LiteralForm : std::uint8_t {
  kDouble,     // "..."
  kSingle,     // '...'
  kTemplate,   // `...`
  kTextBlock,  // """...""" in Java
  kHeredoc,    // <<<X
  kNowdoc,     // <<<'X'
  kCommand,    // `...` in PHP, which runs a command
};

struct Token {
  TokenKind kind = TokenKind::kUnknown;
  LiteralForm form = LiteralForm::kDouble;  // of a literal
  bool begins = true;                       // of a literal: the token is its first piece
  bool ends = true;       // of a literal: the token is its last piece; also false for a literal that is never closed
  std::size_t begin = 0;  // byte offset in the piece of script
  std::size_t end = 0;
  // The bytes at the two ends of a literal that are not part of its text: quotes, "${", "}", "{".
  std::size_t open = 0;
  std::size_t close = 0;

  std::size_t size() const { return end - begin; }
};

using kavo::is_digit;
using kavo::is_letter;
using kavo::lower;
inline bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\f' || c == '\v'; }
inline bool ends_line(char c) { return is_line_end(c); }
inline bool is_hex_digit(char c) { return is_digit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }
// Every byte beyond ASCII belongs to a name, since no operator of these languages contains one.
inline bool is_name_start(char c) { return is_letter(c) || c == '_' || static_cast<unsigned char>(c) >= 0x80; }
inline bool is_name_byte(char c) { return is_name_start(c) || is_digit(c); }

// Compares ASCII letters without case. `lower_case` must hold small letters only.
inline bool equal_word(std::string_view word, std::string_view lower_case) {
  if (word.size() != lower_case.size()) return false;
  for (std::size_t i = 0; i < word.size(); ++i)
    if (lower(word[i]) != lower_case[i]) return false;
  return true;
}

}  // namespace kavo::script
