// The coding of a page: its byte order mark, what it declares, and the names of codings in pages.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "formats/html/tokens.h"

namespace kavo::html {

// A declaration stands further ahead than browsers look for it (1024 bytes) when somebody wrote a long comment first.
inline constexpr std::size_t kDeclarationReach = 64 * 1024;  // bytes

// A place in a tag's bytes.
struct Span {
  std::size_t begin = 0;
  std::size_t end = 0;
};

// [begin, end) of the bytes without the white space around it.
Span trimmed(std::string_view bytes, std::size_t begin, std::size_t end);

// Where a tag "meta" tells the coding, and where "<?xml ... ?>" does; nothing when it does not.
std::optional<Span> charset_in_meta(const PageToken& tag, const std::vector<AttributeSpan>& attributes);
std::optional<Span> charset_in_xml(std::string_view declaration);

// What the beginning of a page (at least kDeclarationReach bytes when there are as many) tells.
struct PageCoding {
  std::optional<unsigned> code_page;  // nothing: undeclared, or not supported
  bool has_mark = false;              // a byte order mark tells it
  std::size_t mark_size = 0;          // bytes
  bool is_unsupported = false;        // declares a coding that is known to others
};
PageCoding coding_of(std::string_view beginning);

// The name of a code page as pages write it ("utf-8", "shift_jis", "windows-1252").
std::string_view charset_name(unsigned code_page);

}  // namespace kavo::html
