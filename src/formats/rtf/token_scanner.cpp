#include "formats/rtf/token_scanner.h"

#include <algorithm>
#include <limits>
#include <string>

#include "common/byte_scan.h"
#include "formats/text/ascii.h"

namespace kavo::rtf {
namespace {

// A backslash, a name, a sign, digits and a blank.
constexpr std::size_t kLongestWord = 1 + kLongestName + 1 + kMostDigits + 1;
// A first byte and a second one in hexadecimal.
constexpr std::size_t kLongestPair = 5;

bool is_syntax(char c) { return c == '{' || c == '}' || c == '\\'; }

int digit_value(char c) {
  if (is_digit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

bool is_character(const TextCoding& coding, char first, char second) {
  const char bytes[] = {first, second};
  std::string character;
  bool valid = false;
  return coding.decode_one({bytes, 2}, character, valid) == 2 && valid;
}

bool give(Token& token, TokenKind kind, std::string_view bytes) {
  token = {kind, bytes, {}, false, 0};
  return true;
}

}  // namespace

int byte_value(std::string_view bytes) {
  if (bytes.size() < 4 || bytes[0] != '\\' || bytes[1] != '\'') return -1;
  const int high = digit_value(bytes[2]);
  const int low = digit_value(bytes[3]);
  return high < 0 || low < 0 ? -1 : high * 16 + low;
}

Token word_at(std::string_view bytes) {
  std::size_t end = 1;
  while (end < bytes.size() && end <= kLongestName && is_letter(bytes[end])) ++end;
  Token token;
  token.kind = TokenKind::kWord;
  token.name = bytes.substr(1, end - 1);
  const bool is_negative = end + 1 < bytes.size() && bytes[end] == '-' && is_digit(bytes[end + 1]);
  if (is_negative) ++end;
  std::int64_t number = 0;
  for (const std::size_t first = end; end < bytes.size() && end - first < kMostDigits && is_digit(bytes[end]); ++end) {
    number = number * 10 + (bytes[end] - '0');
    token.has_number = true;
  }
  using Limits = std::numeric_limits<std::int32_t>;
  token.number =
      static_cast<std::int32_t>(std::clamp<std::int64_t>(is_negative ? -number : number, Limits::min(), Limits::max()));
  if (end < bytes.size() && bytes[end] == ' ') ++end;
  token.bytes = bytes.substr(0, end);
  return token;
}

bool TokenScanner::next(std::string_view bytes, bool is_all, const TextCoding* coding, Token& token) {
  if (data_left_ != 0) {
    const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(data_left_, bytes.size()));
    data_left_ -= size;
    return give(token, TokenKind::kData, bytes.substr(0, size));
  }
  switch (bytes.front()) {
    case '{':
      return give(token, TokenKind::kOpen, bytes.substr(0, 1));
    case '}':
      return give(token, TokenKind::kClose, bytes.substr(0, 1));
    case '\r':
    case '\n': {
      const auto end = std::find_if_not(bytes.begin(), bytes.end(), is_line_end);
      return give(token, TokenKind::kLineEnd, bytes.substr(0, static_cast<std::size_t>(end - bytes.begin())));
    }
    case '\\':
      return control(bytes, is_all, token);
    default:
      return text(bytes, is_all, coding, token);
  }
}

bool TokenScanner::control(std::string_view bytes, bool is_all, Token& token) {
  if (bytes.size() < kLongestWord && !is_all) {
    // Most words end early, and nothing after their end can change them.
    const auto end = std::find_if_not(bytes.begin() + 1, bytes.end(),
                                      [](char c) { return is_letter(c) || is_digit(c) || c == '-' || c == '\''; });
    if (end == bytes.end()) return false;
  }
  if (bytes.size() > 1 && is_letter(bytes[1])) {
    token = word_at(bytes);
    if (token.name == "bin" && token.number > 0) data_left_ = static_cast<std::uint64_t>(token.number);
    return true;
  }
  if (byte_value(bytes) >= 0) return give(token, TokenKind::kByte, bytes.substr(0, 4));
  return give(token, TokenKind::kSymbol, bytes.substr(0, 2));
}

bool TokenScanner::text(std::string_view bytes, bool is_all, const TextCoding* coding, Token& token) {
  const char* const begin = bytes.data();
  const char* const end = begin + bytes.size();
  const char* p = begin;
  const auto taken = [&] {
    return give(token, TokenKind::kText, bytes.substr(0, static_cast<std::size_t>(p - begin)));
  };
  if (!coding || !coding->has_lead_bytes()) {
    p = find_any<'{', '}', '\\', '\r', '\n'>(p, end);
    return taken();
  }
  for (; p != end && !is_syntax(*p) && !is_line_end(*p); ++p) {
    if (!coding->is_lead_byte(static_cast<unsigned char>(*p))) continue;
    const auto left = static_cast<std::size_t>(end - p);
    if (left < kLongestPair && !is_all) {
      // The bytes at hand are enough to decide, unless the second byte may be written in hexadecimal.
      if (left == 1 || p[1] == '\\') return p != begin && taken();
    }
    if (left < 2) continue;
    const std::string_view second(p + 1, left - 1);
    if (byte_value(second) >= 0 && is_character(*coding, *p, static_cast<char>(byte_value(second)))) continue;
    if (is_character(*coding, *p, p[1])) ++p;
  }
  return taken();
}

}  // namespace kavo::rtf
