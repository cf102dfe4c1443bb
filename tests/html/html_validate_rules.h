// What must hold for the repair of any page, for property tests and the fuzzer.
#pragma once

#include <string>
#include <string_view>

#include "html_validate_run.h"

namespace kavo::test {

// "" when all rules hold, else the broken one.
inline std::string broken_rule(std::string_view page) {
  const Validated first = validate(page);
  if (first.result != 0) return first.page == page ? "" : "a refused page was changed";
  // Nothing is taken away: the page is a part of the repaired one, but for escaped brackets.
  std::size_t at = 0;
  for (const char c : first.page) {
    if (at < page.size() && c == page[at])
      ++at;
    else if (at < page.size() && c == '&' && (page[at] == '<' || page[at] == '>'))
      ++at;
  }
  if (at != page.size()) return "bytes of the page are missing";
  if (first.repairs == 0 && first.page != page) return "changed without a repair";
  if (first.repairs != 0 && first.numbers.empty()) return "repaired without a message";
  const Validated second = validate(first.page);
  if (second.page != first.page)
    return "the repaired page was repaired again: " + first.page + " became " + second.page;
  if (second.repairs != 0) return "a repair was counted in a repaired page";
  return "";
}

}  // namespace kavo::test
