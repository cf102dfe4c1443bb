// What the user and the page say of an element: inline or not, translated or left alone.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "formats/html/elements.h"
#include "suite/filters/filter_options.h"
#include "suite/filters/html/text_attributes.h"

namespace kavo::html {

class ElementRules {
 public:
  // Reads "html.inline-elements", "html.excluded-elements" and "html.text-elements". What the user says goes before
  // what the page says.
  explicit ElementRules(const FilterOptions& options);

  // The element of a name. One that the user calls inline is like one that HTML does not know.
  const Element& find(std::string_view name) const;
  // By the attribute "translate" of the HTML Standard, or the class "notranslate", which machine translation services
  // honour.
  bool is_left_alone(const StartTag& tag) const;
  // Whether the element's texts are translated inside one that is left alone.
  bool is_translated(const StartTag& tag) const;

 private:
  std::vector<std::string> inline_;
  std::vector<std::string> excluded_;
  std::vector<std::string> text_;
};

}  // namespace kavo::html
