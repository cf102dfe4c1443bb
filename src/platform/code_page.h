// Port: the document's ANSI code page.
//
// Converters carry bytes; text is decoded only where people or hosts see it. The system's ANSI code page on Windows;
// natively a setting (default UTF-8).
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace kavo {

class CodePage {
 public:
  virtual ~CodePage() = default;
  virtual unsigned number() const = 0;  // 932, 1252, 65001 ...
  // IsDBCSLeadByte: always false in a single-byte code page and in UTF-8.
  virtual bool is_lead_byte(unsigned char byte) const = 0;
  // A byte that is not valid in the code page becomes U+DC00 + byte natively and turns back into that byte; on
  // Windows the system's own replacement rules hold.
  virtual std::u16string decode(std::string_view bytes) const = 0;
  // Characters that the code page lacks become "?" or the system's best fit.
  virtual std::string encode(std::u16string_view text) const = 0;

  // How many bytes at the end of `bytes` belong to a character that is not complete yet: 0 to 3. `bytes` must start at
  // the beginning of a character. Works for double-byte code pages and UTF-8 alike.
  std::size_t incomplete_tail(std::string_view bytes) const;
};

// The number that a name ("932", "cp1252", "windows-1252", "utf-8", "utf8", in capital or small letters) means. Throws
// `failure` 5 for one that is not supported; the description lists the supported ones.
unsigned code_page_number(std::string_view name);

// A code page by its number or by name, as code_page_number() reads it; throws `failure` 5 as that does.
std::unique_ptr<CodePage> make_code_page(std::string_view name);

}  // namespace kavo
