// What must hold for any bytes at all: a page that is protected and restored comes back whole, pages without
// look-alikes give what the simple twin gives, and no result depends on where blocks end. For the fuzzer and for the
// replay of its seeds.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "asp2html_run.h"
#include "formats/text/utf16_mark.h"

namespace kavo::test {

// The first byte chooses the block size (its upper bits) and what the rest is: a page (even), or a translated page and
// a script file with a "|" between them (odd). Answers what is wrong, "" when nothing is.
inline std::string broken_asp2html_property(std::string_view input) {
  if (input.empty()) return "";
  const auto first = static_cast<unsigned char>(input[0]);
  const std::size_t block = 1 + first / 2;
  input.remove_prefix(1);
  if (first % 2 != 0) {
    const std::size_t cut = std::min(input.find('|'), input.size());
    const std::string_view html = input.substr(0, cut), script = input.substr(std::min(cut + 1, input.size()));
    return restore(html, script, block) == restore(html, script) ? "" : "restoring depends on the block size";
  }
  const Protected result = protect(input, block);
  if (starts_as_utf16(input)) return result.page.starts_with("FAILED") ? "" : "a UTF-16 page was not refused";
  const std::string folded = lower(std::string(input));
  const bool has_look_alike = folded.find("asp2html") != folded.npos || folded.find("&lt;!-- ") != folded.npos;
  if (!has_look_alike && result != twin_protect(input)) return "the twin protects in another way";
  if (restore(result.page, result.script, block) != input) return "the page did not come back";
  return "";
}

}  // namespace kavo::test
