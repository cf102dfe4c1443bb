#include "platform/unicode.h"

#include "platform/utf8.h"

namespace kavo {

std::u16string to_utf16(std::string_view utf8) {
  std::u16string out;
  out.reserve(utf8.size());
  for (std::size_t i = 0; i < utf8.size();) {
    if (static_cast<unsigned char>(utf8[i]) < 0x80) {
      out.push_back(static_cast<char16_t>(utf8[i++]));
      continue;
    }
    const std::size_t length = utf8_character_length(utf8.substr(i));
    if (length == 0) {
      out.push_back(static_cast<char16_t>(0xDC00 + static_cast<unsigned char>(utf8[i])));
      i += 1;
      continue;
    }
    const char32_t c = utf8_code_point(utf8.substr(i, length));
    if (c > 0xFFFF) {
      out.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF)));
    } else {
      out.push_back(static_cast<char16_t>(c));
    }
    i += length;
  }
  return out;
}

std::string to_utf8(std::u16string_view utf16) {
  std::string out;
  out.reserve(utf16.size());
  for (std::size_t i = 0; i < utf16.size(); ++i) {
    char32_t c = utf16[i];
    if (c < 0x80) {
      out.push_back(static_cast<char>(c));
      continue;
    }
    const bool high = c >= 0xD800 && c <= 0xDBFF;
    if (high && i + 1 < utf16.size() && utf16[i + 1] >= 0xDC00 && utf16[i + 1] <= 0xDFFF) {
      c = 0x10000 + ((c - 0xD800) << 10) + (utf16[i + 1] - 0xDC00);
      ++i;
    } else if (c >= 0xDC80 && c <= 0xDCFF) {
      out.push_back(static_cast<char>(static_cast<unsigned char>(c - 0xDC00)));
      continue;
    }
    append_utf8(out, c);
  }
  return out;
}

std::u16string ascii_upper(std::u16string_view text) {
  std::u16string out(text);
  for (char16_t& c : out)
    if (c >= u'a' && c <= u'z') c = static_cast<char16_t>(c - 32);
  return out;
}

std::u16string ascii_lower(std::u16string_view text) {
  std::u16string out(text);
  for (char16_t& c : out)
    if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c + 32);
  return out;
}

bool equal_ignoring_ascii_case(std::u16string_view a, std::u16string_view b) noexcept {
  if (a.size() != b.size()) return false;
  const auto lower = [](char16_t c) { return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c; };
  for (std::size_t i = 0; i < a.size(); ++i)
    if (lower(a[i]) != lower(b[i])) return false;
  return true;
}

}  // namespace kavo
