#include "platform/unicode.h"

#include <cstdint>

namespace kavo {
namespace {

// Length of the well-formed UTF-8 sequence at `at`, or 0 (Unicode Standard, table 3-7).
std::size_t sequence_length(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[at + i]); };
  const auto trail = [&](std::size_t i, unsigned low = 0x80, unsigned high = 0xBF) {
    return at + i < text.size() && byte(i) >= low && byte(i) <= high;
  };
  const unsigned lead = byte(0);
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return trail(1) ? 2 : 0;
  if (lead >= 0xE0 && lead <= 0xEF) {
    const unsigned low = lead == 0xE0 ? 0xA0 : 0x80;
    const unsigned high = lead == 0xED ? 0x9F : 0xBF;
    return trail(1, low, high) && trail(2) ? 3 : 0;
  }
  if (lead >= 0xF0 && lead <= 0xF4) {
    const unsigned low = lead == 0xF0 ? 0x90 : 0x80;
    const unsigned high = lead == 0xF4 ? 0x8F : 0xBF;
    return trail(1, low, high) && trail(2) && trail(3) ? 4 : 0;
  }
  return 0;
}

void append_utf8(std::string& out, char32_t c) {
  const auto put = [&](char32_t byte) { out.push_back(static_cast<char>(static_cast<unsigned char>(byte))); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0 | (c >> 6));
    put(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    put(0xE0 | (c >> 12));
    put(0x80 | ((c >> 6) & 0x3F));
    put(0x80 | (c & 0x3F));
  } else {
    put(0xF0 | (c >> 18));
    put(0x80 | ((c >> 12) & 0x3F));
    put(0x80 | ((c >> 6) & 0x3F));
    put(0x80 | (c & 0x3F));
  }
}

}  // namespace

std::u16string to_utf16(std::string_view utf8) {
  std::u16string out;
  out.reserve(utf8.size());
  for (std::size_t i = 0; i < utf8.size();) {
    const std::size_t length = sequence_length(utf8, i);
    const auto byte = [&](std::size_t k) { return static_cast<char32_t>(static_cast<unsigned char>(utf8[i + k])); };
    if (length == 0) {
      out.push_back(static_cast<char16_t>(0xDC00 + byte(0)));
      i += 1;
      continue;
    }
    char32_t c = byte(0);
    if (length == 2) c = ((c & 0x1F) << 6) | (byte(1) & 0x3F);
    if (length == 3) c = ((c & 0x0F) << 12) | ((byte(1) & 0x3F) << 6) | (byte(2) & 0x3F);
    if (length == 4) {
      c = ((c & 0x07) << 18) | ((byte(1) & 0x3F) << 12) | ((byte(2) & 0x3F) << 6) | (byte(3) & 0x3F);
      c -= 0x10000;
      out.push_back(static_cast<char16_t>(0xD800 + (c >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + (c & 0x3FF)));
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
