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

// How far a declaration is looked for. Browsers look at 1024 bytes, but a long comment may stand before it.
inline constexpr std::size_t kDeclarationReach = 64 * 1024;  // bytes

// A place in a tag's bytes.
struct Span {
  std::size_t begin = 0;
  std::size_t end = 0;
};

// [begin, end) without the white space at both ends.
Span trimmed(std::string_view bytes, std::size_t begin, std::size_t end);

// Where a tag "meta" and where "<?xml ... ?>" name the coding; nothing when they do not.
std::optional<Span> charset_in_meta(const PageToken& tag, const std::vector<AttributeSpan>& attributes);
std::optional<Span> charset_in_xml(std::string_view declaration);

// Where a page may declare its coding, in the order of precedence.
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

// What the beginning of a page says about its coding. It must hold kDeclarationReach bytes of the page, or all of it.
struct PageCoding {
  std::optional<unsigned> code_page;  // nothing when undeclared or not supported
  bool has_mark = false;              // a byte order mark gives the coding
  bool is_in_script = false;          // a script declares the coding, and no filter rewrites scripts
  std::size_t mark_size = 0;          // bytes
  bool is_unsupported = false;        // the declared coding is not supported
  // A remark for people, in English: a coding that is not supported, or declarations that disagree. "" for none.
  std::string remark;
};
// `server` is the language of server blocks up to the page's own declaration of another one.
PageCoding coding_of(std::string_view beginning, script::Language server = script::Language::kVbScript);

// The name of a code page as pages write it ("utf-8", "shift_jis", "windows-1252").
std::string_view charset_name(unsigned code_page);

}  // namespace kavo::html
