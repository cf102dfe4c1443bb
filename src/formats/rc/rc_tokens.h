// Cuts resource scripts into words, literals, marks, comments and preprocessor lines.
//
// The language is that of the resource-definition statements of the Windows API, which the C preprocessor reads first:
// comments and preprocessor lines are allowed wherever C allows them, and a backslash at the end of a line joins the
// next one. A literal is "..." or L"...". A quote inside is doubled, or follows a backslash if there is another quote
// later on the line (otherwise the literal is a path that ends in a backslash). A line end inside belongs to the
// literal.
//
// The bytes of all tokens, in order, are the script, whatever is wrong with it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "formats/text/text_coding.h"

namespace kavo::rc {

// A longer literal, or a longer preprocessor line, is handed out in pieces of the kind kRest. Compilers take at most
// 4,096 characters, and a literal that is never closed must not fill the memory.
inline constexpr std::size_t kLongestLiteral = 64 * 1024;  // bytes

enum class RcTokenKind : std::uint8_t {
  kBlank,      // blanks, line ends, joined lines
  kComment,    // a piece of a comment
  kDirective,  // a preprocessor line from its "#" to its end, or to a comment in it
  kLiteral,    // with its quotes and the L
  kWord,       // a name, a keyword, a number, a file name without quotes
  kMark,       // one of , ( ) { } |
  kRest,       // a piece of a preprocessor line after a comment, or of a literal that is too long or has no end
};

// True when a byte can be the second one of a character. Quotes and line ends never are.
constexpr bool is_trail_byte(char c) { return static_cast<unsigned char>(c) >= 0x40; }

// True for what the preprocessor can replace: a letter or "_", then letters, digits and "_".
bool is_macro_name(std::string_view word);
// True when a line begins in a blank or a comment, or after it. A joined line goes on.
bool ends_line(RcTokenKind kind, std::string_view bytes);

struct RcToken {
  RcTokenKind kind = RcTokenKind::kRest;
  std::string_view bytes;
};

// The first bytes must be the start of a line.
class RcTokenScanner {
 public:
  // The coding of the next bytes, which knows the lead bytes of two-byte characters; null for UTF-8. It must outlive
  // its use.
  void coding(const TextCoding* coding) { coding_ = coding; }

  // Reads the token at the start of `bytes` (not empty), which must begin where the last token ended. False when more
  // bytes are needed, which never happens when these are the last ones (`is_all`).
  bool next(std::string_view bytes, bool is_all, RcToken& token);

 private:
  enum class State : std::uint8_t {
    kBetween,
    kLineComment,
    kBlockComment,
    kDirectiveRest,  // after a comment in a preprocessor line, or in a long one
    kLongLiteral,
  };

  bool give(RcToken& token, RcTokenKind kind, std::string_view bytes, State next);
  bool blank(std::string_view bytes, RcToken& token);
  bool line_comment(std::string_view bytes, bool is_all, RcToken& token);
  bool block_comment(std::string_view bytes, bool is_all, RcToken& token);
  bool directive(std::string_view bytes, bool is_all, RcToken& token);
  bool directive_rest(std::string_view bytes, bool is_all, RcToken& token);
  bool literal(std::string_view bytes, std::size_t prefix, bool is_all, RcToken& token);
  bool long_literal(std::string_view bytes, bool is_all, RcToken& token);
  bool word(std::string_view bytes, bool is_all, RcToken& token);
  // Moves `at` through a literal. True after its closing quote, false where more bytes are needed.
  bool find_literal_end(std::string_view bytes, bool is_all, std::size_t& at) const;
  bool is_lead(char c) const { return coding_ && coding_->is_lead_byte(static_cast<unsigned char>(c)); }
  bool is_pair(char first, char second) const { return is_lead(first) && is_trail_byte(second); }

  const TextCoding* coding_ = nullptr;
  State state_ = State::kBetween;
  bool is_line_start_ = true;     // a preprocessor line may begin
  bool is_in_directive_ = false;  // a preprocessor line goes on after the comment
  std::size_t searched_ = 0;      // how far a search has found no end of the literal
};

}  // namespace kavo::rc
