// The placeholder of a script block and the texts that belong to it.
//
//   <!-- ASP2HTML 12 -->                  block 12
//   "<!-- ASP2HTML 12 Q -->"              the same, given quotes because it stands where an attribute value stands
//   ASP2HTML="<!-- ASP2HTML 12 Q -->"     the same, given an attribute name too
//
// All of it is compared byte by byte in any ANSI code page: the first byte of each text ("<", "&", "-", "%", "?") is
// below 0x40, where no trail byte of a double-byte character lies, and after an ASCII character a new one starts.
#pragma once

#include <cstddef>
#include <string_view>

namespace kavo::html::placeholder {

inline constexpr std::string_view kMarker = "<!-- ASP2HTML";
inline constexpr std::string_view kMarkerEnd = "-->";
inline constexpr std::string_view kWrappedEnd = "Q -->";
inline constexpr std::string_view kQuotedEnd = "-->\"";  // of one in quotes
inline constexpr std::string_view kAttributeName = "ASP2HTML=";
inline constexpr std::string_view kAttribute = "ASP2HTML=\"";
// What editors and filters write for a marker and its end, in lower case; compared without regard to case.
inline constexpr std::string_view kEscapedMarker = "&lt;!-- asp2html";
inline constexpr std::string_view kEscapedMarkerStart = "&lt;!-- ";
inline constexpr std::string_view kEscapedBracket = "&gt;";
inline constexpr std::string_view kLineEnd = "\r\n";

// The longest text that must be seen whole to be recognised.
inline constexpr std::size_t kLongestToken = kEscapedMarker.size();
// A comment that is longer is no placeholder: protection writes at most 38 bytes, an editor may add blanks.
inline constexpr std::size_t kLongestPlaceholder = 256;

inline bool is_line_end(char c) noexcept { return c == '\r' || c == '\n'; }

}  // namespace kavo::html::placeholder
