// What a filter is told of a document beside what people choose: it stands among the options, by these names.
#pragma once

#include <string_view>

#include "suite/filters/filter_options.h"

namespace kavo {

// Of a page the path of its script file, of a script file that of its page.
inline constexpr std::string_view kCompanion = "companion";
// Where its lines stand in the author's document, as LineMap reads it.
inline constexpr std::string_view kAuthorLines = "author-lines";

// "" for what is not told.
inline std::string_view fact(const FilterOptions& options, std::string_view name) {
  const auto found = options.find(name);
  return found == options.end() ? std::string_view() : std::string_view(found->second);
}

}  // namespace kavo
