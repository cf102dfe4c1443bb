#include "formats/rc/rc_literal.h"

#include <algorithm>
#include <cstdio>

#include "formats/rc/rc_tokens.h"
#include "formats/text/ascii.h"

namespace kavo::rc {
namespace {

int digit_value(char c) {
  if (is_digit(c)) return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return 16;
}

bool is_surrogate(unsigned unit) { return (unit & 0xF800) == 0xD800; }

constexpr std::string_view kConversions = "diouxXeEfFgGaAcCsSpn";
constexpr std::string_view kSizes[] = {"I64", "I32", "hh", "ll", "h", "l", "L", "I", "w", "z", "j", "t"};

// The length of "%-5.2ld", 0 when there is no conversion.
std::size_t conversion_length(std::string_view text) {
  std::size_t at = 1;
  const auto skip = [&](std::string_view characters) {
    while (at < text.size() && characters.find(text[at]) != std::string_view::npos) ++at;
  };
  skip("-+#0");
  skip("0123456789*");
  if (at < text.size() && text[at] == '.') skip(".0123456789*");
  const auto* const size =
      std::ranges::find_if(kSizes, [&](std::string_view s) { return text.substr(at).starts_with(s); });
  if (size != std::end(kSizes)) at += size->size();
  if (at >= text.size() || kConversions.find(text[at]) == std::string_view::npos) return 0;
  return at + 1;
}

// The length of "%1" or "%12!s!".
std::size_t insert_length(std::string_view text) {
  constexpr std::size_t kLongestFormat = 16;  // of "!s!"
  std::size_t at = 1;
  while (at < text.size() && at < 3 && is_digit(text[at])) ++at;
  if (at == 1 || text[1] == '0') return 0;
  if (at < text.size() && text[at] == '!')
    if (const std::size_t end = text.substr(0, at + kLongestFormat).find('!', at + 1); end != std::string_view::npos)
      return end + 1;
  return at;
}

}  // namespace

std::size_t marker_length(std::string_view text, char before) {
  if (text.size() < 2) return 0;
  if (text[1] == '%') return 2;
  const std::size_t conversion = conversion_length(text);
  const bool is_percent =
      is_digit(before) && conversion < text.size() && text[conversion] >= 'a' && text[conversion] <= 'z';
  if (conversion != 0 && !is_percent) return conversion;
  return insert_length(text);
}

void RcLiteralReader::start(std::string_view literal) {
  rest_ = literal;
  is_wide_ = !literal.empty() && literal.front() != '"';
  is_first_ = true;
  before_ = 0;
}

void RcLiteralReader::give(RcPiece& piece, RcPiece::Kind kind, std::size_t length) {
  piece.kind = kind;
  piece.bytes = rest_.substr(0, length);
  before_ = piece.bytes.back();
  rest_.remove_prefix(length);
}

bool RcLiteralReader::next(RcPiece& piece) {
  piece.text.clear();
  if (rest_.empty()) return false;
  if (is_first_) {
    is_first_ = false;
    give(piece, RcPiece::kHidden, is_wide_ ? 2 : 1);
    return true;
  }
  const char c = rest_.front();
  if (c == '"') {
    piece.text = "\"";
    give(piece, RcPiece::kCharacter, 2);
  } else if (c == '\\' && rest_.size() > 1) {
    escape(piece);
  } else if (c == '\n' || c == '\r') {
    line_end(piece);
  } else if (c == '\t') {
    give(piece, RcPiece::kTab, 1);
  } else if (const std::size_t marker = c == '%' ? marker_length(rest_, before_) : 0; marker != 0) {
    give(piece, RcPiece::kMarker, marker);
  } else {
    plain(piece);
  }
  return true;
}

void RcLiteralReader::escape(RcPiece& piece) {
  const char c = rest_[1];
  if (c == '\\' || c == '"') {
    piece.text = c;
    give(piece, RcPiece::kCharacter, 2);
  } else if (c == 'n') {
    give(piece, RcPiece::kLineBreak, 2);
  } else if (c == 'r') {
    give(piece, rest_.starts_with("\\r\\n") ? RcPiece::kLineBreak : RcPiece::kOther,
         rest_.starts_with("\\r\\n") ? 4 : 2);
  } else if (c == 't') {
    give(piece, RcPiece::kTab, 2);
  } else if (c == '\r' || c == '\n') {
    give(piece, RcPiece::kHidden, rest_.substr(1).starts_with("\r\n") ? 3 : 2);
  } else if (c == 'x' || c == 'X') {
    number(piece, 2, 16, is_wide_ ? 4 : 2);
  } else if (c >= '0' && c <= '7') {
    number(piece, 1, 8, 3);
  } else {
    give(piece, RcPiece::kOther, 2);
    // The bytes of one character stay together.
    while (!rest_.empty() && (static_cast<unsigned char>(piece.bytes.back()) & 0x80) != 0 &&
           (static_cast<unsigned char>(rest_.front()) & 0xC0) == 0x80) {
      piece.bytes = {piece.bytes.data(), piece.bytes.size() + 1};
      rest_.remove_prefix(1);
    }
  }
}

void RcLiteralReader::number(RcPiece& piece, std::size_t digits_at, unsigned base, std::size_t most) {
  unsigned value = 0;
  std::size_t end = digits_at;
  for (; end < rest_.size() && end < digits_at + most; ++end) {
    const int digit = digit_value(rest_[end]);
    if (digit >= static_cast<int>(base)) break;
    value = value * base + static_cast<unsigned>(digit);
  }
  if (end == digits_at) return give(piece, RcPiece::kOther, 2);
  bool is_valid = false;
  if (value < 0x80 || is_wide_) {
    is_valid = !is_surrogate(value) && is_xml_character(value);
    if (is_valid) append_utf8(piece.text, value);
  } else if (numbers_ && value <= 0xFF) {
    const char byte = static_cast<char>(value);
    const std::size_t length = numbers_->decode_one({&byte, 1}, piece.text, is_valid);
    is_valid = is_valid && length == 1 && !piece.text.empty();
  }
  if (!is_valid) piece.text.clear();
  give(piece, is_valid ? RcPiece::kCharacter : RcPiece::kOther, end);
}

// The blanks at the beginning of the next line belong to the line end.
void RcLiteralReader::line_end(RcPiece& piece) {
  std::size_t end = rest_.starts_with("\r\n") ? 2 : 1;
  while (end < rest_.size() && (rest_[end] == ' ' || rest_[end] == '\t')) ++end;
  give(piece, RcPiece::kLineBreak, end);
}

void RcLiteralReader::plain(RcPiece& piece) {
  std::size_t end = 0;
  char before = before_;
  while (end < rest_.size()) {
    const char c = rest_[end];
    const bool is_lead = coding_.is_lead_byte(static_cast<unsigned char>(c));
    if (c == '"' || c == '\n' || c == '\r' || c == '\t' || (c == '\\' && end + 1 < rest_.size())) break;
    if (c == '%' && end != 0 && marker_length(rest_.substr(end), before) != 0) break;
    before = c;
    end += is_lead && end + 2 <= rest_.size() && is_trail_byte(rest_[end + 1]) ? 2 : 1;
  }
  give(piece, RcPiece::kText, std::max<std::size_t>(end, 1));
}

void RcLiteralWriter::text(std::string_view utf8) {
  parts_.push_back({Part::kText, std::string(utf8)});
  while (!is_wide_ && !utf8.empty()) {
    const std::size_t length = std::max<std::size_t>(utf8_character_length(utf8), 1);
    is_wide_ = !fits(utf8.substr(0, length));
    utf8.remove_prefix(length);
  }
}

bool RcLiteralWriter::fits(std::string_view character) const {
  if (character.size() == 1) return true;
  std::string encoded;
  bool is_missing = false;
  coding_.encode(character, encoded, [&](std::string_view, std::string&) { is_missing = true; });
  return !is_missing && (coding_.is_utf16() || encoded.size() != 2 || encoded[1] != '\\');
}

void RcLiteralWriter::finish(std::string& bytes) const {
  const auto write = [&](std::string_view ascii) { coding_.encode(ascii, bytes, {}); };
  const std::string_view quote = is_wide_ ? "L\"" : "\"";
  bool is_open = false;
  bool is_first = true;
  for (const Part& part : parts_) {
    const bool is_literal = part.kind != Part::kMacro;
    if (is_open && !is_literal) write("\"");
    if (!is_first && (!is_open || !is_literal)) write(" ");
    if (!is_open && is_literal) write(quote);
    is_open = is_literal;
    is_first = false;
    if (part.kind == Part::kText)
      append(part.text, bytes);
    else
      bytes += part.text;
  }
  if (is_first) write(quote);
  if (is_first || is_open) write("\"");
}

void RcLiteralWriter::append(std::string_view utf8, std::string& bytes) const {
  const bool has_numbers = is_wide_ && !coding_.is_utf16();
  std::string written;
  const auto number = [&](char32_t unit) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "\\x%04X", static_cast<unsigned>(unit));
    written += digits;
  };
  while (!utf8.empty()) {
    const std::size_t length = std::max<std::size_t>(utf8_character_length(utf8), 1);
    const char32_t code = length == 1 ? 0 : utf8_code_point(utf8.substr(0, length));
    const char c = utf8.front();
    if (c == '"') {
      written += "\"\"";
    } else if (c == '\\') {
      written += "\\\\";
    } else if (c == '\n') {
      written += "\\n";
    } else if (c == '\r') {
      written += "\\r";
    } else if (c == '\t') {
      written += "\\t";
    } else if (length == 1 || !has_numbers) {
      written += utf8.substr(0, length);
    } else if (code < 0x10000) {
      number(code);
    } else {
      number(0xD7C0 + (code >> 10));
      number(0xDC00 + (code & 0x3FF));
    }
    utf8.remove_prefix(length);
  }
  coding_.encode(written, bytes, {});
}

}  // namespace kavo::rc
