#include "formats/html/attributes.h"

#include <algorithm>
#include <vector>

#include "formats/html/elements.h"
#include "formats/text/ascii.h"

namespace kavo {
namespace {

std::vector<Attribute> sorted_attributes(std::string_view tag_text) {
  std::vector<Attribute> attributes;
  AttributeReader reader(tag_text);
  while (const auto attribute = reader.next()) attributes.push_back(*attribute);
  const auto by_name = [](const Attribute& a, const Attribute& b) {
    return std::lexicographical_compare(a.name.begin(), a.name.end(), b.name.begin(), b.name.end(),
                                        [](char x, char y) { return lower(x) < lower(y); });
  };
  const auto same_name = [&](const Attribute& a, const Attribute& b) { return !by_name(a, b) && !by_name(b, a); };
  // Where two attributes have one name, the first one counts.
  std::stable_sort(attributes.begin(), attributes.end(), by_name);
  attributes.erase(std::unique(attributes.begin(), attributes.end(), same_name), attributes.end());
  return attributes;
}

}  // namespace

AttributeReader::AttributeReader(std::string_view tag_text)
    : p_(tag_text.data() + 1), end_(tag_text.data() + tag_text.size()) {
  if (end_ - p_ > 0 && end_[-1] == '>') --end_;
  while (p_ != end_ && !html::is_html_space(*p_) && *p_ != '/') ++p_;
}

std::optional<Attribute> AttributeReader::next() {
  while (p_ != end_ && (html::is_html_space(*p_) || *p_ == '/')) ++p_;
  if (p_ == end_) return std::nullopt;
  Attribute attribute;
  const char* begin = p_++;  // by the HTML standard a "=" here is part of the name
  while (p_ != end_ && !html::is_html_space(*p_) && *p_ != '/' && *p_ != '=') ++p_;
  attribute.name = {begin, static_cast<std::size_t>(p_ - begin)};
  const char* after = p_;
  while (after != end_ && html::is_html_space(*after)) ++after;
  if (after == end_ || *after != '=') return attribute;
  p_ = after + 1;
  while (p_ != end_ && html::is_html_space(*p_)) ++p_;
  if (p_ != end_ && (*p_ == '"' || *p_ == '\'')) {
    const char quote = *p_++;
    begin = p_;
    p_ = std::find(p_, end_, quote);
    attribute.value = {begin, static_cast<std::size_t>(p_ - begin)};
    if (p_ != end_) ++p_;
  } else {
    begin = p_;
    while (p_ != end_ && !html::is_html_space(*p_)) ++p_;
    attribute.value = {begin, static_cast<std::size_t>(p_ - begin)};
  }
  return attribute;
}

bool equals_ignoring_case(std::string_view text, std::string_view lower_text) noexcept {
  return std::equal(text.begin(), text.end(), lower_text.begin(), lower_text.end(),
                    [](char a, char b) { return lower(a) == b; });
}

std::optional<std::string_view> attribute_value(std::string_view tag_text, std::string_view lower_name) {
  AttributeReader reader(tag_text);
  while (const auto attribute = reader.next())
    if (equals_ignoring_case(attribute->name, lower_name)) return attribute->value;
  return std::nullopt;
}

bool equal_attributes(std::string_view tag_a, std::string_view tag_b) {
  const auto a = sorted_attributes(tag_a), b = sorted_attributes(tag_b);
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Attribute& x, const Attribute& y) {
    return x.value == y.value && std::equal(x.name.begin(), x.name.end(), y.name.begin(), y.name.end(),
                                            [](char p, char q) { return lower(p) == lower(q); });
  });
}

}  // namespace kavo
