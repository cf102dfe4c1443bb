#include "suite/document/skeleton.h"

#include <gtest/gtest.h>

#include "suite/document/open_tag.h"
#include "suite/suite_fixture.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

using namespace std::string_view_literals;

class SkeletonTest : public SuiteTest {
 protected:
  // A skeleton with every kind of record; "$" stands for the nested text "alt".
  void write_skeleton() {
    const TextCoding coding(65001);
    SkeletonWriter writer(in_folder(u"a.skl"));
    writer.begin(u"K19TXT", 77, {65001, false, "data\nmore"});
    writer.bytes("head\n");
    writer.bytes("more ");
    writer.computed(5, "computed");
    SegmentBuilder inner(coding);
    inner.start(1, 20);
    inner.add_text("alt");
    writer.segment(1, inner.finish(), true);
    SegmentBuilder outer(coding);
    outer.start(1, 10);
    outer.add_text("x ");
    outer.begin_code(CodeKind::kStandalone, "image", "", true);
    outer.code_bytes("<img alt='");
    outer.nested(1, "alt");
    outer.code_bytes("'>");
    outer.end_code();
    outer.add_text(" y");
    outer.context("quote");
    writer.segment(2, outer.finish(), false);
    writer.bytes("tail");
    writer.finish(2);
    writer.commit();
  }

  void write_open_tag(std::u16string_view inner, std::u16string_view outer, bool inner_same, bool outer_same,
                      const std::optional<SegmentColours>& colours = std::nullopt) {
    OpenTagHeader header;
    header.checksum = 77;
    header.target_code_page = 65001;
    header.source_language = "EN-US";
    header.target_language = "FR";
    header.colours = colours;
    OpenTagWriter writer(in_folder(u"a.otf"), header);
    writer.segment(1, TranslationStatus::kTranslated, inner_same, from_host_text(inner));
    writer.segment(2, TranslationStatus::kTranslated, outer_same, from_host_text(outer));
    writer.commit();
  }

  void build() {
    ProgressEvent progress;
    create_target({in_folder(u"b.txt"), in_folder(u"a.otf"), in_folder(u"a.skl"), u"", u"k19txt.obj.1"}, progress);
  }
};

TEST_F(SkeletonTest, ReadsWhatWasWritten) {
  write_skeleton();
  const std::string bytes = get(u"a.skl");
  same_for_every_block_size(bytes.size(), [&](std::size_t block) {
    const BlockSizeScope scope(block);
    SkeletonReader reader(in_folder(u"a.skl"));
    EXPECT_EQ(reader.header().filter, u"K19TXT");
    EXPECT_EQ(reader.header().checksum, 77u);
    SkeletonRecord record;
    reader.next(record);
    EXPECT_EQ(record.bytes, "head\nmore ");
    reader.next(record);
    EXPECT_EQ(record.kind, SkeletonRecord::Kind::kComputed);
    EXPECT_EQ(record.number, 5u);
    EXPECT_EQ(record.bytes, "computed");
    reader.next(record);
    EXPECT_EQ(record.kind, SkeletonRecord::Kind::kNestedSegment);
    EXPECT_EQ(record.hole.original, "alt");
    reader.next(record);
    EXPECT_EQ(record.kind, SkeletonRecord::Kind::kSegment);
    EXPECT_EQ(record.hole.original, "x <img alt='alt'> y");
    EXPECT_EQ(record.hole.context, "quote");
    EXPECT_EQ(record.hole.column, 10);
    EXPECT_EQ(record.hole.codes.size(), 1u);
    EXPECT_TRUE(record.hole.codes[0].required);
    EXPECT_EQ(record.hole.bytes_of({true, CodeKind::kStandalone, "1"}), "<img alt='alt'>");
    EXPECT_EQ(record.hole.find({true, CodeKind::kOpen, "1"}), nullptr);
    EXPECT_EQ(record.hole.find({true, CodeKind::kStandalone, "2"}), nullptr);
    EXPECT_EQ(record.nested.size(), 1u);
    reader.next(record);
    EXPECT_EQ(record.bytes, "tail");
    reader.next(record);
    EXPECT_EQ(record.kind, SkeletonRecord::Kind::kEnd);
    EXPECT_EQ(record.number, 2u);
    return 0;
  });
}

