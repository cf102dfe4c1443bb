// What the user and the page say about an element: whether it is inline, and whether it is translated or left alone.
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
  // Reads "html.inline-elements", "html.excluded-elements" and "html.text-elements". The user's word counts more than
  // the page's.
  explicit ElementRules(const FilterOptions& options);

  // The element with this name. An element that the user declares inline is treated like one that HTML does not know.
  const Element& find(std::string_view name) const;
  // True by the attribute "translate" of the HTML Standard, or by the class "notranslate", which machine translation
  // services honour.
  bool is_left_alone(const StartTag& tag) const;
  // Whether the element's texts are translated inside one that is left alone.
  bool is_translated(const StartTag& tag) const;

 private:
  std::vector<std::string> inline_;
  std::vector<std::string> excluded_;
  std::vector<std::string> text_;
};

}  // namespace kavo::html
