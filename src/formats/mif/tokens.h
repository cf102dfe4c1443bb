// Cuts MIF into openings of statements, their ends, strings and the rest.
//
// MIF is a nested text: `<Name value>`, strings between ` and ', comments from # to the end of the line. A line that
// begins with "&" or "=" is data of an imported object and holds anything. A backslash does not keep a string from
// ending: a ' inside is always written as an escape, and a string may end in an escaped backslash (`\\'). "#" begins a
// comment behind ">" and where nothing but blanks stands before it on its line; behind an opening it is a value.
//
// The bytes of all tokens, in order, are the document, whatever is wrong with it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kavo::mif {

// A longer string is handed out in pieces that count as rest: no text needs more, and a string that is never closed
// must not fill the memory.
inline constexpr std::size_t kLongestString = 128 * 1024;  // bytes

enum class MifTokenKind : std::uint8_t {
  kOpen,    // "<" and the name behind it
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

// Begins at the beginning of a line.
class MifTokenScanner {
 public:
  // The token that begins `bytes` (not empty), which start where the last token ended. False when it takes more bytes
  // to tell; never when these are all that there are (`is_all`).
  bool next(std::string_view bytes, bool is_all, MifToken& token);

 private:
  enum class State : std::uint8_t {
    kLineStart,   // object data may begin
    kBetween,     // a comment may begin
    kOpening,     // behind the name of a statement
    kLineRest,    // in a comment or in object data
    kLongString,  // in one that is too long
  };

  bool give(MifToken& token, MifTokenKind kind, std::string_view bytes, State next);
  bool opening(std::string_view bytes, bool is_all, MifToken& token);
  bool string(std::string_view bytes, bool is_all, MifToken& token);
  bool long_string(std::string_view bytes, MifToken& token);
  bool line_end(std::string_view bytes, MifToken& token);
  bool line_rest(std::string_view bytes, MifToken& token);
  bool words(std::string_view bytes, MifToken& token);

  State state_ = State::kLineStart;
  std::size_t searched_ = 0;  // how far a string has been looked through in vain
};

}  // namespace kavo::mif
