#include "formats/html/page_input.h"

#include "formats/text/text_coding.h"

namespace kavo::html {

PageInput::PageInput(BlockReader& document, unsigned code_page)
    : document_(&document),
      is_utf16_(code_page == kUtf16LittleEndian || code_page == kUtf16BigEndian),
      is_big_endian_(code_page == kUtf16BigEndian) {}

std::string_view PageInput::window() const {
  if (is_utf16_) return std::string_view(decoded_).substr(begin_);
  return document_ ? document_->window() : memory_;
}

void PageInput::consume(std::size_t count) {
  if (is_utf16_)
    begin_ += count;
  else if (document_)
    document_->consume(count);
  else
    memory_.remove_prefix(count);
}

bool PageInput::more() {
  if (!is_utf16_) return document_ && document_->more();
  decoded_.erase(0, begin_);
  begin_ = 0;
  while (!decode_units())
    if (!document_->more()) return false;
  return true;
}

// Decodes every whole character of the document's window. False when it holds none.
bool PageInput::decode_units() {
  const std::string_view bytes = document_->window();
  const auto unit_at = [&](std::size_t at) {
    const auto first = static_cast<unsigned char>(bytes[at]);
    const auto second = static_cast<unsigned char>(bytes[at + 1]);
    return static_cast<char32_t>(is_big_endian_ ? first << 8 | second : second << 8 | first);
  };
  std::size_t at = 0;
  while (at + 2 <= bytes.size()) {
    const char32_t unit = unit_at(at);
    if (unit >= 0xD800 && unit <= 0xDBFF) {
      if (at + 4 > bytes.size() && !document_->exhausted()) break;
      const char32_t low = at + 4 <= bytes.size() ? unit_at(at + 2) : 0;
      if (low >= 0xDC00 && low <= 0xDFFF) {
        append_utf8(decoded_, 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00));
        at += 4;
        continue;
      }
    }
    append_utf8(decoded_, unit);
    at += 2;
  }
  document_->consume(at);
  return at != 0;
}

std::string_view PageInput::original(std::string_view bytes) {
  if (!is_utf16_) return bytes;
  original_.clear();
  const auto append = [&](unsigned unit) {
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit & 0xFF);
    original_ += is_big_endian_ ? high : low;
    original_ += is_big_endian_ ? low : high;
  };
  for (std::size_t at = 0; at < bytes.size();) {
    // append_utf8() wrote these bytes, so they need no check.
    const auto lead = static_cast<unsigned char>(bytes[at]);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    const char32_t character = utf8_code_point(bytes.substr(at, length));
    if (character > 0xFFFF) {
      append(static_cast<unsigned>(0xD800 + ((character - 0x10000) >> 10)));
      append(static_cast<unsigned>(0xDC00 + ((character - 0x10000) & 0x3FF)));
    } else {
      append(static_cast<unsigned>(character));
    }
    at += length;
  }
  return original_;
}

std::size_t PageInput::original_size(std::string_view bytes) const {
  if (!is_utf16_) return bytes.size();
  std::size_t units = 0;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if ((byte & 0xC0) != 0x80) units += byte >= 0xF0 ? 2 : 1;
  }
  return units * 2;
}

}  // namespace kavo::html
