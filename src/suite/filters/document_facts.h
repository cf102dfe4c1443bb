// Facts about a document that a filter receives besides what people choose. They are among the options under these
// names.
#pragma once

#include <string_view>

#include "suite/filters/filter_options.h"

namespace kavo {

// For a page the path of its script file, for a script file the path of its page.
inline constexpr std::string_view kCompanion = "companion";
// Where its lines are in the author's document, in the form that LineMap reads.
inline constexpr std::string_view kAuthorLines = "author-lines";

// The fact with this name, "" when it is not given.
inline std::string_view fact(const FilterOptions& options, std::string_view name) {
  const auto found = options.find(name);
  return found == options.end() ? std::string_view() : std::string_view(found->second);
}

}  // namespace kavo
