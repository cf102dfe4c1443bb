// The pattern is a small automaton with one state before each of its units. All reachable states are followed at once,
// so the cost is at most the length of the name times that of the pattern, however many stars there are.
#include "platform/wildcard.h"

#include <cstddef>
#include <vector>

#include "platform/case_fold.h"

namespace kavo {
namespace {

enum class Part { kLiteral, kAnyRun, kRunWithoutDot, kAtMostOne, kDotOrEnd };

struct PatternUnit {
  Part part;
  char16_t literal;
};

std::vector<PatternUnit> parse(std::u16string_view pattern) {
  const bool without_dot = pattern.size() >= 2 && pattern.substr(pattern.size() - 2) == u"*.";
  if (without_dot) pattern.remove_suffix(1);
  std::vector<PatternUnit> units;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const char16_t unit = pattern[i];
    const bool wild_next = i + 1 < pattern.size() && (pattern[i + 1] == u'*' || pattern[i + 1] == u'?');
    Part part = Part::kLiteral;
    if (unit == u'*') part = without_dot ? Part::kRunWithoutDot : Part::kAnyRun;
    if (unit == u'?') part = Part::kAtMostOne;
    if (unit == u'.' && wild_next) part = Part::kDotOrEnd;
    units.push_back({part, upper_case(unit)});
  }
  return units;
}

// Marks the states that can be reached without consuming a unit of the name. `next` is the name's next unit, u'\0' at
// its end.
void follow_empty_moves(const std::vector<PatternUnit>& units, std::vector<bool>& reached, char16_t next) {
  const bool at_end = next == u'\0';
  for (std::size_t i = 0; i < units.size(); ++i) {
    if (!reached[i]) continue;
    const Part part = units[i].part;
    const bool may_be_empty = part == Part::kAnyRun || part == Part::kRunWithoutDot ||
                              (part == Part::kAtMostOne && (at_end || next == u'.')) ||
                              (part == Part::kDotOrEnd && at_end);
    if (may_be_empty) reached[i + 1] = true;
  }
}

}  // namespace

bool matches_wildcard(std::u16string_view name, std::u16string_view pattern) {
  const std::vector<PatternUnit> units = parse(pattern);
  std::vector<bool> reached(units.size() + 1, false);
  reached[0] = true;
  for (const char16_t unit : name) {
    follow_empty_moves(units, reached, unit);
    std::vector<bool> after(units.size() + 1, false);
    for (std::size_t i = 0; i < units.size(); ++i) {
      if (!reached[i]) continue;
      switch (units[i].part) {
        case Part::kAnyRun:
          after[i] = true;
          break;
        case Part::kRunWithoutDot:
          if (unit != u'.') after[i] = true;
          break;
        case Part::kAtMostOne:
          if (unit != u'.') after[i + 1] = true;
          break;
        case Part::kDotOrEnd:
          if (unit == u'.') after[i + 1] = true;
          break;
        case Part::kLiteral:
          if (upper_case(unit) == units[i].literal) after[i + 1] = true;
          break;
      }
    }
    reached.swap(after);
  }
  follow_empty_moves(units, reached, u'\0');
  return reached[units.size()];
}

}  // namespace kavo
