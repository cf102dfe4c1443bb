// Follows all reachable places in the pattern at once. So matching takes at most the pattern's length times the path's,
// however many stars there are.
#include "workflow/path_pattern.h"

#include <algorithm>
#include <vector>

#include "platform/case_fold.h"

namespace kavo {
namespace {

enum class Part { kLiteral, kOne, kRun, kRunOfFolders, kWholeFolders };

struct Unit {
  Part part;
  char16_t literal;
};

bool is_separator(char16_t c) { return c == u'/' || c == u'\\'; }

std::vector<Unit> parse(std::u16string_view pattern) {
  std::vector<Unit> units;
  while (!pattern.empty()) {
    Unit unit{Part::kLiteral, is_separator(pattern[0]) ? u'/' : upper_case(pattern[0])};
    std::size_t length = 1;
    if (pattern[0] == u'?') unit.part = Part::kOne;
    if (pattern[0] == u'*') unit.part = Part::kRun;
    if (pattern.starts_with(u"**")) {
      const bool is_whole = pattern.size() > 2 && is_separator(pattern[2]);
      unit.part = is_whole ? Part::kWholeFolders : Part::kRunOfFolders;
      length = is_whole ? 3 : 2;
    }
    units.push_back(unit);
    pattern.remove_prefix(length);
  }
  return units;
}

void follow_empty_moves(const std::vector<Unit>& units, std::vector<bool>& reached, bool at_name_start) {
  for (std::size_t i = 0; i < units.size(); ++i) {
    const Part part = units[i].part;
    const bool may_be_empty =
        part == Part::kRun || part == Part::kRunOfFolders || (part == Part::kWholeFolders && at_name_start);
    if (reached[i] && may_be_empty) reached[i + 1] = true;
  }
}

bool matches(const std::vector<Unit>& units, std::u16string_view text) {
  std::vector<bool> reached(units.size() + 1, false);
  reached[0] = true;
  bool at_name_start = true;
  for (const char16_t c : text) {
    follow_empty_moves(units, reached, at_name_start);
    at_name_start = is_separator(c);
    std::vector<bool> after(units.size() + 1, false);
    for (std::size_t i = 0; i < units.size(); ++i) {
      if (!reached[i]) continue;
      switch (units[i].part) {
        case Part::kLiteral:
          if (units[i].literal == (at_name_start ? u'/' : upper_case(c))) after[i + 1] = true;
          break;
        case Part::kOne:
          if (!at_name_start) after[i + 1] = true;
          break;
        case Part::kRun:
          if (!at_name_start) after[i] = true;
          break;
        case Part::kRunOfFolders:
        case Part::kWholeFolders:
          after[i] = true;
          break;
      }
    }
    reached.swap(after);
  }
  follow_empty_moves(units, reached, at_name_start);
  return reached[units.size()];
}

}  // namespace

bool selects(std::u16string_view pattern, std::u16string_view path) {
  const bool only_folders = !pattern.empty() && is_separator(pattern.back());
  if (only_folders) pattern.remove_suffix(1);
  const bool has_folders = pattern.find_first_of(u"/\\") != pattern.npos || pattern.find(u"**") != pattern.npos;
  if (has_folders && is_separator(pattern.front())) pattern.remove_prefix(1);
  const std::vector<Unit> units = parse(pattern);
  for (std::size_t begin = 0;;) {
    const std::size_t end = std::min(path.find_first_of(u"/\\", begin), path.size());
    const bool is_folder = end < path.size();
    const std::u16string_view part = has_folders ? path.substr(0, end) : path.substr(begin, end - begin);
    if ((is_folder || !only_folders) && matches(units, part)) return true;
    if (!is_folder) return false;
    begin = end + 1;
  }
}

}  // namespace kavo
