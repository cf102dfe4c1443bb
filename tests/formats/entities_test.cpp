#include "formats/html/entities.h"

#include <gtest/gtest.h>

namespace kavo::html {
namespace {

TEST(EntitiesTest, ReferencesAreRead) {
  const struct {
    const char* name;
    std::string_view bytes;
    bool in_attribute;
    std::size_t length;
    std::string_view text;
  } cases[] = {
      {"a name", "&eacute;t", false, 8, "\xC3\xA9"},
      {"an old name without its semicolon", "&eacutet", false, 7, "\xC3\xA9"},
      {"an old name inside a longer word of an attribute is text", "&copying", true, 0, ""},
      {"an old name before an equals sign of an attribute is text", "&copy=2", true, 0, ""},
      {"an old name at the end of an attribute", "&copy", true, 5, "\xC2\xA9"},
      {"a new name needs its semicolon", "&hellip ", false, 0, ""},
      {"a name of mathematics", "&Popf;", false, 6, "\xE2\x84\x99"},
      {"a character outside the basic plane", "&Afr;", false, 5, "\xF0\x9D\x94\x84"},
      {"a name of two characters", "&nvlt;", false, 6, "<\xE2\x83\x92"},
      {"the longest name", "&CounterClockwiseContourIntegral;", false, 33, "\xE2\x88\xB3"},
      {"the longest of two names", "&notin;", false, 7, "\xE2\x88\x89"},
      {"the old name in front of an unknown one", "&notit;", false, 4, "\xC2\xAC"},
      {"a name of the document's own", "&company;", false, 9, ""},
      {"no name", "& ", false, 0, ""},
      {"a decimal number", "&#233;", false, 6, "\xC3\xA9"},
      {"a hexadecimal number", "&#xE9;", false, 6, "\xC3\xA9"},
      {"a number of the C1 area is a character of Windows-1252", "&#150;", false, 6, "\xE2\x80\x93"},
      {"a number that no character has", "&#x110000;", false, 10, ""},
  };
  for (const auto& c : cases) {
    const Reference reference = read_reference(c.bytes, c.in_attribute);
    EXPECT_EQ(reference.length, c.length) << c.name;
    EXPECT_EQ(reference.text, c.text) << c.name;
  }
}

}  // namespace
}  // namespace kavo::html
