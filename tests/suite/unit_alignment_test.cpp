// Which unit is in the place of which.
#include "suite/memory/unit_alignment.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kavo::test {
namespace {

// "text", "text@element", "name:text@element", with "|" between the units.
std::vector<PlacedText> units_of(std::string_view description) {
  std::vector<PlacedText> units;
  while (!description.empty()) {
    std::string_view one = description.substr(0, description.find('|'));
    description.remove_prefix(std::min(one.size() + 1, description.size()));
    PlacedText unit;
    if (const std::size_t at = one.find('@'); at != one.npos) {
      unit.element = one.substr(at + 1);
      one = one.substr(0, at);
    }
    if (const std::size_t colon = one.find(':'); colon != one.npos) {
      unit.name = one.substr(0, colon);
      one.remove_prefix(colon + 1);
    }
    unit.text = one;
    units.push_back(unit);
  }
  return units;
}

// For each new unit the old one's number from 1, "-" for none.
std::string aligned(std::string_view old_units, std::string_view new_units) {
  std::string result;
  for (const std::uint32_t partner : aligned_units(units_of(old_units), units_of(new_units)))
    result += (result.empty() ? "" : " ") + (partner == kNoUnit ? "-" : std::to_string(partner + 1));
  return result;
}

TEST(UnitAlignment, FindsThePlaceOfEachText) {
  const struct {
    const char* name;
    const char* old_units;
    const char* new_units;
    const char* expected;
  } cases[] = {
      {"unchanged", "A@p|B@p|C@p", "A@p|B@p|C@p", "1 2 3"},
      {"a row inserted", "A@td|B@td|C@td|D@td", "A@td|B@td|X@td|Y@td|C@td|D@td", "1 2 - - 3 4"},
      {"a row inserted among equal cells", "A@td|x@td|B@td|x@td", "A@td|x@td|N@td|x@td|B@td|x@td", "1 2 - - 3 4"},
      {"a text edited", "A@p|B@p|C@p", "A@p|B2@p|C@p", "1 - 3"},
      {"both neighbours edited", "A@p|B@p|C@p", "A2@p|B@p|C2@p", "- 2 -"},
      {"all but one edited", "A@p|B@p|C@p|D@p|E@p", "A2@p|B2@p|C@p|D2@p|E2@p", "- - 3 - -"},
      {"deleted", "A@p|B@p|C@p", "A@p|C@p", "1 3"},
      {"moved far away", "M@p|A@p|B@p|C@p|D@p", "A@p|B@p|C@p|D@p|M@p", "2 3 4 5 -"},
      {"moved with its neighbours", "M@td|N@td|A@p|B@p", "A@p|B@p|M@td|N@td", "3 4 1 2"},
      {"the same text in another element", "A@p|T@h1|B@p", "X@p|T@p|Y@p", "- - -"},
      {"the same text under another path between its neighbours", "A@p|T@p|B@p", "A@div/p|T@div/p|B@div/p", "1 2 3"},
      {"duplicates in order", "A@p|A@p|A@p", "A@p|A@p|A@p", "1 2 3"},
      {"duplicates by their neighbours", "Q@p|OK@td|Yes@p|R@p|OK@td|No@p", "R@p|OK@td|No@p|Q@p|OK@td|Yes@p",
       "4 5 6 1 2 3"},
      {"duplicates by their elements", "OK@a|OK@b", "OK@b|OK@a", "2 1"},
      {"one duplicate less", "A@p|x@p|B@p|x@p|C@p", "A@p|B@p|x@p|C@p", "1 3 4 5"},
      {"one duplicate more", "A@p|x@p|B@p", "A@p|x@p|x@p|B@p", "1 2 - 3"},
      {"by name, wherever it stands", "a:T@p|b:T@p|C@p", "C@p|b:T@q|a:T@q", "- 2 1"},
      {"a name with another text", "a:T@p", "a:U@p", "-"},
      {"old documents without elements", "A|B|C", "A@p|X@p|B@p|C@p", "1 - 2 3"},
      {"from nothing", "", "A@p", "-"},
      {"to nothing", "A@p", "", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(aligned(c.old_units, c.new_units), c.expected);
  }
}

TEST(UnitAlignment, IsTakenForNoOtherText) {
  // Whatever is inserted, removed and doubled: partners have the same text, and no old unit has two.
  std::uint32_t state = 7;
  const auto random = [&](std::uint32_t bound) { return (state = state * 1664525 + 1013904223) / 65536 % bound; };
  for (int round = 0; round < 300; ++round) {
    const std::string texts[] = {"A", "B", "C", "D", "E", "F", "G"}, elements[] = {"", "p", "ul/li", "td"};
    std::vector<PlacedText> old_units, new_units;
    for (std::uint32_t i = random(20); i > 0; --i) old_units.push_back({texts[random(7)], "", elements[random(4)]});
    for (const PlacedText& unit : old_units) {
      if (random(5) != 0) new_units.push_back(unit);
      if (random(5) == 0) new_units.push_back({texts[random(7)], "", elements[random(4)]});
    }
    const std::vector<std::uint32_t> partners = aligned_units(old_units, new_units);
    ASSERT_EQ(partners.size(), new_units.size());
    std::vector<bool> seen(old_units.size());
    for (std::size_t i = 0; i < partners.size(); ++i) {
      if (partners[i] == kNoUnit) continue;
      EXPECT_EQ(old_units[partners[i]].text, new_units[i].text);
      EXPECT_FALSE(seen[partners[i]]);
      seen[partners[i]] = true;
    }
  }
}

}  // namespace
}  // namespace kavo::test
