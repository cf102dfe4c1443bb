// The tags and characters of the XML of presentations and workbooks.
#include "formats/office/office_xml.h"

#include <gtest/gtest.h>

namespace kavo::office {
namespace {

TEST(OfficeXmlTags, EndWhereTheyEnd) {
  const struct {
    const char* name;
    std::string_view text;
    std::optional<std::size_t> length;
  } cases[] = {
      {"start tag", "<g id=\"1\">text", 10},
      {"end tag", "</g>text", 4},
      {"empty element", "<br/>", 5},
      {"quoted end", "<g id=\"a>b\">", 12},
      {"quote in another quote", "<g id='\">'>", 11},
      {"comment with a tag", "<!-- <g> -->", 12},
      {"instruction", "<?xml version=\"1.0\"?><a>", 21},
      {"cut in the name", "<g", std::nullopt},
      {"cut in a value", "<g id=\"1>", std::nullopt},
      {"cut before a comment is one", "<!-", std::nullopt},
      {"cut in a comment", "<!-- >", std::nullopt},
      {"nothing but the beginning", "<", std::nullopt},
  };
  for (const auto& c : cases) EXPECT_EQ(tag_length(c.text), c.length) << c.name;
}

TEST(OfficeXmlTags, HaveNamesAndAttributes) {
  const Tag seg = tag_of("<seg place=\"sheet:1/cell:A1\" check='0a' runs=\"6 link\">");
  EXPECT_EQ(seg.name, "seg");
  EXPECT_FALSE(seg.is_end || seg.is_empty);
  EXPECT_EQ(seg.attribute("place"), "sheet:1/cell:A1");
  EXPECT_EQ(seg.attribute("check"), "0a");
  EXPECT_EQ(seg.attribute("runs"), "6 link");
  EXPECT_EQ(seg.attribute("uns"), "");
  EXPECT_EQ(seg.attribute("cell"), "");
  EXPECT_TRUE(tag_of("<x id=\"3\"/>").is_empty);
  EXPECT_EQ(tag_of("<br/>").name, "br");
  EXPECT_TRUE(tag_of("</g >").is_end);
  EXPECT_EQ(tag_of("</g >").name, "g");
  EXPECT_EQ(tag_of("<!-- g -->").name, "");
  EXPECT_EQ(tag_of("<?xml?>").name, "");
}

TEST(OfficeXmlReferences, StandForCharacters) {
  const struct {
    std::string_view text;
    std::size_t length;
    std::string character;
  } cases[] = {{"&amp;b", 5, "&"},   {"&lt;", 4, "<"},      {"&gt;", 4, ">"},    {"&quot;", 6, "\""}, {"&apos;", 6, "'"},
               {"&#9;x", 4, "\t"},   {"&#233;", 6, "\u00E9"}, {"&#xE9;", 6, "\u00E9"}, {"&eacute;", 8, ""},
               {"&#;", 3, ""},       {"&#x;", 4, ""},       {"&#0;", 4, ""},     {"&#1114112;", 10, ""}, {"& b;", 4, ""},
               {"&and no end", 0, ""}};
  for (const auto& c : cases) {
    EXPECT_EQ(reference_length(c.text), c.length) << c.text;
    EXPECT_EQ(character_of(c.text.substr(0, c.length)), c.character) << c.text;
  }
}

TEST(OfficeXmlPlaces, LoseTheirNumbers) {
  EXPECT_EQ(kind_of_place("sheet:1/cell:A1"), "sheet/cell");
  EXPECT_EQ(kind_of_place("slide:12/notes/shape:2.1/paragraph:3"), "slide/notes/shape/paragraph");
  EXPECT_EQ(kind_of_place("sheet:1/header/left"), "sheet/header/left");
  EXPECT_EQ(kind_of_place("sheet:1/chart:1/axis:x2/title"), "sheet/chart/axis/title");
  EXPECT_EQ(kind_of_place("sheet:3/name"), "sheet/name");
  EXPECT_EQ(kind_of_place(""), "");
}

TEST(OfficeXmlRuns, TellLinksAndFields) {
  const std::vector<RunKind> expected{RunKind::kText, RunKind::kLink, RunKind::kField, RunKind::kText};
  EXPECT_EQ(run_kinds("6 link field 0"), expected);
  EXPECT_TRUE(run_kinds("").empty());
}

}  // namespace
}  // namespace kavo::office
