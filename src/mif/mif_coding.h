// How the bytes of a MIF file are to be read as text, told from its first statement.
//
// MIF 8.0 and later is UTF-8. Earlier files are ASCII with `\xNN ` escapes (the MIF character set, called FrameRoman
// by its users) or, in double-byte versions, raw text of the ANSI code page. Converters carry all values as they
// stand; decoding is needed for the names of marker types only, and the lead-byte rule of the code page (a backquote
// may be the second byte of a character) holds in files before 8.0 only: in UTF-8 every backquote is one.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kavo {

class MifCoding {
 public:
  static constexpr std::size_t kHeaderSize = 64;  // bytes at the beginning of a file that of() wants to see

  // A file that begins so. Without a version it is read like one before 8.0.
  static MifCoding of(std::string_view beginning);

  // True when the byte at p is the second one of a double-byte character; [begin, p] begins at a character.
  bool is_trail_byte(const char* begin, const char* p) const {
    return double_byte_ && p != begin && static_cast<unsigned char>(p[-1]) >= 0x80 && follows_lead_byte(begin, p);
  }
  // How many bytes at the end of `bytes` are the beginning of a character that is cut off (0 or 1).
  std::size_t incomplete_tail(std::string_view bytes) const {
    return is_trail_byte(bytes.data(), bytes.data() + bytes.size()) ? 1 : 0;
  }
  // The text of a name, with its escapes resolved.
  std::u16string decode(std::string_view bytes) const;

 private:
  static bool follows_lead_byte(const char* begin, const char* p);

  bool utf8_ = false;
  bool double_byte_ = false;
};

}  // namespace kavo
