#include "formats/rtf/style_sheet.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "formats/rtf/text_reader.h"
#include "platform/trimmed.h"

namespace kavo::rtf {
namespace {

constexpr std::size_t kLongestStyleName = 1024;  // bytes, as the document writes it

std::string lower(std::string_view text) {
  std::string result(text);
  for (char& c : result)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return result;
}

}  // namespace

StyleSheet::StyleSheet(std::vector<std::string> excluded) : excluded_(std::move(excluded)) {
  for (std::string& name : excluded_) name = lower(name);
}

void StyleSheet::take(const Token& token, const TextCoding* coding) {
  switch (token.kind) {
    case TokenKind::kOpen:
      if (++depth_ != 1) return;
      number_ = 0;
      is_of_characters_ = is_other_ = false;
      name_.clear();
      return;
    case TokenKind::kClose:
      if (depth_ == 1) finish(coding);
      if (depth_ != 0) --depth_;
      return;
    case TokenKind::kText:
    case TokenKind::kByte:
      if (depth_ == 1 && name_.size() < kLongestStyleName) name_ += token.bytes;
      return;
    case TokenKind::kWord:
      if (depth_ != 1) return;
      if (token.name == "s" || token.name == "cs") number_ = token.number;
      if (token.name == "cs") is_of_characters_ = true;
      if (token.name == "ds" || token.name == "ts") is_other_ = true;
      if (token.name == "u" && name_.size() < kLongestStyleName) name_ += token.bytes;
      return;
    default:
      return;
  }
}

void StyleSheet::finish(const TextCoding* coding) {
  if (is_other_ || number_ < 0 || number_ > kHighestStyle) return;
  std::string names;
  TextReader reader(name_, coding, 1);
  for (TextUnit unit; reader.next(unit);) names += unit.text;
  names.resize(std::min(names.find(';'), names.size()));
  bool is_first = true;
  for (std::string_view rest = names; !rest.empty();) {
    const std::size_t end = std::min(rest.find(','), rest.size());
    const std::string_view name = trimmed(rest.substr(0, end), " \t");
    if (std::exchange(is_first, false) && !is_of_characters_) paragraph_styles_[number_] = name;
    if (std::ranges::find(excluded_, lower(name)) != excluded_.end())
      (is_of_characters_ ? excluded_characters_ : excluded_paragraphs_).insert(number_);
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
}

std::string_view StyleSheet::paragraph_style(std::int32_t number) const {
  const auto found = paragraph_styles_.find(number);
  return found == paragraph_styles_.end() ? std::string_view() : found->second;
}

}  // namespace kavo::rtf
