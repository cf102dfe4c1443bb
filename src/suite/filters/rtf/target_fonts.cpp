#include "suite/filters/rtf/target_fonts.h"

#include <algorithm>

namespace kavo::rtf {
namespace {

// The highest font number. A document that needs more fonts gets none.
constexpr std::int32_t kHighestFont = 32'767;

template <class Take>
void for_each_token(std::string_view bytes, Take&& take) {
  TokenScanner scanner;
  Token token;
  for (; !bytes.empty(); bytes.remove_prefix(token.bytes.size())) {
    scanner.next(bytes, true, nullptr, token);
    take(token);
  }
}

}  // namespace

void TargetFonts::write_table(std::string_view original, std::string& bytes) {
  FontTableReader reader(fonts_);
  for_each_token(original, [&](const Token& token) { reader.take(token); });
  reader.finish();
  highest_ = fonts_.highest_number();
  copy_with_names(original, bytes);
  const std::vector<Font> own = fonts_.fonts();
  for (const Font& font : own) add_twin(font, bytes);
}

// The name of a font is its text up to the semicolon.
void TargetFonts::copy_with_names(std::string_view original, std::string& bytes) const {
  if (map_.empty()) {
    bytes += original;
    return;
  }
  std::size_t depth = 0;
  std::size_t entry_depth = 0;
  const MappedFont* mapped = nullptr;
  bool is_named = true;  // the name of the font has been written
  for_each_token(original, [&](const Token& token) {
    if (token.kind == TokenKind::kOpen) ++depth;
    if (token.kind == TokenKind::kClose && depth != 0) --depth;
    if (token.is_word("f") && token.has_number) {
      const Font* const font = fonts_.find(token.number);
      mapped = font ? map_.find(font->name) : nullptr;
      entry_depth = depth;
      is_named = false;
    }
    const bool is_name =
        (token.kind == TokenKind::kText || token.kind == TokenKind::kByte) && mapped && depth == entry_depth;
    if (!is_name) {
      bytes += token.bytes;
      return;
    }
    const std::size_t end = token.kind == TokenKind::kByte ? token.bytes.npos : token.bytes.find(';');
    const bool is_blank = token.bytes.find_first_not_of(' ') == token.bytes.npos;
    if (!is_named && !is_blank) {
      bytes += mapped->target;
      is_named = true;
    }
    if (end == token.bytes.npos) return;
    bytes += token.bytes.substr(end);
    mapped = nullptr;
  });
}

void TargetFonts::add_twin(const Font& font, std::string& bytes) {
  const MappedFont* const mapped = map_.find(font.name);
  const std::int32_t charset = mapped && mapped->charset >= 0 ? mapped->charset : added_charset_;
  if (charset == kNoCharset || font.charset == kSymbolCharset || twins_.contains(font.number)) return;
  if (code_page_of_charset(charset) == code_page_of(&font, code_page_)) return;
  for (const Font& other : fonts_.fonts())
    if (other.same_as == font.same_as && other.charset == charset) {
      twins_[font.number] = other.number;
      return;
    }
  if (highest_ == kHighestFont) return;
  Font twin = font;
  twin.number = ++highest_;
  twin.charset = charset;
  twin.code_page = 0;
  bytes.append("{\\f").append(std::to_string(twin.number)).append(font.look);
  if (bytes.back() == ' ') bytes.pop_back();
  bytes.append("\\fcharset").append(std::to_string(charset)).append(" ");
  bytes.append(mapped ? mapped->target : font.name).append(";}");
  twins_[font.number] = twin.number;
  fonts_.add(std::move(twin));
}

const TextCoding* TargetFonts::coding_of(std::int32_t font) {
  const Font* const known = fonts_.find(font);
  return known ? codings_.find(code_page_of(known, code_page_)) : nullptr;
}

std::int32_t TargetFonts::twin_of(std::int32_t font) const {
  const auto found = twins_.find(font);
  return found == twins_.end() ? font : found->second;
}

}  // namespace kavo::rtf
