// Cuts RTF (1.9) into braces, control words, control symbols, hexadecimal bytes, raw data, line ends and text.
//
// The bytes of all tokens, in order, are the document, whatever is wrong with it. RTF's own syntax is seven-bit. Older
// programs on East Asian systems wrote two-byte characters unescaped, and their second byte may look like a brace or a
// backslash. So the scanner needs to know the coding of the current text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "formats/text/text_coding.h"

namespace kavo::rtf {

// No program has a longer control word; the scanner cuts the name here.
inline constexpr std::size_t kLongestName = 64;  // bytes
inline constexpr std::size_t kMostDigits = 10;

enum class TokenKind : std::uint8_t {
  kOpen,     // "{"
  kClose,    // "}"
  kWord,     // a backslash, letters, perhaps a number, perhaps the blank that ends it
  kSymbol,   // a backslash and one other byte; a lone backslash at the end of the document
  kByte,     // a backslash, ' and two hexadecimal digits
  kText,     // a run of other bytes, cut anywhere between characters
  kLineEnd,  // a run of CR and LF, which mean nothing
  kData,     // bytes after \bin, any piece of them
};

struct Token {
  TokenKind kind = TokenKind::kText;
  std::string_view bytes;
  std::string_view name;  // of a control word, without the backslash
  bool has_number = false;
  std::int32_t number = 0;  // of a control word; clamped to what fits

  bool is_word(std::string_view word) const { return kind == TokenKind::kWord && name == word; }
  char symbol() const { return bytes.size() > 1 ? bytes[1] : '\0'; }
};

// The value of a hexadecimal byte ("\'e9") at the start of `bytes`, -1 when there is none.
int byte_value(std::string_view bytes);

// The control word at the start of `bytes`, which must be a backslash and a letter, with all its bytes at hand.
Token word_at(std::string_view bytes);

class TokenScanner {
 public:
  // Reads the token at the start of `bytes` (not empty), which must begin where the last token ended. `coding` is the
  // coding of the text there, or null. False when more bytes are needed, which never happens when these are the last
  // ones (`is_all`).
  bool next(std::string_view bytes, bool is_all, const TextCoding* coding, Token& token);

 private:
  bool control(std::string_view bytes, bool is_all, Token& token);
  bool text(std::string_view bytes, bool is_all, const TextCoding* coding, Token& token);

  std::uint64_t data_left_ = 0;  // bytes
};

}  // namespace kavo::rtf
