// A "<" that a translator typed.
//
// Script protection takes a placeholder for one with its "<" as "&lt;", too: editors write it so. What is typed is
// never a placeholder, or a script of the page would stand in the place of the text.
#pragma once

#include <string_view>

#include "common/byte_scan.h"
#include "formats/html/script_marker.h"

namespace kavo::html {

// The reference for the "<" that `text` begins with.
inline std::string_view reference_to_bracket(std::string_view text) {
  constexpr std::string_view kBehind = placeholder::kEscapedMarker.substr(placeholder::kEscapedMarker.find('!'));
  return begins_with_ignoring_case(text.data() + 1, text.data() + text.size(), kBehind) ? "&#60;" : "&lt;";
}

}  // namespace kavo::html
