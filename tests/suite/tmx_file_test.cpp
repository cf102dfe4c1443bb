// The memory of removed texts, and memories that other programs wrote.
#include "suite/memory/tmx_file.h"

#include <gtest/gtest.h>

#include "platform/unicode.h"
#include "suite/document/coded_text.h"
#include "suite/suite_fixture.h"

namespace kavo::test {
namespace {

class TmxFile : public SuiteTest {
 protected:
  std::u16string file = in_folder(u"removed.tmx");
  std::string read(std::string_view source = "EN-US", std::string_view target = "FR") {
    std::string all;
    read_tmx(file, source, target, [&](const TmxUnit& unit) {
      all +=
          to_utf8(to_host_text(unit.source) + u"=" + to_host_text(unit.target)) + (unit.is_reviewed ? "" : "?") + "\n";
    });
    return all;
  }
  void put_memory(std::string_view body) {
    put(u"removed.tmx",
        "<?xml version=\"1.0\"?><tmx version=\"1.4\"><header/><body>" + std::string(body) + "</body></tmx>");
  }
  static std::string coded(std::u16string_view text) { return from_host_text(text); }
};

TEST_F(TmxFile, WhatIsWrittenIsRead) {
  const TmxUnit first[] = {{coded(u"A <1>bold</1> & <<2/>"), coded(u"Un <1>gras</1> & <2/>"), true},
                           {" two\tblanks ", " deux ", false}};
  append_to_tmx(file, "EN-US", "FR", first);
  const std::string before = get(u"removed.tmx");
  const TmxUnit second[] = {{"Three", "Drei", true}};
  append_to_tmx(file, "EN-US", "DE", second);
  EXPECT_EQ(read(), "A <1>bold</1> & <<2/>=Un <1>gras</1> & \n two\tblanks = deux ?\n")
      << "a code that the source does not have is none";
  EXPECT_EQ(read("EN-US", "DE"), "Three=Drei\n");
  EXPECT_EQ(read("EN-US", "IT"), "");
  const std::size_t end = before.find("</body>");
  EXPECT_EQ(get(u"removed.tmx").substr(0, end), before.substr(0, end)) << "what is there stays to the byte";
}

TEST_F(TmxFile, ReadsWhatOtherProgramsWrite) {
  const struct {
    const char* name;
    const char* body;
    const char* expected;
  } cases[] = {
      {"languages in any case, any order",
       "<tu><tuv xml:lang='FR'><seg>Un</seg></tuv><tuv xml:lang='EN-us'><seg>One</seg></tuv></tu>", "One=Un\n"},
      {"the attribute of earlier versions",
       "<tu><tuv lang='en-US'><seg>One</seg></tuv><tuv lang='fr'><seg>Un</seg></tuv></tu>", "One=Un\n"},
      {"codes with content",
       "<tu><tuv xml:lang='en-US'><seg><bpt i='4' x='1'>&lt;b></bpt>A<ept i='4'>&lt;/b></ept> <ph "
       "x='9'>&lt;br></ph></seg></tuv>"
       "<tuv xml:lang='fr'><seg><ph x='9'/><bpt i='4'>&lt;b></bpt>B<ept i='4'/></seg></tuv></tu>",
       "<1>A</1> <2/>=<2/><1>B</1>\n"},
      {"codes that cross",
       "<tu><tuv xml:lang='en-US'><seg><bpt i='1'/><bpt i='2'/>A<ept i='1'/><ept i='2'/></seg></tuv>"
       "<tuv xml:lang='fr'><seg><bpt i='1'/><bpt i='2'/>B<ept i='1'/><ept i='2'/></seg></tuv></tu>",
       "<1><2>A</1></2>=B\n"},
      {"highlights",
       "<tu><tuv xml:lang='en-US'><seg>A <hi>b</hi></seg></tuv><tuv xml:lang='fr'><seg>C</seg></tuv></tu>", "A b=C\n"},
      {"without one of the two", "<tu><tuv xml:lang='en-US'><seg>One</seg></tuv></tu>", ""},
      {"an empty translation", "<tu><tuv xml:lang='en-US'><seg>One</seg></tuv><tuv xml:lang='fr'><seg/></tuv></tu>",
       ""},
      {"notes and properties",
       "<tu><note>n</note><prop type='x'>p</prop><tuv xml:lang='en-US'><seg>One</seg></tuv>"
       "<tuv xml:lang='fr'><prop type='x-status'>needs-review</prop><seg>Un</seg></tuv></tu>",
       "One=Un?\n"},
      {"nothing", "", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    put_memory(c.body);
    EXPECT_EQ(read(), c.expected);
  }
}

TEST_F(TmxFile, ADamagedOneIsRefusedAndStays) {
  const std::string cases[] = {
      "",
      "my notes",
      "<xliff version='1.2'/>",
      "<tmx version='1.4'><header/><body><tu>",
      "<tmx version='1.4'><header/></tmx>",
      "<tmx version='1.4'><header/><body/></tmx>",
      "<?xml version='1.0' encoding='ISO-8859-1'?><tmx version='1.4'><header/><body></body></tmx>",
      "<!DOCTYPE tmx [<!ENTITY a 'b'>]><tmx version='1.4'><header/><body>&a;</body></tmx>",
  };
  const TmxUnit unit[] = {{"One", "Un", true}};
  for (const std::string& bytes : cases) {
    SCOPED_TRACE(bytes);
    put(u"removed.tmx", bytes);
    EXPECT_THROW(append_to_tmx(file, "EN-US", "FR", unit), failure);
    EXPECT_EQ(get(u"removed.tmx"), bytes);
  }
}

}  // namespace
}  // namespace kavo::test
