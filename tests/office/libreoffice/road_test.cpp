// Word documents, presentations and workbooks on the whole road by the command, through LibreOffice.
#include <signal.h>

#include <chrono>
#include <thread>

#include "cli/run_kavo.h"
#include "office/libreoffice/flat_documents.h"
#include "office/libreoffice/office_fixture.h"
#include "office/office_converter.h"
#include "office/time_limit.h"
#include "platform/files.h"
#include "support/failures.h"

namespace kavo::test {
namespace {

class OfficeRoad : public OfficeFixture {
 protected:
  void SetUp() override {
    make_document(
        u"report.doc", OfficeKind::kText,
        std::string(kHead) +
            "application/vnd.oasis.opendocument.text\"><office:body><office:text><text:p>A report about "
            "ships</text:p><text:p>with two paragraphs</text:p></office:text></office:body></office:document>");
    make_document(u"deck.ppt", OfficeKind::kPresentation,
                  presentation_of("<draw:page draw:name=\"one\">" + text_box("<text:p>A deck about ships</text:p>") +
                                  "</draw:page>"));
    make_document(
        u"book.xls", OfficeKind::kWorkbook,
        workbook_of(sheet("Ships", row(cell("Name") + cell("A <text:span text:style-name=\"bold\">bold</text:span> "
                                                           "ship")))));
  }
  // One whose export takes its time, and the wait until it has begun.
  std::u16string make_large_book() {
    std::string rows;
    for (int i = 0; i < 8000; ++i) rows += row(cell("<text:span text:style-name=\"bold\">b</text:span> text"));
    return make_document(u"large.xls", OfficeKind::kWorkbook, workbook_of(sheet("One", rows)));
  }
  void wait_for_flag() const {
    const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!folder.exists(u"large.xls.kavo") && std::chrono::steady_clock::now() < give_up)
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  std::string path(std::u16string_view name) { return path_to_host(folder.path(name)); }
};

TEST_F(OfficeRoad, AllThreeTypesArePreparedTranslatedAndRebuiltInOneRun) {
  const Ran prepared = run_kavo(
      {"prepare", path(u"report.doc"), path(u"deck.ppt"), path(u"book.xls"), "--source", "EN-US", "--target", "FR"});
  ASSERT_EQ(prepared.code, 0) << prepared.errors;
  const std::vector<std::string> tuds{path(u"report_doc_rtf_FR.tud"), path(u"deck_ppt_FR.tud"),
                                      path(u"book_xls_FR.tud")};
  EXPECT_NE(folder.read(u"book_xls_FR.tud").find("resname=\"sheet:1/cell:A1\""), std::string::npos);
  ASSERT_EQ(run_kavo({"pseudo", tuds[0], tuds[1], tuds[2]}).code, 0);
  const Ran rebuilt = run_kavo({"rebuild", tuds[0], tuds[1], tuds[2]});
  ASSERT_EQ(rebuilt.code, 0) << rebuilt.errors;
  const struct {
    std::u16string_view name;
    OfficeKind kind;
    std::string_view text;
  } cases[] = {{u"report_FR.doc", OfficeKind::kText, "[À rèpôrt ábôüt shïps]"},
               {u"deck_FR.ppt", OfficeKind::kPresentation, "[À dèçk ábôüt shïps]"},
               {u"book_FR.xls", OfficeKind::kWorkbook, "[Ñámè]"}};
  for (const auto& c : cases)
    EXPECT_NE(flat_xml_of(folder.path(c.name), c.kind).find(c.text), std::string::npos) << path(c.name);
  EXPECT_NE(flat_xml_of(folder.path(u"book_FR.xls"), OfficeKind::kWorkbook).find("table:name=\"Shïps\""),
            std::string::npos)
      << "a sheet's name has no brackets";
}

TEST_F(OfficeRoad, VerifyProvesThem) {
  const Ran ran = run_kavo({"verify", path(u"report.doc"), path(u"deck.ppt"), path(u"book.xls")});
  EXPECT_EQ(ran.code, 0) << ran.output << ran.errors;
  EXPECT_NE(ran.output.find("3 of 3 files survive"), std::string::npos) << ran.output;
}

// Paragraphs and characters of Word documents, cells of workbooks; presentations have no styles that people see.
TEST_F(OfficeRoad, StylesCanBeExcluded) {
  make_document(u"styles.xls", OfficeKind::kWorkbook,
                workbook_of(sheet("One", row(cell("plain") + cell("a code", "Code")))));
  make_document(u"styles.doc", OfficeKind::kText,
                std::string(kHead) +
                    "application/vnd.oasis.opendocument.text\"><office:styles><style:style style:name=\"Code\" "
                    "style:family=\"paragraph\"/><style:style style:name=\"Key\" style:family=\"text\">"
                    "<style:text-properties fo:font-weight=\"bold\"/></style:style></office:styles><office:body>"
                    "<office:text><text:p>plain <text:span text:style-name=\"Key\">a key</text:span> here</text:p>"
                    "<text:p text:style-name=\"Code\">a code</text:p></office:text></office:body></office:document>");
  folder.write(u"kavo.json", R"({"version": 1, "profile": {"xls": {"excluded-styles": "code"},)"
                             R"( "rtf": {"excluded-styles": ["code", "key"]}}})");
  const Ran ran = run_kavo({"prepare", "styles.xls", "styles.doc", "--source", "EN-US", "--target", "FR"}, &folder);
  ASSERT_EQ(ran.code, 0) << ran.errors;
  for (const std::u16string_view name : {u"styles_xls_FR.tud", u"styles_doc_rtf_FR.tud"}) {
    const std::string tud = folder.read(name);
    EXPECT_NE(tud.find("<source>plain"), std::string::npos) << tud;
    EXPECT_EQ(tud.find("a code"), std::string::npos) << tud;
    EXPECT_EQ(tud.find("a key"), std::string::npos) << tud;
  }
  const Ran rebuilt = run_kavo({"rebuild", "styles_xls_FR.tud", "styles_doc_rtf_FR.tud"}, &folder);
  ASSERT_EQ(rebuilt.code, 0) << rebuilt.errors;
  EXPECT_NE(flat_xml_of(folder.path(u"styles_FR.xls"), OfficeKind::kWorkbook).find("a code"), std::string::npos);
  EXPECT_NE(flat_xml_of(folder.path(u"styles_FR.doc"), OfficeKind::kText).find("a key"), std::string::npos);
}

TEST_F(OfficeRoad, NamesAreContextAndSheetsColumnsAndRowsCanBeExcluded) {
  make_document(u"rows.xls", OfficeKind::kWorkbook,
                workbook_of(sheet("One", row(cell("a1") + cell("b1")) + row(cell("a2") + cell("b2"))) +
                            sheet("Two", row(cell("x1") + cell("y1")))));
  folder.write(u"kavo.json", R"({"version": 1, "profile": {"xls": {"excluded-sheets": ["two"],)"
                             R"( "excluded-columns": "B", "excluded-rows": ["One!2"], "formulas": false}}})");
  const Ran ran = run_kavo({"prepare", "rows.xls", "--source", "EN-US", "--target", "FR,DE"}, &folder);
  ASSERT_EQ(ran.code, 0) << ran.errors;
  for (const std::u16string_view name : {u"rows_xls_FR.tud", u"rows_xls_DE.tud"}) {
    const std::string tud = folder.read(name);
    for (const char* offered : {"<source>a1</source>", "<source>One</source>", "<note>sheet One</note>"})
      EXPECT_NE(tud.find(offered), std::string::npos) << offered;
    for (const char* excluded : {"b1", "a2", "x1", "Two"})
      EXPECT_EQ(tud.find("<source>" + std::string(excluded) + "</source>"), std::string::npos) << excluded;
  }
}

TEST_F(OfficeRoad, EachOptionOfWorkbooksInAProfileChangesWhatItSays) {
  const std::string blank = "<table:table-cell table:number-columns-repeated=\"5\"/>";
  const std::string group = "<table:shapes><draw:g>" + text_box("<text:p>first</text:p>") +
                            text_box("<text:p>second</text:p>") + "</draw:g></table:shapes>";
  const std::string formula =
      "<table:table-cell table:formula=\"of:=1+2\" office:value-type=\"float\" office:value=\"3\"/>";
  make_document(u"all.xls", OfficeKind::kWorkbook,
                workbook_of(sheet("One", group + row(cell("a1") + cell("b1") + blank + cell("h1")) +
                                             row(cell("a2") + cell("b2") + formula)) +
                            sheet("Two", row(cell("unseen")), "table:style-name=\"hidden\"")));
  // The texts in their order, their places, and what the translator sees beside them.
  const auto prepared = [&](const std::string& profile) {
    folder.write(u"kavo.json", "{\"version\": 1" + profile + "}");
    const Ran ran =
        run_kavo({"prepare", "all.xls", "--source", "EN-US", "--target", "FR", "--fresh", "--overwrite"}, &folder);
    EXPECT_EQ(ran.code, 0) << ran.errors;
    const std::string tud = folder.read(u"all_xls_FR.tud");
    std::string all;
    for (std::size_t at = 0; (at = tud.find("<source>", at)) != tud.npos; ++at)
      all += tud.substr(at + 8, tud.find('<', at + 8) - at - 8) + "|";
    return all + tud + folder.read(u"all_xls_FR.tud.skl");
  };
  const std::string usual = prepared("");
  const struct {
    const char* option;
    const char* text;
    bool without;
  } cases[] = {{"\"order\": \"columns\"", "a1|a2|b1|b2|", false},
               {"\"hidden\": false", "unseen", true},
               {"\"tolerance\": 4", "|h1|", true},
               {"\"ungroup\": true", "shape:1.1", true},
               {"\"formulas\": false", "<formula", true}};
  for (const auto& c : cases) {
    EXPECT_EQ(usual.find(c.text) != usual.npos, c.without) << c.option << usual;
    const std::string chosen = prepared(std::string(", \"profile\": {\"xls\": {") + c.option + "}}");
    EXPECT_EQ(chosen.find(c.text) == chosen.npos, c.without) << c.option << chosen;
  }
}

TEST_F(OfficeRoad, CharactersBeyond16BitsOfAWordDocumentAreOffered) {
  make_document(
      u"smile.doc", OfficeKind::kText,
      std::string(kHead) +
          "application/vnd.oasis.opendocument.text\"><office:body><office:text><text:p>A \xF0\x9F\x98\x80 smile "
          "\xF0\xA0\x80\x80</text:p></office:text></office:body></office:document>");
  ASSERT_EQ(run_kavo({"prepare", path(u"smile.doc"), "--source", "EN-US", "--target", "FR"}).code, 0);
  EXPECT_NE(folder.read(u"smile_doc_rtf_FR.tud").find("<source>A \xF0\x9F\x98\x80 smile \xF0\xA0\x80\x80</source>"),
            std::string::npos)
      << folder.read(u"smile_doc_rtf_FR.tud");
  ASSERT_EQ(run_kavo({"pseudo", path(u"smile_doc_rtf_FR.tud")}).code, 0);
  ASSERT_EQ(run_kavo({"rebuild", path(u"smile_doc_rtf_FR.tud")}).code, 0);
  EXPECT_NE(flat_xml_of(folder.path(u"smile_FR.doc"), OfficeKind::kText).find("\xF0\x9F\x98\x80"), std::string::npos);
}

TEST_F(OfficeRoad, ADamagedDocumentCostsOnlyItself) {
  folder.write(u"bad.xls", "no workbook");
  const Ran ran = run_kavo({"prepare", path(u"bad.xls"), path(u"book.xls"), "--source", "EN-US", "--target", "FR"});
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.errors.find("The workbook cannot be opened: it is damaged or of another kind"), std::string::npos)
      << ran.errors;
  EXPECT_FALSE(folder.exists(u"bad_xls_FR.tud"));
  EXPECT_TRUE(folder.exists(u"book_xls_FR.tud"));
}

TEST_F(OfficeRoad, ADocumentThatEndsTheEngineCostsOnlyItself) {
  const auto large = make_large_book();
  OfficeConverter converter;
  converter.write_form(folder.path(u"book.xls"));
  const pid_t engine = office_listener()->process().id();
  std::thread killer([&] {
    wait_for_flag();
    ::kill(engine, SIGKILL);
  });
  const auto ended = failure_of([&] { converter.write_form(large); });
  killer.join();
  ASSERT_TRUE(ended);
  EXPECT_EQ(ended->description(), u"LibreOffice ended unexpectedly");
  folder.write(u"book_xls.xml", "");
  EXPECT_NO_THROW(converter.write_form(folder.path(u"book.xls")));
  EXPECT_NE(folder.read(u"book_xls.xml").find("<seg "), std::string::npos);
  EXPECT_NE(office_listener()->process().id(), engine);
}

TEST_F(OfficeRoad, ADocumentThatHangsTheEngineCostsOnlyItselfAfterItsTime) {
  const auto large = make_large_book();
  OfficeConverter converter;
  converter.write_form(folder.path(u"book.xls"));
  const pid_t engine = office_listener()->process().id();
  std::thread stopper([&] {
    wait_for_flag();
    ::kill(engine, SIGSTOP);
  });
  store_time_limit(8);
  const auto ended = failure_of([&] { converter.write_form(large); });
  store_time_limit(std::nullopt);
  stopper.join();
  ASSERT_TRUE(ended);
  EXPECT_EQ(ended->description(),
            u"LibreOffice gave no sign of life for 8 s and was ended. The setting office.time-limit allows it more");
  folder.write(u"book_xls.xml", "");
  EXPECT_NO_THROW(converter.write_form(folder.path(u"book.xls")));
  EXPECT_NE(folder.read(u"book_xls.xml").find("<seg "), std::string::npos);
  EXPECT_NE(office_listener()->process().id(), engine);
}

// What a frame holds is written into a Word document only with a layout.
TEST_F(OfficeRoad, TextsInFramesComeBackFromRtf) {
  folder.write(u"framed_doc.rtf",
               "{\\rtf1\\ansi Before {\\shp{\\*\\shpinst\\shpleft1000\\shptop1000\\shpright5000\\shpbottom2000"
               "{\\sp{\\sn shapeType}{\\sv 202}}{\\shptxt Inside the frame\\par}}} after\\par}");
  ASSERT_EQ(run_kavo({"word", "to-doc", path(u"framed_doc.rtf")}).code, 0);
  EXPECT_NE(flat_xml_of(folder.path(u"framed.doc"), OfficeKind::kText).find("Inside the frame"), std::string::npos);
}

TEST_F(OfficeRoad, TextsInFramesThatAreLostBesideCommentsAreReported) {
  const std::string frame =
      "{\\shp{\\*\\shpinst\\shpleft1000\\shptop1000\\shpright5000\\shpbottom2000{\\sp{\\sn shapeType}{\\sv 202}}"
      "{\\shptxt Inside the frame\\par}}}";
  const std::string comment = "{\\*\\atnid X}{\\*\\atnauthor X}\\chatn{\\*\\annotation A remark\\par}";
  const struct {
    std::string body;
    bool is_told;
  } cases[] = {{frame, false}, {comment, false}, {frame + comment, true}};
  for (const auto& c : cases) {
    folder.write(u"framed_doc.rtf", "{\\rtf1\\ansi Before " + c.body + " after\\par}");
    const Ran ran = run_kavo({"word", "to-doc", "--overwrite", path(u"framed_doc.rtf")});
    EXPECT_EQ(ran.code, 0) << ran.errors;
    EXPECT_EQ((ran.output + ran.errors).find("the texts in frames") != std::string::npos, c.is_told)
        << ran.output << ran.errors;
    EXPECT_EQ(flat_xml_of(folder.path(u"framed.doc"), OfficeKind::kText).find("Inside the frame") != std::string::npos,
              c.body == frame);
  }
}

}  // namespace
}  // namespace kavo::test
