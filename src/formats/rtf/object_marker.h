// The hidden text "{\v\mor OBJ 7 }", which takes the place of a picture or an object that KAVO moved out of an RTF
// document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kavo::rtf {

// The control word of the marker. No program knows it.
inline constexpr std::string_view kMarkerWord = "mor";
inline constexpr std::string_view kMarkerStart = "{\\v\\mor OBJ ";
inline constexpr std::string_view kMarkerEnd = " }";

std::string marker_text(std::uint64_t number);

struct Marker {
  std::uint64_t number;
  std::size_t length;  // bytes of the whole marker
};
// The marker at the start of [p, end), which must be spelled exactly as marker_text() writes it.
std::optional<Marker> read_marker(const char* p, const char* end);

}  // namespace kavo::rtf
