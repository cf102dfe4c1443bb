// Reading the attributes of a start tag, as the HTML standard's tokenizer does.
#pragma once

#include <optional>
#include <string_view>

namespace kavo {

struct Attribute {
  std::string_view name;   // as written
  std::string_view value;  // as written, without its quotes; character references stay
};

// Reads the attributes of "<name ...>" one by one.
class AttributeReader {
 public:
  explicit AttributeReader(std::string_view tag_text);
  std::optional<Attribute> next();

 private:
  const char* p_;
  const char* end_;
};

bool equals_ignoring_case(std::string_view text, std::string_view lower) noexcept;

// The value of the first attribute with that name. Nothing when the tag has no such attribute.
std::optional<std::string_view> attribute_value(std::string_view tag_text, std::string_view lower_name);

// True when two tags have the same attributes with the same values, in any order. Character references are compared as
// written, so two spellings of one value count as different.
bool equal_attributes(std::string_view tag_a, std::string_view tag_b);

}  // namespace kavo
