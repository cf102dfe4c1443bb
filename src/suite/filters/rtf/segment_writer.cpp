#include "suite/filters/rtf/segment_writer.h"

#include <algorithm>
#include <charconv>

#include "formats/rtf/characters.h"
#include "formats/rtf/token_scanner.h"

namespace kavo::rtf {
namespace {

// If more bytes follow each \uN, \uc is set again.
constexpr unsigned kMostFallback = 2;

bool is_letter_or_digit(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9'); }

// True when the last control word could absorb what comes next.
bool ends_in_open_word(std::string_view bytes) {
  std::size_t begin = bytes.size();
  while (begin != 0 && (is_letter_or_digit(bytes[begin - 1]) || bytes[begin - 1] == '-')) --begin;
  std::size_t backslashes = 0;
  while (backslashes < begin && bytes[begin - 1 - backslashes] == '\\') ++backslashes;
  if (begin == bytes.size() || backslashes % 2 == 0) return false;
  const std::string_view word = bytes.substr(begin - 1);
  return word_at(word).bytes.size() == word.size();
}

// True when a code is part of a character that the next bytes could complete.
bool is_part_of_character(std::string_view bytes) {
  if (bytes.size() > 2 && bytes.starts_with("\\u") && (bytes[2] == '-' || (bytes[2] >= '0' && bytes[2] <= '9')))
    return true;
  return static_cast<unsigned char>(bytes.back()) >= 0x80 ||
         (bytes.size() >= 4 && byte_value(bytes.substr(bytes.size() - 4)) >= 0x80);
}

bool is_right_to_left_character(char32_t c) {
  return (c >= 0x590 && c <= 0x8FF) || (c >= 0xFB1D && c <= 0xFDFF) || (c >= 0xFE70 && c <= 0xFEFF) ||
         (c >= 0x1E800 && c <= 0x1EEFF);
}

bool has_right_to_left(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = std::max<std::size_t>(utf8_character_length(text), 1);
    if (length > 1 && is_right_to_left_character(utf8_code_point(text.substr(0, length)))) return true;
    text.remove_prefix(length);
  }
  return false;
}

// The number after the last control word with this name, `usual` when there is none.
std::int32_t last_number(std::string_view words, std::string_view name, std::int32_t usual) {
  TokenScanner scanner;
  Token token;
  for (; !words.empty(); words.remove_prefix(token.bytes.size())) {
    scanner.next(words, true, nullptr, token);
    if (token.is_word(name) && token.has_number) usual = token.number;
  }
  return usual;
}

// How many of the characters a coding has.
std::size_t count_of_known(std::string_view text, const TextCoding* coding) {
  if (!coding) return 0;
  std::size_t known = 0;
  std::string bytes;
  while (!text.empty()) {
    const std::size_t length = std::max<std::size_t>(utf8_character_length(text), 1);
    bool is_known = length > 1;
    bytes.clear();
    if (is_known)
      coding->encode(text.substr(0, length), bytes, [&](std::string_view, std::string&) { is_known = false; });
    known += is_known ? 1 : 0;
    text.remove_prefix(length);
  }
  return known;
}

void append_byte(unsigned char byte, std::string& bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  bytes.append("\\'").append(1, digits[byte >> 4]).append(1, digits[byte & 15]);
}

}  // namespace

void SegmentWriter::write(std::string_view translation) {
  CodedTextReader reader(translation);
  for (CodedPart part; reader.next(part);) {
    if (part.is_code)
      code(part);
    else
      text(part.text);
  }
  while (!open_.empty()) close_top();
  look({});
  ends_in_code_ = false;
  verbatim(context_.rest);
  // Without text, what comes after it would begin the group and be read as its destination.
  if (context_.rest.ends_with('{')) bytes_ += "{}";
  if (ends_in_byte_ || ends_in_word_) before(' ');
}

void SegmentWriter::text(std::string_view text) {
  std::string words = context_.is_plain ? std::string() : words_here();
  std::int32_t font = last_number(words, "f", context_.font);
  const std::int32_t twin = context_.is_plain ? font : fonts_.twin_of(font);
  if (twin != font && count_of_known(text, fonts_.coding_of(twin)) > count_of_known(text, fonts_.coding_of(font))) {
    font = twin;
    words += "\\f" + std::to_string(twin);
  }
  if (settings_.is_right_to_left && !context_.is_plain && has_right_to_left(text)) words = "\\rtlch" + words;
  unsigned fallback = context_.fallback;
  if (fallback > kMostFallback && !context_.is_plain) {
    fallback = 1;
    words += "\\uc1";
  }
  look(words);
  encode(text, fonts_.coding_of(font), fallback);
}

void SegmentWriter::code(const CodedPart& part) {
  const Hole::Code* const found = hole_.find(part);
  if (!found) return;
  if (part.kind == CodeKind::kOpen) return open(*found);
  if (part.kind == CodeKind::kClose) return close(found->id);
  const auto words = context_.code_words.find(found->id);
  const bool has_look = words != context_.code_words.end() && !words->second.empty();
  if (has_look)
    look(words->second);
  else if (group_ != words_here())
    look({});
  verbatim(hole_.bytes_of(part));
  // Braces around several codes and no text would make one code of them.
  if (has_look) look({});
}

void SegmentWriter::open(const Hole::Code& code) {
  Open opened{code.id, {}, code.begin != code.end, words_here()};
  const auto words = context_.code_words.find(code.id);
  if (words != context_.code_words.end()) opened.words = words->second;
  if (opened.is_field) {
    look({});
    verbatim(std::string_view(hole_.original).substr(code.begin, code.end - code.begin));
    for (const Hole::Code& other : hole_.codes)
      if (other.id == code.id && other.kind == CodeKind::kClose)
        opened.closing = std::string_view(hole_.original).substr(other.begin, other.end - other.begin);
  }
  open_.push_back(std::move(opened));
}

// Closes all that was opened inside, too.
void SegmentWriter::close(std::uint32_t id) {
  if (std::ranges::find(open_, id, &Open::id) == open_.end()) return;
  while (open_.back().id != id) close_top();
  close_top();
}

void SegmentWriter::close_top() {
  if (open_.back().is_field) {
    look({});
    verbatim(open_.back().closing);
  }
  open_.pop_back();
}

void SegmentWriter::verbatim(std::string_view code) {
  if (code.empty()) return;
  // A line end keeps two codes apart. It has no meaning itself.
  if (ends_in_code_ && !ends_in_byte_)
    bytes_ += '\n';
  else
    before(code.front());
  bytes_ += code;
  ends_in_code_ = true;
  ends_in_word_ = ends_in_open_word(code);
  ends_in_byte_ = is_part_of_character(code);
}

// Makes the words those of the group that is open.
void SegmentWriter::look(const std::string& words) {
  if (words == group_) return;
  before(group_.empty() ? '{' : '}');
  if (!group_.empty()) bytes_ += '}';
  if (!words.empty()) bytes_.append("{").append(words);
  ends_in_word_ = !words.empty();
  group_ = words;
}

// Keeps the last bytes written from absorbing the byte that follows.
void SegmentWriter::before(char first) {
  const bool is_syntax = first == '\\' || first == '{' || first == '}';
  // Neither a brace nor a line end alone would do: a raw byte would absorb the brace, and a line end does not separate.
  if (ends_in_byte_)
    bytes_ += first == '}' ? "\n" : "\n{}";
  else if (ends_in_word_ && !is_syntax)
    bytes_ += ' ';
  ends_in_word_ = false;
  ends_in_byte_ = false;
  ends_in_code_ = false;
}

void SegmentWriter::plain(std::string_view bytes) {
  before(bytes.front());
  bytes_ += bytes;
}

void SegmentWriter::encode(std::string_view text, const TextCoding* coding, unsigned fallback) {
  std::string coded;
  while (!text.empty()) {
    const std::size_t length = std::max<std::size_t>(utf8_character_length(text), 1);
    const std::string_view character = text.substr(0, length);
    text.remove_prefix(length);
    const std::string_view own = written_form(character);
    if (!own.empty()) {
      plain(own);
    } else if (character == "\t") {
      plain("\\tab ");
    } else if (character == "\n" || character == "\r") {
      if (character == "\n" || !text.starts_with('\n')) plain(context_.is_plain ? " " : "\\line ");
    } else if (length == 1) {
      plain(character);
    } else {
      bool is_known = coding != nullptr;
      coded.clear();
      if (coding) coding->encode(character, coded, [&](std::string_view, std::string&) { is_known = false; });
      if (!is_known) {
        append_unicode(utf8_code_point(character), fallback);
        continue;
      }
      before('\\');
      for (const char byte : coded) append_byte(static_cast<unsigned char>(byte), bytes_);
    }
  }
}

void SegmentWriter::append_unicode(char32_t code_point, unsigned fallback) {
  const auto unit = [&](char32_t value) {
    const auto number = static_cast<std::int32_t>(value);
    plain("\\u" + std::to_string(number > 0x7FFF ? number - 0x10000 : number));
    bytes_.append(fallback == 0 ? std::string(1, ' ') : std::string(fallback, '?'));
  };
  if (code_point > 0xFFFF) {
    unit(0xD800 + ((code_point - 0x10000) >> 10));
    unit(0xDC00 + ((code_point - 0x10000) & 0x3FF));
  } else {
    unit(code_point);
  }
}

}  // namespace kavo::rtf
