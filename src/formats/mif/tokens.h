// Cuts MIF into openings and ends of statements, strings and the rest.
//
// MIF is nested text: `<Name value>`, strings between ` and ', comments from # to the end of the line. A line that
// begins with "&" or "=" is data of an imported object and may hold anything. Only ' ends a string, whatever comes
// before it: a ' inside is always written as an escape, and a string may end in an escaped backslash (`\\'). "#" begins
// a comment after ">", and where only blanks precede it on its line. After an opening it is part of a value.
//
// The bytes of all tokens in order are the document, however broken it is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kavo::mif {

// A longer string is handed out in pieces of the kind kRest. No text is so long, and a string that is never closed must
// not fill the memory.
inline constexpr std::size_t kLongestString = 128 * 1024;  // bytes

enum class MifTokenKind : std::uint8_t {
  kOpen,    // "<" and the name after it
  kClose,   // ">"
  kString,  // with its quotes
  kRest,    // blanks, line ends, numbers, words, comments, object data; any piece of them
};

struct MifToken {
  MifTokenKind kind = MifTokenKind::kRest;
  std::string_view bytes;

  std::string_view name() const { return bytes.substr(1); }                     // of an opening
  std::string_view value() const { return bytes.substr(1, bytes.size() - 2); }  // of a string
};

// The document must be handed in from the beginning of a line on.
class MifTokenScanner {
 public:
  // Reads the token at the start of `bytes` (not empty), which must begin where the last token ended. False when more
  // bytes are needed to decide, which never happens when `is_all` says that no bytes follow.
  bool next(std::string_view bytes, bool is_all, MifToken& token);

 private:
  enum class State : std::uint8_t {
    kLineStart,   // object data may begin
    kBetween,     // a comment may begin
    kOpening,     // after the name of a statement
    kLineRest,    // in a comment or in object data
    kLongString,  // in a string that is too long
  };

  bool give(MifToken& token, MifTokenKind kind, std::string_view bytes, State next);
  bool opening(std::string_view bytes, bool is_all, MifToken& token);
  bool string(std::string_view bytes, bool is_all, MifToken& token);
  bool long_string(std::string_view bytes, MifToken& token);
  bool line_end(std::string_view bytes, MifToken& token);
  bool line_rest(std::string_view bytes, MifToken& token);
  bool words(std::string_view bytes, MifToken& token);

  State state_ = State::kLineStart;
  std::size_t searched_ = 0;  // how far a search has found no end of the string
};

}  // namespace kavo::mif
