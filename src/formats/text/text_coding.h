// The coding of a document's bytes: an ANSI code page, Japanese EUC, UTF-8 or UTF-16.
//
// Unlike the code page port this tells which bytes are invalid and which characters are missing, the same way on every
// system, so that filters can keep the one as codes and escape the other. It asks the port for every character once
// and believes it only when the way back gives the same.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/code_page.h"

namespace kavo {

inline constexpr unsigned kUtf16LittleEndian = 1200;
inline constexpr unsigned kUtf16BigEndian = 1201;
inline constexpr unsigned kUtf8CodePage = 65001;

class TextCoding {
 public:
  // Throws `failure` 5 for a number that is not supported, with the supported ones in the description.
  explicit TextCoding(unsigned number);
  ~TextCoding();
  TextCoding(const TextCoding&) = delete;
  TextCoding& operator=(const TextCoding&) = delete;

  unsigned number() const { return number_; }
  bool is_utf16() const { return number_ == kUtf16LittleEndian || number_ == kUtf16BigEndian; }
  // True when the byte begins a character of two in a double-byte code page: its trail byte may look like syntax.
  bool is_lead_byte(unsigned char byte) const { return is_lead_[byte]; }
  // True in a double-byte code page.
  bool has_lead_bytes() const { return has_lead_bytes_; }

  // The character that begins at `bytes` (not empty): its length in bytes, its UTF-8 form appended to `utf8`. When the
  // bytes are invalid nothing is appended, `valid` is false and the length is that of the shortest invalid piece.
  std::size_t decode_one(std::string_view bytes, std::string& utf8, bool& valid) const;
  // As long a run from the start of `bytes` as is valid and of characters that XML has, appended to `utf8`; the number
  // of bytes it took.
  std::size_t decode_run(std::string_view bytes, std::string& utf8) const;
  // How many bytes at the end begin a character that is not complete yet; `bytes` must start at a character.
  std::size_t incomplete_tail(std::string_view bytes) const;

  // Appends `utf8` in this coding. For a character that it lacks, `missing` is called with the character's UTF-8 form
  // and appends what stands for it (bytes in this coding), or throws.
  using Missing = std::function<void(std::string_view character, std::string& bytes)>;
  void encode(std::string_view utf8, std::string& bytes, const Missing& missing) const;

 private:
  struct Tables;
  unsigned number_;
  bool is_lead_[256] = {};
  bool has_lead_bytes_ = false;
  std::unique_ptr<Tables> tables_;
};

// Length of the well-formed UTF-8 character at the start of `bytes`, 0 when there is none (one cut short included).
std::size_t utf8_character_length(std::string_view bytes);
// The code point of a well-formed UTF-8 character.
char32_t utf8_code_point(std::string_view character);
void append_utf8(std::string& utf8, char32_t code_point);
// Of the control characters XML 1.0 has tab, LF and CR only.
bool is_xml_character(char32_t code_point);

}  // namespace kavo
