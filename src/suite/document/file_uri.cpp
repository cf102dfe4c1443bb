#include "suite/document/file_uri.h"

#include <algorithm>
#include <charconv>

#include "formats/text/text_coding.h"
#include "formats/xml/xml_text.h"

namespace kavo {
namespace {

void append_percent(std::string& uri, char c) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(c);
  uri += '%';
  uri += digits[byte >> 4];
  uri += digits[byte & 15];
}

}  // namespace

std::string uri_of(std::string_view file_name) {
  constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
  std::string uri;
  for (const char c : file_name) {
    if (plain.find(c) != std::string_view::npos)
      uri += c;
    else
      append_percent(uri, c);
  }
  return uri;
}

std::string readable_name(std::string_view file_name) {
  const auto is_hexadecimal = [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
  };
  std::string name;
  for (std::string_view rest = file_name; !rest.empty();) {
    const std::size_t length = utf8_character_length(rest);
    const std::string_view character = rest.substr(0, std::max<std::size_t>(length, 1));
    const bool looks_escaped = rest.size() > 2 && is_hexadecimal(rest[1]) && is_hexadecimal(rest[2]);
    if (length == 0 || (character == "%" && looks_escaped) || !is_xml_character(utf8_code_point(character)))
      for (const char c : character) append_percent(name, c);
    else
      name += character;
    rest.remove_prefix(character.size());
  }
  return name;
}

std::string from_uri(std::string_view uri) {
  std::string text;
  for (std::size_t i = 0; i < uri.size(); ++i) {
    unsigned byte = 0;
    const char* const digits = uri.data() + i + 1;
    if (uri[i] == '%' && uri.size() - i > 2 && std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
      text += static_cast<char>(byte);
      i += 2;
    } else {
      text += uri[i];
    }
  }
  return text;
}

}  // namespace kavo
