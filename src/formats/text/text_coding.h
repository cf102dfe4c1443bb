// The coding of a document's bytes: an ANSI code page, Japanese EUC, UTF-8 or UTF-16.
//
// Unlike the code page port it reports invalid bytes and missing characters, in the same way on every system, so that
// filters can keep the bytes as codes and escape the characters. It asks the port for each character once, and accepts
// the answer only if converting it back gives the same bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/code_page.h"
#include "platform/utf8.h"

namespace kavo {

inline constexpr unsigned kUtf16LittleEndian = 1200;
inline constexpr unsigned kUtf16BigEndian = 1201;
inline constexpr unsigned kUtf8CodePage = 65001;

class TextCoding {
 public:
  // `number` is the Windows number of a code page. Throws `failure` 5 for one that is not supported, with a list of
  // those that are.
  explicit TextCoding(unsigned number);
  ~TextCoding();
  TextCoding(const TextCoding&) = delete;
  TextCoding& operator=(const TextCoding&) = delete;

  unsigned number() const { return number_; }
  bool is_utf16() const { return number_ == kUtf16LittleEndian || number_ == kUtf16BigEndian; }
  // True for the first byte of a character of two bytes. Its second byte may look like syntax.
  bool is_lead_byte(unsigned char byte) const { return is_lead_[byte]; }
  // True in a double-byte code page.
  bool has_lead_bytes() const { return has_lead_bytes_; }

  // Reads the character at the start of `bytes` (not empty), appends its UTF-8 form to `utf8` and returns its length in
  // bytes. When the bytes are invalid, appends nothing, clears `valid` and returns the length of the shortest invalid
  // piece.
  std::size_t decode_one(std::string_view bytes, std::string& utf8, bool& valid) const;
  // Appends to `utf8` the longest run at the start of `bytes` that is valid and consists of characters allowed in XML.
  // Returns how many bytes it took.
  std::size_t decode_run(std::string_view bytes, std::string& utf8) const;
  // Appends to `utf8` all characters of `bytes`, those that XML forbids too. Calls `invalid` with each shortest invalid
  // piece, a part of `bytes`; it may append a substitute to `utf8`, take away what is there, or throw.
  template <class Invalid>
  void decode(std::string_view bytes, std::string& utf8, const Invalid& invalid) const {
    while (!bytes.empty()) {
      bytes.remove_prefix(decode_run(bytes, utf8));
      if (bytes.empty()) return;
      bool is_valid = false;
      const std::size_t length = decode_one(bytes, utf8, is_valid);
      if (!is_valid) invalid(bytes.substr(0, length));
      bytes.remove_prefix(length);
    }
  }
  // How many bytes at the end belong to an incomplete character. `bytes` must begin with a whole character.
  std::size_t incomplete_tail(std::string_view bytes) const;

  // Appends `utf8` in this coding. Calls `missing` with the UTF-8 form of each character that the coding lacks; it
  // appends a replacement (bytes in this coding) or throws.
  using Missing = std::function<void(std::string_view character, std::string& bytes)>;
  void encode(std::string_view utf8, std::string& bytes, const Missing& missing) const;

 private:
  struct Tables;
  unsigned number_;
  bool is_lead_[256] = {};
  bool has_lead_bytes_ = false;
  std::unique_ptr<Tables> tables_;
};

// Whether XML 1.0 allows the character. Of the control characters it allows tab, LF and CR only.
bool is_xml_character(char32_t code_point);

}  // namespace kavo
