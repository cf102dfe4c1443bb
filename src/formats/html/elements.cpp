#include "formats/html/elements.h"

#include <algorithm>
#include <iterator>

#include "formats/html/tag_names.h"
#include "formats/text/ascii.h"

namespace kavo::html {
namespace {

// Sorted by name.
constexpr Element kElements[] = {
#define KAVO_ELEMENT(tag, name, traits, kind, type) {name, ElementKind::kind, ((traits)&kVoid) != 0, type},
#define KAVO_UNNAMED_ELEMENT(name, traits, kind, type) {name, ElementKind::kind, ((traits)&kVoid) != 0, type},
#include "formats/html/elements.inc"
#undef KAVO_ELEMENT
#undef KAVO_UNNAMED_ELEMENT
};
static_assert(std::ranges::is_sorted(kElements, {}, &Element::name));

constexpr Element kUnknown = {"", ElementKind::kInline, false, "x-html"};

constexpr std::size_t kLongestName = 16;
static_assert(std::ranges::all_of(kElements, [](const Element& row) { return row.name.size() <= kLongestName; }));

}  // namespace

const Element& find_element(std::string_view name) {
  if (name.size() > kLongestName) return kUnknown;
  char buffer[kLongestName];
  std::transform(name.begin(), name.end(), buffer, lower);
  const std::string_view wanted(buffer, name.size());
  const auto* const found = std::lower_bound(std::begin(kElements), std::end(kElements), wanted,
                                             [](const Element& row, std::string_view text) { return row.name < text; });
  return found != std::end(kElements) && found->name == wanted ? *found : kUnknown;
}

bool equal_name(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return lower(x) == lower(y); });
}

}  // namespace kavo::html
