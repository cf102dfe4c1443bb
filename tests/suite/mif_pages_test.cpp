// Which texts of a MIF document are offered, by the kind of page that they are on.
#include "suite/filters/mif/mif_pages.h"

#include <gtest/gtest.h>

#include "common/block_reader.h"
#include "suite/suite_fixture.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

std::string para(std::string_view line) { return "<Para <ParaLine " + std::string(line) + ">>\n"; }
std::string page(std::string_view kind, std::string_view frame, std::string_view more = "") {
  return "<Page <PageType " + std::string(kind) + "> <TextRect <ID " + std::string(frame) + ">>" + std::string(more) +
         ">\n";
}
// A flow that begins in a text frame.
std::string flow(std::string_view frame, std::string_view lines) {
  return "<TextFlow <Notes <FNote <ID 1>>> " + para("<TextRectID " + std::string(frame) + ">" + std::string(lines)) +
         ">\n";
}
std::string text(std::string_view value) { return "<String `" + std::string(value) + "'>"; }

class MifPagesTest : public SuiteTest {
 protected:
  static Road mif_road(std::string page_types = "") {
    Road road{.filter = u"K19MIF", .source_code_page = 1252};
    if (!page_types.empty()) road.options["mif.page-types"] = std::move(page_types);
    return road;
  }

  // The texts in order, with "-" in front of those that are locked; the document comes back unchanged.
  std::vector<std::u16string> offered(std::string_view document, const Road& road) {
    return same_for_every_block_size(document.size(), [&](std::size_t block) {
      const BlockSizeScope scope(block);
      put(u"a.mif", document);
      const std::u16string tud = convert(u"a.mif", road);
      EXPECT_EQ(rebuild(tud, road), document);
      const BilingualDocument bilingual(tud);
      std::vector<std::u16string> texts;
      for (std::size_t i = 0; i < bilingual.size(); ++i)
        texts.push_back((bilingual.segment(i).status == TranslationStatus::kLocked ? u"-" : u"") +
                        to_host_text(bilingual.segment(i).source));
      return texts;
    });
  }
};

using Texts = std::vector<std::u16string>;

const std::string kDocument = "<MIFFile 9.00>\n<AFrames <Frame <ID 3> <Frame <ID 4> <TextRect <ID 41>>> <TextLine " +
                              text("in a frame") + ">> <Frame <ID 5> <TextLine " + text("in a reference frame") +
                              ">>>\n<Tbls <Tbl <TblID 1> " + para(text("table") + "<AFrame 5>") + "> <Tbl <TblID 2> " +
                              para(text("reference table") + "<AFrame 5>") + ">>\n" + page("LeftMasterPage", "11") +
                              page("ReferencePage", "12", "<TextLine " + text("drawn") + ">") +
                              page("HiddenPage", "13") + page("BodyPage", "14") + flow("11", text("header")) +
                              flow("12", text("reference") + "<ATbl 2>") + flow("13", text("hidden")) +
                              flow("41", text("framed")) + flow("14", "<ATbl 1><AFrame 3>" + text("body"));

TEST_F(MifPagesTest, TextsOfReferenceAndHiddenPagesAreLocked) {
  // The frame 5 stands in both tables: the first place counts.
  EXPECT_EQ(offered(kDocument, mif_road()),
            (Texts{u"in a frame", u"in a reference frame", u"table", u"-reference table", u"-drawn", u"header",
                   u"-reference", u"-hidden", u"framed", u"body"}));
}

TEST_F(MifPagesTest, TheOptionNamesTheKindsOfPages) {
  EXPECT_EQ(offered(kDocument, mif_road("reference, hidden")),
            (Texts{u"-in a frame", u"-in a reference frame", u"-table", u"reference table", u"drawn", u"-header",
                   u"reference", u"hidden", u"-framed", u"-body"}));
  EXPECT_EQ(reason_of([&] { offered(kDocument, mif_road("body,margin")); }),
            u"\"margin\" is not a kind of page; write body, master, reference or hidden");
}

