// The coding of a page: its byte order mark, what it declares, and the names of codings in pages.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/html/tokens.h"
#include "formats/script/token.h"

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

// Where a page may say in which coding it is. What stands first here is believed first.
enum class CharsetSource : std::uint8_t {
  kMark,             // a byte order mark
  kDirective,        // CodePage= of ASP, pageEncoding= of JSP, declare(encoding=) of PHP
  kXml,              // <?xml encoding= ?>
  kContentType,      // contentType= of JSP
  kMeta,             // <meta>
  kResponseCharset,  // Response.Charset and its like
  kHeader,           // header("Content-Type: ...")
};
struct CharsetDeclaration {
  CharsetSource source = CharsetSource::kMark;
  std::string label;  // as it is written: "utf-8", "65001"
};

// What the beginning of a page (at least kDeclarationReach bytes when there are as many) tells.
struct PageCoding {
  std::optional<unsigned> code_page;  // nothing: undeclared, or not supported
  bool has_mark = false;              // a byte order mark tells it
  bool is_in_script = false;          // a script tells it, which no filter rewrites
  std::size_t mark_size = 0;          // bytes
  bool is_unsupported = false;        // declares a coding that is known to others
  // What people should know of it, in English: a coding that is not supported, declarations that disagree. "" for
  // nothing.
  std::string remark;
};
// `server` is the language of server blocks until the page declares another one.
PageCoding coding_of(std::string_view beginning, script::Language server = script::Language::kVbScript);

// The name of a code page as pages write it ("utf-8", "shift_jis", "windows-1252").
std::string_view charset_name(unsigned code_page);

}  // namespace kavo::html