TEST_F(SkeletonTest, NestedTextsTakeTheirPlaces) {
  struct Case {
    const char* name;
    const char16_t* inner;
    const char16_t* outer;
    bool inner_same;
    bool outer_same;
    const char* expected;
  };
  const Case cases[] = {
      {"unchanged", u"alt", u"x <1/> y", true, true, "x <img alt='alt'> y"},
      {"inner changed", u"INNER", u"x <1/> y", false, true, "x <img alt='INNER'> y"},
      {"outer changed", u"alt", u"Y <1/> X", true, false, "Y <img alt='alt'> X"},
      {"both changed", u"I", u"<1/>O", false, false, "<img alt='I'>O"},
  };
  write_skeleton();
  for (const Case& c : cases) {
    write_open_tag(c.inner, c.outer, c.inner_same, c.outer_same);
    build();
    EXPECT_EQ(get(u"b.txt"), "head\nmore computed" + std::string(c.expected) + "tail") << c.name;
  }
}

TEST_F(SkeletonTest, ARequiredCodeMustComeBackOnce) {
  write_skeleton();
  put(u"b.txt", "old");
  write_open_tag(u"alt", u"gone", true, false);
  EXPECT_NE(reason_of([&] { build(); }).find(u"segment 2 (line 1, column 10): code 1 is missing"),
            std::u16string::npos);
  write_open_tag(u"alt", u"<1/><1/>", true, false);
  EXPECT_NE(reason_of([&] { build(); }).find(u"doubled"), std::u16string::npos);
  write_open_tag(u"alt", u"<1/><2/>", true, false);
  EXPECT_NE(reason_of([&] { build(); }).find(u"no code 2"), std::u16string::npos);
  EXPECT_EQ(get(u"b.txt"), "old");
}

TEST_F(SkeletonTest, PlainTextShowsNoColours) {
  write_skeleton();
  write_open_tag(u"I", u"<1/>O", false, false, SegmentColours{1, 2, 3, 4});
  build();
  EXPECT_EQ(get(u"b.txt"), "head\nmore computed<img alt='I'>Otail");
}

TEST_F(SkeletonTest, FilesThatDoNotBelongTogetherAreRefused) {
  write_skeleton();
  write_open_tag(u"alt", u"x <1/> y", true, true);
  ProgressEvent progress;
  const auto reason_with = [&](std::u16string_view open_tag, std::u16string_view skeleton, std::u16string_view filter) {
    return reason_of([&] {
      create_target({in_folder(u"b.txt"), in_folder(open_tag), in_folder(skeleton), u"", std::u16string(filter)},
                    progress);
    });
  };
  EXPECT_NE(reason_with(u"a.otf", u"a.skl", u"K19HTM").find(u"K19TXT"), std::u16string::npos);
  EXPECT_NE(reason_with(u"a.skl", u"a.skl", u"").find(u"not an OpenTag file"), std::u16string::npos);
  EXPECT_NE(reason_with(u"a.otf", u"a.otf", u"").find(u"not a skeleton"), std::u16string::npos);
  EXPECT_NE(reason_with(u"a.otf", u"missing.skl", u""), u"");
  put(u"c.txt", "Other");
  const BilingualDocument other(convert(u"c.txt"));
  other.save_open_tag(in_folder(u"c.otf"));
  EXPECT_NE(reason_with(u"c.otf", u"a.skl", u"").find(u"another document"), std::u16string::npos);
  EXPECT_FALSE(has(u"b.txt"));
}

// Neither of the two files may be cut anywhere without being noticed, and no damage may do more than fail.
TEST_F(SkeletonTest, EveryCutOrDamagedFileFailsOrChangesBytesOnly) {
  write_skeleton();
  write_open_tag(u"I", u"<1/>O", false, false);
  for (const std::u16string_view name : {u"a.skl", u"a.otf"}) {
    const std::string whole = get(name);
    for (std::size_t cut = 0; cut < whole.size(); ++cut) {
      put(name, whole.substr(0, cut));
      EXPECT_NE(reason_of([&] { build(); }), u"") << cut;
    }
    for (std::size_t at = 0; at < whole.size(); ++at)
      for (const char byte : {'\0', '9', 'n', ' ', '\n'}) {
        std::string damaged = whole;
        damaged[at] = byte;
        put(name, damaged);
        reason_of([&] { build(); });
      }
    put(name, whole);
  }
}

}  // namespace
}  // namespace kavo::test
