#include "suite/filters/html/element_rules.h"

#include <algorithm>

namespace kavo::html {
namespace {

bool is_named(const std::vector<std::string>& names, std::string_view name) {
  return std::ranges::any_of(names, [&](const std::string& row) { return equal_name(row, name); });
}

// Whether a value of "class" holds a word.
bool has_class(std::string_view value, std::string_view name) {
  while (!value.empty()) {
    const std::size_t end = std::min(value.find_first_of(" \t\r\n\f"), value.size());
    if (equal_name(value.substr(0, end), name)) return true;
    value.remove_prefix(std::min(end + 1, value.size()));
  }
  return false;
}

}  // namespace

ElementRules::ElementRules(const FilterOptions& options)
    : inline_(option_items(options, "html.inline-elements")),
      excluded_(option_items(options, "html.excluded-elements")),
      text_(option_items(options, "html.text-elements")) {}

const Element& ElementRules::find(std::string_view name) const {
  return is_named(inline_, name) ? find_element("") : find_element(name);
}

bool ElementRules::is_left_alone(const StartTag& tag) const {
  if (is_named(excluded_, tag.token.name)) return true;
  if (is_named(text_, tag.token.name)) return false;
  const std::string_view translate = tag.value("translate");
  if (equal_name(translate, "no")) return true;
  return !equal_name(translate, "yes") && has_class(tag.value("class"), "notranslate");
}

bool ElementRules::is_translated(const StartTag& tag) const {
  if (is_named(excluded_, tag.token.name)) return false;
  return is_named(text_, tag.token.name) || equal_name(tag.value("translate"), "yes");
}

}  // namespace kavo::html