TEST_F(MifPagesTest, TheNoteSaysWhyATextIsLocked) {
  put(u"a.mif", kDocument);
  EXPECT_NE(files.get(convert(u"a.mif", mif_road()))
                .find("<note>The text is on a hidden page: it is translated when the option mif.page-types names"),
            std::string::npos);
}

TEST_F(MifPagesTest, TextsThatNothingPlacesAreOffered) {
  EXPECT_EQ(offered("<Book 9.00>\n" + para(text("a")), mif_road()), (Texts{u"a"})) << "a book";
  EXPECT_EQ(offered("<MIFFile 9.00>\n" + flow("7", text("a")), mif_road()), (Texts{u"a"})) << "no page";
  EXPECT_EQ(offered("<MIFFile 9.00>\n<Tbls <Tbl <TblID 1>" + para(text("a") + "<ATbl 1>") + ">>", mif_road()),
            (Texts{u"a"}))
      << "a table in itself";
  EXPECT_EQ(offered("<MIFFile 9.00>\n<Tbls <Tbl <TblID 1>" + para(text("a") + "<AFrame 2>") + "> <Tbl <TblID 99999" +
                        std::string(300, '9') + "> " + para(text("b")) + ">>",
                    mif_road()),
            (Texts{u"a", u"b"}))
      << "numbers that are none";
}

const std::string kVariable = "<Variable <VariableName `Title'> <Unique 1";

std::string masters(std::string_view first, std::string_view second) {
  return "<MIFFile 9.00>\n" + page("LeftMasterPage", "11") + page("RightMasterPage", "12") + page("BodyPage", "14") +
         flow("11", first) + flow("12", second) + flow("14", text("body x"));
}

TEST_F(MifPagesTest, EqualTextsOfMasterPagesAreOfferedOnceAndWrittenInBothPlaces) {
  const auto to_upper_x = [](std::u16string text) {
    for (char16_t& c : text)
      if (c == u'x') c = u'X';
    return text;
  };
  const std::string first = text("Draft x ") + kVariable + "0>>" + text(" y");
  // Its lines broken elsewhere.
  const std::string second = text("Draft ") + text("x ") + kVariable + "7>>" + text(" y");
  EXPECT_EQ(offered(masters(first, second), mif_road()), (Texts{u"Draft x <1/> y", u"body x"}));
  const std::string translated_first = text("Draft X ") + kVariable + "0>>" + text(" y");
  const std::string translated_second = text("Draft X ") + kVariable + "7>>" + text(" y");
  std::string expected = masters(translated_first, translated_second);
  expected.replace(expected.rfind("body x"), 6, "body X");
  EXPECT_EQ(translated(u"a.mif", masters(first, second), to_upper_x, mif_road()), expected);
}

TEST_F(MifPagesTest, TextsOfMasterPagesThatDifferAreOfferedEach) {
  EXPECT_EQ(offered(masters(text("a"), text("b")), mif_road()), (Texts{u"a", u"b", u"body x"}));
  EXPECT_EQ(offered(masters(text("a ") + "<AFrame 1>" + text("b"), text("a ") + "<AFrame 2>" + text("b")), mif_road()),
            (Texts{u"a <1/>b", u"a <1/>b", u"body x"}))
      << "other anchors";
  EXPECT_EQ(offered(masters(text("body x"), text("c")), mif_road()), (Texts{u"body x", u"c", u"body x"}))
      << "the body's texts count each for itself";
}

TEST_F(MifPagesTest, ColoursStandInBothPlaces) {
  Road road = mif_road();
  road.colours = SegmentColours{0x0000FF, 0x00FF00, 0xFF0000, 0x332211};
  put(u"a.mif", masters(text("a"), text("a")));
  const std::u16string tud = convert(u"a.mif", road);
  const std::string rebuilt = rebuild(tud, road);
  const std::string coloured = "<FColor `KAVO untranslated'>><String `a'>";
  const std::size_t first = rebuilt.find(coloured);
  ASSERT_NE(first, std::string::npos) << rebuilt;
  EXPECT_NE(rebuilt.find(coloured, first + 1), std::string::npos) << rebuilt;
}

}  // namespace
}  // namespace kavo::test
