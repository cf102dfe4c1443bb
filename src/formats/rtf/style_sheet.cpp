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

StylesNamed::StylesNamed(std::vector<std::string> names) : names_(std::move(names)) {
  for (std::string& name : names_) name = lower(name);
}

void StylesNamed::take(const Token& token, const TextCoding* coding) {
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

void StylesNamed::finish(const TextCoding* coding) {
  if (is_other_) return;
  std::string name;
  TextReader reader(name_, coding, 1);
  for (TextUnit unit; reader.next(unit);) name += unit.text;
  name = lower(std::string_view(name).substr(0, name.find(';')));
  for (std::string_view rest = name; !rest.empty();) {
    const std::size_t end = std::min(rest.find(','), rest.size());
    if (std::ranges::find(names_, trimmed(rest.substr(0, end), " \t")) != names_.end())
      (is_of_characters_ ? character_styles_ : paragraph_styles_).insert(number_);
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
}

}  // namespace kavo::rtf
