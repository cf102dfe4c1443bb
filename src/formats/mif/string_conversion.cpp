#include "formats/mif/string_conversion.h"

#include <algorithm>

#include "formats/mif/escapes.h"

namespace kavo::mif {
namespace {

bool is_ascii(char c) { return static_cast<unsigned char>(c) < 0x80; }

}  // namespace

const std::string& StringConversion::convert(std::string_view value) {
  result_.clear();
  misfit_.clear();
  joins_escape_ = false;
  StringReader reader(value, from_);
  for (StringPart part; reader.next(part);) convert_part(part);
  return result_;
}

void StringConversion::convert_part(const StringPart& part) {
  switch (part.kind) {
    case StringPart::Kind::kRun:
      return convert_run(part.bytes);
    case StringPart::Kind::kText: {
      // `\t` and the like, and codes below 80, mean the same in every version.
      const ByteEscape escape = byte_escape(part.bytes);
      const bool is_common = part.bytes.size() <= 2 || (escape.length == part.bytes.size() && escape.byte < 0x80);
      return is_common ? keep(part.bytes) : write_text(part.text);
    }
    case StringPart::Kind::kCode:
      // Otherwise it is a backslash and the character after it.
      if (byte_escape(part.bytes).length != 0) return keep(part.bytes);
      keep(part.bytes.substr(0, 1));
      return convert_run(part.bytes.substr(1));
    default:
      return keep(part.bytes);
  }
}

void StringConversion::convert_run(std::string_view run) {
  while (!run.empty()) {
    const auto plain = static_cast<std::size_t>(std::ranges::find_if_not(run, is_ascii) - run.begin());
    if (plain != 0) keep(run.substr(0, plain));
    run.remove_prefix(plain);
    if (run.empty()) return;
    bool is_valid = false;
    std::string character;
    const std::size_t length = from_.bytes().decode_one(run, character, is_valid);
    if (is_valid)
      write_character(character);
    else
      write_invalid(run.substr(0, length));
    run.remove_prefix(length);
  }
}

void StringConversion::write_text(std::string_view utf8) {
  while (!utf8.empty()) {
    const std::size_t length = std::max<std::size_t>(utf8_character_length(utf8), 1);
    write_character(utf8.substr(0, length));
    utf8.remove_prefix(length);
  }
}

void StringConversion::write_character(std::string_view utf8) {
  written_.clear();
  const bool fits = to_.append(utf8, written_) && !(joins_escape_ && byte_escape(written_).length != 0);
  if (!fits) {
    written_.clear();
    StringCoding::append_unicode_escape(utf8, written_);
    keep_misfit(utf8);
  }
  result_ += written_;
  joins_escape_ = to_.joins_escapes(written_);
}

void StringConversion::write_invalid(std::string_view bytes) {
  for (const char byte : bytes) {
    written_.clear();
    append_byte_escape(static_cast<unsigned char>(byte), written_);
    keep_misfit(written_);
    result_ += written_;
  }
  joins_escape_ = to_.joins_escapes(written_);
}

void StringConversion::keep(std::string_view bytes) {
  result_ += bytes;
  joins_escape_ = false;
}

void StringConversion::keep_misfit(std::string_view shown) {
  if (misfit_.empty()) misfit_ = shown;
}

}  // namespace kavo::mif
