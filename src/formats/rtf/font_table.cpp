#include "formats/rtf/font_table.h"

#include <algorithm>
#include <iterator>

#include "platform/failure.h"

namespace kavo::rtf {
namespace {

struct Charset {
  std::int32_t number;
  unsigned code_page;
};
constexpr Charset kCharsets[] = {
    {0, 1252},   {128, 932},  {129, 949},  {134, 936},  {136, 950},  {161, 1253}, {162, 1254},
    {163, 1258}, {177, 1255}, {178, 1256}, {186, 1257}, {204, 1251}, {222, 874},  {238, 1250},
    {77, 10000}, {88, 10029}, {89, 10007}, {254, 437},  {255, 850},
};

// Endings in the names of fonts for other scripts.
constexpr std::string_view kScripts[] = {" CE",       " Cyr",      " Greek",        " Tur",   " Baltic",
                                         " (Hebrew)", " (Arabic)", " (Vietnamese)", " (Thai)"};

constexpr std::size_t kLongestFontName = 256;  // bytes
constexpr std::size_t kLongestLook = 1024;     // bytes; an entry with more has control words that are none of a font

std::string without_script(std::string name) {
  for (const std::string_view script : kScripts)
    if (name.ends_with(script)) return name.substr(0, name.size() - script.size());
  return name;
}

}  // namespace

unsigned code_page_of_charset(std::int32_t charset) {
  const auto* const found = std::ranges::find(kCharsets, charset, &Charset::number);
  return found == std::end(kCharsets) ? 0 : found->code_page;
}

std::int32_t charset_of_code_page(unsigned code_page) {
  const auto* const found = std::ranges::find(kCharsets, code_page, &Charset::code_page);
  return found == std::end(kCharsets) ? kNoCharset : found->number;
}

unsigned code_page_of(const Font* font, unsigned document) {
  if (!font) return document;
  if (font->code_page != 0) return font->code_page;
  const unsigned own = code_page_of_charset(font->charset);
  return own != 0 ? own : document;
}

const Font* FontTable::find(std::int32_t number) const {
  const auto found = by_number_.find(number);
  return found == by_number_.end() ? nullptr : &fonts_[found->second];
}

void FontTable::add(Font font) {
  const std::size_t place = fonts_.size();
  if (place == kMostFonts) return;
  font.same_as = by_name_.try_emplace(without_script(font.name), place).first->second;
  by_number_[font.number] = place;
  highest_ = std::max(highest_, font.number);
  fonts_.push_back(std::move(font));
}

void FontTableReader::take(const Token& token) {
  switch (token.kind) {
    case TokenKind::kOpen:
      ++depth_;
      break;
    case TokenKind::kClose:
      // A group around a font ends it, with or without a semicolon.
      if (depth_ == entry_depth_) finish();
      if (depth_ != 0) --depth_;
      break;
    case TokenKind::kWord:
      if (token.name == "f" && token.has_number && (!has_font_ || depth_ == entry_depth_)) {
        finish();
        font_.number = token.number;
        has_font_ = true;
        entry_depth_ = depth_;
      } else if (has_font_ && depth_ == entry_depth_) {
        if (token.name == "fcharset")
          font_.charset = token.number;
        else if (token.name == "cpg")
          font_.code_page = static_cast<unsigned>(std::max(token.number, 0));
        else if (font_.look.size() + token.bytes.size() <= kLongestLook)
          font_.look += token.bytes;
      }
      break;
    case TokenKind::kText:
    case TokenKind::kByte:
      if (has_font_ && depth_ == entry_depth_) text(token.bytes);
      break;
    default:
      break;
  }
}

void FontTableReader::text(std::string_view bytes) {
  const std::size_t end = std::min(bytes.find(';'), bytes.size());
  bytes = bytes.substr(0, end);
  if (font_.name.empty()) bytes.remove_prefix(std::min(bytes.find_first_not_of(" \t"), bytes.size()));
  font_.name += bytes.substr(0, kLongestFontName - std::min(kLongestFontName, font_.name.size()));
}

void FontTableReader::finish() {
  if (has_font_) table_.add(std::move(font_));
  font_ = {};
  has_font_ = false;
}

const TextCoding* CodingSet::find(unsigned code_page) {
  const auto [place, is_new] = codings_.try_emplace(code_page);
  if (is_new) {
    try {
      place->second = std::make_unique<TextCoding>(code_page);
    } catch (const failure& reason) {
      if (!reason.is(FailureNumber::kInvalidCall)) throw;
    }
  }
  return place->second.get();
}

}  // namespace kavo::rtf
