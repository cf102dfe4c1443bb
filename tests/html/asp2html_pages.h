// Random pages: pieces of server pages in any order, so that blocks, tags, quotes, comments and line ends nest and
// break off in every way.
#pragma once

#include <cstdint>
#include <random>
#include <span>
#include <string>
#include <string_view>

namespace kavo::test {

inline constexpr std::string_view kPagePieces[] = {
    "<%",
    "%>",
    "<%=",
    "<%@",
    "<?php",
    "?>",
    "<?PHP ",
    "<?xml",
    "<script",
    "</script>",
    "<SCRIPT>",
    "</Script>",
    "<java>",
    "</JAVA>",
    "<javascript",
    "<!--",
    "-->",
    "<!-->",
    "--",
    "-",
    "!",
    "<",
    ">",
    "<",
    ">",
    "/",
    "<a",
    "</a",
    "<td ",
    "<p>",
    "href",
    "=",
    "=",
    "\"",
    "\"",
    "'",
    "'",
    " ",
    " ",
    "   ",
    "\t",
    "text",
    "a",
    "B",
    "?",
    "%",
    "\xE6\x97\xA5\xE6\x9C\xAC",
    "\x83\x41\x83\x5C\x83\x7C",
    "\x83",
    "&nbsp;",
    "&",
    "&lt;",
    "&gt;",
    "\r\n",
    "\n",
    "\r",
    "\n\r",
    "\r\r",
    std::string_view("\0", 1),
    "<%=x%>",
    "<?php y ?>",
    "<script>z</script>",
    "<a b=<%=c%>>",
    "<td <%=d%>>",
    "<a e=\"<%=f%>\">",
};

// Pieces of text that restoring must not take for a placeholder.
inline constexpr std::string_view kLookAlikePieces[] = {
    "<!-- ASP2HTML",
    "<!-- ASP2HTML 1 -->",
    "\n<!-- ASP2HTML 2 -->",
    "<!-- ASP2HTML 1 Q -->",
    " Q -->",
    "ASP2HTML",
    "ASP2HTML=",
    "ASP2HTML=\"",
    "ASP2HTML=\"<!-- ASP2HTML 3 Q -->\"",
    "\"<!-- ASP2HTML 3 Q -->\"",
    "&lt;!-- ",
    "&LT;!-- ASP2HTML 1 --&GT;",
    "&lt;!-- asp2html",
    "--&gt;",
    "--&GT;",
    "<!-- ASP2HTML 1\n-->",
    "\r\n<!-- ASP2HTML",
    "\r<!-- ASP2HTML 1 -->\r\n",
    "<!-- ",
    "\x83"
    "ASP2HTML=",
    "<%\n<!-- ASP2HTML 1 -->%>",
    "<td &lt;!-- <%=d%>>",
};

class PageMaker {
 public:
  explicit PageMaker(std::uint32_t seed) : random_(seed) {}

  // Up to `most` pieces; one in `look_alike_share` looks like a placeholder, none for 0.
  std::string page(unsigned most, unsigned look_alike_share = 0) {
    std::string text;
    for (unsigned count = below(most + 1); count > 0; --count)
      text += look_alike_share != 0 && below(look_alike_share) == 0 ? pick(kLookAlikePieces) : pick(kPagePieces);
    return text;
  }
  unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
  std::string_view pick(std::span<const std::string_view> pieces) {
    return pieces[below(static_cast<unsigned>(pieces.size()))];
  }

 private:
  std::mt19937 random_;
};

}  // namespace kavo::test
