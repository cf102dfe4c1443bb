// What a unit of a new bilingual document says of its text.
#include <gtest/gtest.h>

#include "suite/document/tud_format.h"

namespace kavo::test {
namespace {

class TudWriter : public testing::Test {
 protected:
  std::string unit() {
    std::string xml;
    append_tud_unit(xml, 1, builder.finish(), header);
    return xml;
  }
  // From `begin` to the end of `end`.
  std::string part(const std::string& xml, std::string_view begin, std::string_view end) {
    const std::size_t at = xml.find(begin);
    const std::size_t to = xml.find(end, at);
    return at == std::string::npos || to == std::string::npos ? "" : xml.substr(at, to + end.size() - at);
  }
  std::string location() { return part(unit(), "<context-group", "</context-group>"); }

  TextCoding coding{65001};
  SegmentBuilder builder{coding};
  TudHeader header;
};

TEST_F(TudWriter, NamesThePlaceWhereTheAuthorFindsAText) {
  struct Case {
    const char* name;
    const char* original;
    const char* author_document;
    std::int64_t author_line;
    const char* expected;
  };
  const Case cases[] = {
      {"its own file", "a.htm", "a.htm", 0, "sourcefile\">a.htm</context><context context-type=\"linenumber\">7<"},
      {"no author known", "a.htm", "", 0, "sourcefile\">a.htm</context><context context-type=\"linenumber\">7<"},
      {"prepared, line known", "a_asp.htm", "a.asp", 5,
       "sourcefile\">a.asp</context><context context-type=\"linenumber\">5<"},
      {"prepared, line unknown", "a_asp.htm", "a.asp", 0,
       "sourcefile\">a.asp</context><context context-type=\"element"},
      {"a name that XML escapes", "a&b.htm", "", 0, "sourcefile\">a&amp;b.htm</context>"},
  };
  for (const Case& c : cases) {
    header.original = c.original;
    header.set.author_document = c.author_document;
    builder.start(7, 3);
    builder.add_text("x");
    builder.author_line(c.author_line);
    builder.element("p/a<b>");
    const std::string xml = location();
    EXPECT_TRUE(xml.starts_with("<context-group purpose=\"location\"><context context-type=\"sourcefile\">")) << xml;
    EXPECT_NE(xml.find(c.expected), std::string::npos) << c.name << ": " << xml;
    EXPECT_NE(xml.find("\"element\">p/a&lt;b&gt;</context>"), std::string::npos) << xml;
  }
}

TEST_F(TudWriter, SaysWhatCodesStandFor) {
  builder.start(1, 1);
  builder.add_code(CodeKind::kOpen, "bold", "", "<b>");
  builder.equivalent("<b>");
  builder.add_text("x");
  builder.add_code(CodeKind::kClose, "bold", "", "</b>");
  builder.add_code(CodeKind::kStandalone, "x-script", "<!-- 1 -->", "<!-- 1 -->");
  builder.equivalent("<%= rs(\"name\") %>");
  builder.add_code(CodeKind::kStandalone, "lb", "<br>", "<br>");
  builder.add_code(CodeKind::kStandalone, "", "", "\t");
  const std::string xml = unit();
  EXPECT_NE(xml.find("<g id=\"1\" ctype=\"bold\" equiv-text=\"&lt;b&gt;\">x</g>"), std::string::npos) << xml;
  EXPECT_NE(xml.find("<ph id=\"2\" ctype=\"x-script\" equiv-text=\"&lt;%= rs(&quot;name&quot;) %&gt;\">"),
            std::string::npos)
      << xml;
  EXPECT_NE(xml.find("<x id=\"4\"/>"), std::string::npos) << xml;
  EXPECT_EQ(part(xml, "<note", "</note>"),
            "<note from=\"K19Suite\">{1} &lt;b&gt;  {2} &lt;%= rs(\"name\") %&gt;  {3} &lt;br&gt;</note>");
}

TEST_F(TudWriter, ListsNoMoreCodesThanSomebodyReads) {
  builder.start(1, 1);
  for (int i = 0; i < 1000; ++i) builder.add_code(CodeKind::kStandalone, "", "<br>", "<br>");
  const std::string note = part(unit(), "<note", "</note>");
  EXPECT_LT(note.size(), 1000u);
  EXPECT_TRUE(note.ends_with(" ...</note>")) << note;
}

TEST_F(TudWriter, KeepsNoteAndCommentApart) {
  builder.start(1, 1);
  builder.add_text("x");
  EXPECT_EQ(unit().find("<note"), std::string::npos);
  builder.note("alt");
  builder.comment("Greets <everybody>");
  EXPECT_NE(unit().find("<note>alt</note><note from=\"author\">Greets &lt;everybody&gt;</note>"), std::string::npos);
}

TEST_F(TudWriter, StartsEachSegmentAfresh) {
  builder.start(1, 1);
  builder.name("id");
  builder.element("p");
  builder.comment("c");
  builder.author_line(3);
  builder.start(1, 1);
  builder.add_text("x");
  const Segment& segment = builder.finish();
  EXPECT_EQ(segment.name + segment.element + segment.comment, "");
  EXPECT_EQ(segment.author_line, 0);
}

}  // namespace
}  // namespace kavo::test
