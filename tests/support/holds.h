// Whether a text holds a part, for expectations on output and messages.
#pragma once

#include <string_view>

namespace kavo::test {

inline bool holds(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

}  // namespace kavo::test
