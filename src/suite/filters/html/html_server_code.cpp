// The part of PageExtraction for server code in the page, and for the placeholders of code that was taken out.
#include <algorithm>

#include "formats/html/script_marker.h"
#include "formats/script/php_end.h"
#include "suite/filters/html/html_extraction.h"

namespace kavo::html {

// What looks like page text is code, and a translation would break it.
void PageExtraction::rest_of_php(const PageToken& token) {
  std::size_t own = token.bytes.size();  // how many of the token's bytes are code
  const std::size_t before = unended_php_.size();
  if (before <= kLongestBlock) {
    unended_php_ += scripts_.text(placeholder::unwrapped(token.bytes));
    const bool may_end = unended_php_.find("?>", before - 1) != std::string::npos;
    const std::size_t end = may_end ? script::php_end(unended_php_) : std::string::npos;
    if (end != std::string::npos) {
      own -= std::min(own, unended_php_.size() - end);
      unended_php_.clear();
    }
  }
  outside(token.bytes.substr(0, own));
  if (own == token.bytes.size()) return;
  if (token.kind == TokenKind::kText)
    add_split(ItemKind::kText, token.bytes.substr(own));
  else
    outside(token.bytes.substr(own));
}

// Code that divides the page ends the segment: no translation may carry a text into another branch of a condition.
void PageExtraction::server_code(std::string_view bytes) {
  const std::string_view script = placeholder::unwrapped(bytes);
  unended_php_ = scripts_.unended_php(script);
  if (!unended_php_.empty()) {
    flush();
    outside(bytes);
    return;
  }
  if (scripts_.divides(script)) {
    flush();
    add_embedded(embedded_.of_server_code(bytes));
    write_tag_outside(bytes, 0, values_.size());
    values_.clear();
    return;
  }
  Item& item = add_item(ItemKind::kContent, bytes);
  item.is_server_code = true;
  item.first_value = values_.size();
  add_embedded(embedded_.of_server_code(bytes));
  item.value_count = values_.size() - item.first_value;
}

void PageExtraction::add_embedded(std::vector<EmbeddedText> texts) {
  for (EmbeddedText& text : texts) {
    Value value;
    value.begin = text.unit.begin;
    value.end = text.unit.end;
    value.embedded = std::make_shared<const EmbeddedText>(std::move(text));
    values_.push_back(std::move(value));
  }
}

}  // namespace kavo::html
