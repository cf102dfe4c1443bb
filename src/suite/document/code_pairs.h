// Pairs opening and closing codes among the parts of a paragraph, whatever the format.
//
// A part has a `kind`, of an enumeration with kOpen and kClose, and the index of its `partner`, kNoPartner at first.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace kavo {

inline constexpr std::size_t kNoPartner = static_cast<std::size_t>(-1);

// Each closing code gets the last open one that `matches` as its partner. It looks at a bounded number of open codes.
// That is enough for any nesting that people write, and limits the time for a paragraph that opens thousands of codes
// and closes others. `open` is scratch space, kept by the caller for the next paragraph.
template <class Part, class Matches>
void pair_codes(std::vector<Part>& parts, std::vector<std::size_t>& open, Matches&& matches) {
  constexpr std::size_t kDeepestNesting = 64;
  using Kind = decltype(Part::kind);
  open.clear();
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (parts[i].kind == Kind::kOpen) open.push_back(i);
    if (parts[i].kind != Kind::kClose) continue;
    for (std::size_t back = 1; back <= open.size() && back <= kDeepestNesting; ++back) {
      const std::size_t candidate = open[open.size() - back];
      if (!matches(parts[candidate], parts[i])) continue;
      parts[candidate].partner = i;
      parts[i].partner = candidate;
      open.resize(open.size() - back);
      break;
    }
  }
}

// Widens the range from `first` to `last`, both included, until it holds the partner of each code in it.
template <class Part>
void include_partners(const std::vector<Part>& parts, std::size_t& first, std::size_t& last) {
  std::size_t seen_first = first;
  std::size_t seen_last = first;  // [seen_first, seen_last) has been looked at
  while (seen_first > first || seen_last <= last) {
    const std::size_t i = seen_last <= last ? seen_last++ : --seen_first;
    const std::size_t partner = parts[i].partner;
    if (partner == kNoPartner) continue;
    first = std::min(first, partner);
    last = std::max(last, partner);
  }
}

}  // namespace kavo
