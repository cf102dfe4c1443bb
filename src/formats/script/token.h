// What the scripts of pages are made of, the same for every language.
//
// Every byte of a script belongs to exactly one token: the tokens of a piece, put one behind the other, are the piece.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "formats/text/ascii.h"

namespace kavo::script {

enum class Language : std::uint8_t {
  kUnknown,  // a language without a lexer here (PerlScript ...)
  kVbScript,
  kJavaScript,  // also JScript, the same to a lexer
  kJava,
  kPhp,
};

enum class TokenKind : std::uint8_t {
  kBlank,      // blanks, tabs, and in VBScript a continued line's "_" with its line end
  kLineEnd,    // one CR LF, LF or CR
  kComment,    // without the line end behind it
  kName,       // words and keywords; in PHP with "$" and namespace, in VBScript with "[ ]"; what a string of PHP
               // inserts without braces, whole ("$row[key]")
  kNumber,     // also the dates of VBScript
  kOperator,   // one operator or bracket
  kLiteral,    // a string, or a piece of one that values interrupt
  kCharacter,  // 'c' of Java
  kPattern,    // /regular expression/flags
  kBlockEnd,   // "?>" of PHP; nothing comes behind it
  kUnknown,    // bytes that are not valid in the language
};

// How a literal is quoted, which decides how its value is written.
enum class LiteralForm : std::uint8_t {
  kDouble,     // "..."
  kSingle,     // '...'
  kTemplate,   // `...`
  kTextBlock,  // """...""" of Java
  kHeredoc,    // <<<X
  kNowdoc,     // <<<'X'
  kCommand,    // `...` of PHP, which is run
};

struct Token {
  TokenKind kind = TokenKind::kUnknown;
  LiteralForm form = LiteralForm::kDouble;  // of a literal
  bool begins = true;                       // of a literal: this is its first piece
  bool ends = true;                         // this is its last piece; false also for a literal that is never closed
  std::size_t begin = 0;                    // in the piece of script, in bytes
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
// Every byte beyond ASCII belongs to a name: no operator of these languages holds one.
inline bool is_name_start(char c) { return is_letter(c) || c == '_' || static_cast<unsigned char>(c) >= 0x80; }
inline bool is_name_byte(char c) { return is_name_start(c) || is_digit(c); }

// Equal when ASCII letters are compared without case; `lower_case` has none that are large.
inline bool equal_word(std::string_view word, std::string_view lower_case) {
  if (word.size() != lower_case.size()) return false;
  for (std::size_t i = 0; i < word.size(); ++i)
    if (lower(word[i]) != lower_case[i]) return false;
  return true;
}

}  // namespace kavo::script
