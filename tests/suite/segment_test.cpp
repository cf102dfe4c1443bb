#include "suite/document/segment.h"

#include <gtest/gtest.h>

namespace kavo::test {
namespace {

// "o" and "c" codes by type, written as <type> and </type>; "<type/>" is standalone; the rest is text.
const Segment& build(SegmentBuilder& builder, std::string_view markup) {
  builder.start(1, 1);
  while (!markup.empty()) {
    if (markup.front() != '<') {
      const std::size_t end = std::min(markup.find('<'), markup.size());
      builder.add_text(markup.substr(0, end));
      markup.remove_prefix(end);
      continue;
    }
    const std::size_t end = markup.find('>') + 1;
    const std::string_view tag = markup.substr(0, end);
    const bool closes = tag[1] == '/';
    const bool stands_alone = tag.ends_with("/>");
    const std::string_view type = tag.substr(closes ? 2 : 1, tag.size() - (closes || stands_alone ? 3 : 2));
    builder.add_code(closes         ? CodeKind::kClose
                     : stands_alone ? CodeKind::kStandalone
                                    : CodeKind::kOpen,
                     type, tag, tag);
    markup.remove_prefix(end);
  }
  return builder.finish();
}

TEST(SegmentBuilder, NumbersAndPairsCodes) {
  struct Case {
    const char* name;
    const char* markup;
    const char16_t* text;
  };
  const Case cases[] = {
      {"text", "plain", u"plain"},
      {"pair", "<b>bold</b>", u"<1>bold</1>"},
      {"nested", "<b><i>x</i></b>", u"<1><2>x</2></1>"},
      {"one after the other", "<b>x</b><b>y</b>", u"<1>x</1><2>y</2>"},
      {"same inside same", "<b>x<b>y</b></b>", u"<1>x<2>y</2></1>"},
      {"opened elsewhere", "x</b>y", u"x<1/>y"},
      {"closed elsewhere", "<b>x", u"<1/>x"},
      {"crossing", "<b>x<i>y</b>z</i>", u"<1>x<2/>y</1>z<3/>"},
      {"standalone", "x<br/>y", u"x<1/>y"},
      {"codes only", "<b></b><br/>", u"<1></1><2/>"},
  };
  const TextCoding coding(65001);
  SegmentBuilder builder(coding);
  for (const Case& c : cases) {
    const Segment& segment = build(builder, c.markup);
    EXPECT_EQ(to_host_text(segment.text), c.text) << c.name;
    EXPECT_EQ(segment.original, c.markup) << c.name;
    for (const InlineCode& code : segment.codes)
      EXPECT_EQ(segment.original[code.begin], '<') << c.name << " code " << code.id;
  }
}

TEST(SegmentBuilder, InvalidBytesAndControlCharactersBecomeCodes) {
  const TextCoding coding(65001);
  SegmentBuilder builder(coding);
  builder.start(3, 4);
  builder.add_text(
      "a\xFF\x01"
      "b");
  const Segment& segment = builder.finish();
  EXPECT_EQ(to_host_text(segment.text), u"a<1/><2/>b");
  EXPECT_EQ(segment.original,
            "a\xFF\x01"
            "b");
  ASSERT_EQ(segment.codes.size(), 2u);
  EXPECT_EQ(segment.codes[0].shown, "[FF]");
  EXPECT_EQ(segment.codes[0].type, "x-byte");
  EXPECT_EQ(segment.codes[1].shown, "[01]");
  EXPECT_EQ(segment.codes[1].type, "x-control");
}

TEST(SegmentBuilder, TextInAnotherForm) {
  const TextCoding coding(1252);
  SegmentBuilder builder(coding);
  builder.start(1, 1);
  builder.add_text("\xC3\xA9", "&eacute;");
  builder.add_text("\x01", "&#1;");
  builder.add_hidden("\r\n  ");
  builder.add_text("t");
  const Segment& segment = builder.finish();
  EXPECT_EQ(to_host_text(segment.text), u"\u00E9<1/>t");
  EXPECT_EQ(segment.original, "&eacute;&#1;\r\n  t");
}

TEST(SegmentBuilder, KnowsWhetherThereIsText) {
  const TextCoding coding(65001);
  SegmentBuilder builder(coding);
  for (const char* blank : {"", " \t\r\n", "\xC2\xA0", "<b> </b>"}) {
    build(builder, blank);
    EXPECT_FALSE(builder.has_text()) << blank;
  }
  build(builder, "<b> .</b>");
  EXPECT_TRUE(builder.has_text());
}

TEST(SegmentBuilder, ShowsLongCodesShortened) {
  const TextCoding coding(65001);
  SegmentBuilder builder(coding);
  builder.start(1, 1);
  builder.add_code(CodeKind::kStandalone, "", std::string(1000, 'x'), "x");
  EXPECT_LE(builder.finish().codes[0].shown.size(), 210u);
}

TEST(SegmentBuilder, ThousandsOfOpenCodesTakeLinearTime) {
  const TextCoding coding(65001);
  SegmentBuilder builder(coding);
  builder.start(1, 1);
  constexpr int kMany = 200000;
  for (int i = 0; i < kMany; ++i) builder.add_code(CodeKind::kOpen, "bold", "", "<b>");
  for (int i = 0; i < kMany; ++i) builder.add_code(CodeKind::kClose, "italic", "", "</i>");
  const Segment& segment = builder.finish();
  EXPECT_EQ(segment.codes.size(), 2u * kMany);
  EXPECT_EQ(segment.codes.back().id, 2u * kMany);
}

}  // namespace
}  // namespace kavo::test
