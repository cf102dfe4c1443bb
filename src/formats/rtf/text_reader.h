// Reads the text of a run of RTF without braces and formatting: bytes in a font's coding, raw or in hexadecimal, \uN
// with its fallback for older programs, and characters with names. Some programs write \ucN in the middle of a run,
// even between the two halves of one character, so it belongs to the run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "formats/rtf/token_scanner.h"
#include "formats/text/text_coding.h"

namespace kavo::rtf {

struct TextUnit {
  enum class Kind : std::uint8_t {
    kPlain,      // a run of characters that stand for themselves
    kCharacter,  // one character in another form
    kInvalid,    // bytes that are not valid in the run's coding
    kNothing,    // line ends, \ucN
  };
  Kind kind = Kind::kNothing;
  std::string text;        // UTF-8
  std::string_view bytes;  // of the document
};

// How many bytes follow each \uN, as \ucN says. No program uses more than 16.
unsigned fallback_of(const Token& uc);

class TextReader {
 public:
  // `coding` is null when it is unknown; then only ASCII is valid. `fallback` is the number of bytes after each \uN
  // (the \ucN in effect before the run). `coding` and `bytes` must outlive the reader.
  TextReader(std::string_view bytes, const TextCoding* coding, unsigned fallback)
      : bytes_(bytes), coding_(coding), fallback_(fallback) {}
  // False at the end.
  bool next(TextUnit& unit);
  // How many bytes follow each \uN at the place that has been reached.
  unsigned fallback() const { return fallback_; }

 private:
  struct Byte {
    int value = -1;  // -1 when the bytes there are something else
    std::size_t size = 0;
  };
  Byte byte_at(std::size_t place, bool is_second = false) const;
  std::size_t behind_line_ends(std::size_t place) const;
  std::size_t behind_fallback(std::size_t place) const;
  bool is_pair_with_syntax(std::size_t place) const;
  bool give(TextUnit& unit, TextUnit::Kind kind, std::size_t end);
  bool plain(TextUnit& unit);
  bool control(TextUnit& unit);
  bool coded(TextUnit& unit);
  bool unicode(TextUnit& unit, std::int32_t number, std::size_t end);
  bool second_half(std::size_t& place, char32_t& half);

  std::string_view bytes_;
  const TextCoding* coding_;
  unsigned fallback_;
  std::size_t at_ = 0;
};

}  // namespace kavo::rtf
