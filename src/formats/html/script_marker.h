// The placeholder of a script block and the texts that belong to it.
//
//   <!-- ASP2HTML 12 -->                  block 12
//   "<!-- ASP2HTML 12 Q -->"              in quotes, where an attribute value stands
//   ASP2HTML="<!-- ASP2HTML 12 Q -->"     with an attribute name too, where an attribute stands
//
// All of these are compared byte by byte in any ANSI code page. That is safe: the first byte of each text ("<", "&",
// "-", "%", "?") is below 0x40, so it is never the trail byte of a double-byte character, and after an ASCII character
// a new one begins.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "formats/text/ascii.h"

namespace kavo::html::placeholder {

inline constexpr std::string_view kMarker = "<!-- ASP2HTML";
inline constexpr std::string_view kMarkerEnd = "-->";
inline constexpr std::string_view kWrappedEnd = "Q -->";
inline constexpr std::string_view kQuotedEnd = "-->\"";  // of one in quotes
inline constexpr std::string_view kAttributeName = "ASP2HTML=";
inline constexpr std::string_view kAttribute = "ASP2HTML=\"";
// What editors and filters write for a marker and its end, in lower case. Letter case does not count.
inline constexpr std::string_view kEscapedMarker = "&lt;!-- asp2html";
inline constexpr std::string_view kEscapedMarkerStart = "&lt;!-- ";
inline constexpr std::string_view kEscapedBracket = "&gt;";
inline constexpr std::string_view kLineEnd = "\r\n";

// The longest text that must be in the window completely to be recognised.
inline constexpr std::size_t kLongestToken = kEscapedMarker.size();
// A longer comment is not a placeholder. Protection writes at most 38 bytes, and an editor may add blanks.
inline constexpr std::size_t kLongestPlaceholder = 256;

using kavo::is_line_end;

// The first line of a script file at or after `from` that begins with the marker. Returns the size of the text when
// there is none.
inline std::size_t find_marker_line(std::string_view text, std::size_t from) noexcept {
  for (std::size_t at = text.find(kMarker, from); at != std::string_view::npos; at = text.find(kMarker, at + 1))
    if (at == 0 || is_line_end(text[at - 1])) return at;
  return text.size();
}

// The length of the quoted placeholder at the start of `bytes`, which begin with the quote; 0 when there is none.
inline std::size_t quoted_length(std::string_view bytes) noexcept {
  if (!bytes.substr(1).starts_with(kMarker)) return 0;
  const std::size_t end = bytes.substr(0, kLongestPlaceholder).find(kQuotedEnd);
  return end == std::string_view::npos ? 0 : end + kQuotedEnd.size();
}

// The length of what stands before the marker of a placeholder for a tag, at the end of `before`; 0 when `marker` begins
// none that a quote follows.
inline std::size_t wrapping_length(std::string_view before, std::string_view marker) noexcept {
  if (!marker.starts_with(kMarker) || !before.ends_with('"')) return 0;
  const std::size_t end = marker.substr(0, kLongestPlaceholder).find(kMarkerEnd);
  if (end == std::string_view::npos || !marker.substr(end - 2).starts_with(kWrappedEnd) ||
      !marker.substr(end).starts_with(kQuotedEnd))
    return 0;
  return before.ends_with(kAttribute) ? kAttribute.size() : 1;
}

// A placeholder without what it is wrapped in.
inline std::string_view unwrapped(std::string_view bytes) noexcept {
  if (!bytes.ends_with(kQuotedEnd)) return bytes;
  bytes.remove_suffix(1);
  return bytes.substr(std::min(bytes.find(kMarker), bytes.size()));
}

}  // namespace kavo::html::placeholder
