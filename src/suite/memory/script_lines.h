// Finds the texts in lines of script, which are the segments in documents of earlier versions. Today's documents have a
// segment for each text, and an update looks for those.
#pragma once

#include <functional>
#include <string_view>

namespace kavo {

// Calls take(source, target) for each text between quotes of a line and its translation: each alone, and those that
// only a code separates also together, as a script joins them. Nothing when the two lines differ in their quotes.
void texts_of_line(std::string_view source, std::string_view target,
                   const std::function<void(std::string_view source, std::string_view target)>& take);

}  // namespace kavo
