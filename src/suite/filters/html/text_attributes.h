// Knows which attributes of a tag people read.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "formats/html/elements.h"
#include "formats/html/tokens.h"
#include "suite/filters/filter.h"

namespace kavo::html {

// A start tag with its attributes; valid as long as the token is.
struct StartTag {
  const PageToken& token;
  const Element& element;
  const std::vector<AttributeSpan>& attributes;

  // The first attribute with a name, null for none.
  const AttributeSpan* find(std::string_view name) const;
  // The value of that attribute, "" for none.
  std::string_view value(std::string_view name) const;
};

class TextAttributes {
 public:
  // The option "html.text-attributes" adds names.
  explicit TextAttributes(const FilterOptions& options);

  // The attribute's name in small letters when people read it, otherwise "". Valid as long as the object.
  std::string_view read_name(const StartTag& tag, const AttributeSpan& attribute) const;

 private:
  std::vector<std::string> added_;
};

}  // namespace kavo::html
