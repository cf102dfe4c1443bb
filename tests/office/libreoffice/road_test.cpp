// Word documents, presentations and workbooks on the whole road by the command, through LibreOffice.
#include <signal.h>

#include <chrono>
#include <thread>

#include "cli/run_kavo.h"
#include "office/libreoffice/flat_documents.h"
#include "office/libreoffice/office_fixture.h"
#include "office/office_converter.h"
#include "platform/files.h"
#include "support/failures.h"

namespace kavo::test {
namespace {

class OfficeRoad : public OfficeFixture {
 protected:
  void SetUp() override {
    make_document(u"report.doc", OfficeKind::kText,
                  std::string(kHead) +
                      "application/vnd.oasis.opendocument.text\"><office:body><office:text><text:p>A report about "
                      "ships</text:p><text:p>with two paragraphs</text:p></office:text></office:body></office:document>");
    make_document(u"deck.ppt", OfficeKind::kPresentation,
                  presentation_of("<draw:page draw:name=\"one\">" + text_box("<text:p>A deck about ships</text:p>") +
                                  "</draw:page>"));
    make_document(u"book.xls", OfficeKind::kWorkbook,
                  workbook_of(sheet("Ships", row(cell("Name") + cell("A <text:span text:style-name=\"bold\">bold</text:span> "
                                                                     "ship")))));
  }
  std::string path(std::u16string_view name) { return path_to_host(folder.path(name)); }
};

TEST_F(OfficeRoad, AllThreeTypesArePreparedTranslatedAndRebuiltInOneRun) {
  const Ran prepared = run_kavo({"prepare", path(u"report.doc"), path(u"deck.ppt"), path(u"book.xls"), "--source",
                                 "EN-US", "--target", "FR"});
  ASSERT_EQ(prepared.code, 0) << prepared.errors;
  const std::vector<std::string> tuds{path(u"report_doc_rtf_FR.tud"), path(u"deck_ppt_FR.tud"), path(u"book_xls_FR.tud")};
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

TEST_F(OfficeRoad, ADamagedDocumentCostsOnlyItself) {
  folder.write(u"bad.xls", "no workbook");
  const Ran ran =
      run_kavo({"prepare", path(u"bad.xls"), path(u"book.xls"), "--source", "EN-US", "--target", "FR"});
  EXPECT_EQ(ran.code, 1);
  EXPECT_NE(ran.errors.find("The workbook cannot be opened: it is damaged or of another kind"), std::string::npos)
      << ran.errors;
  EXPECT_FALSE(folder.exists(u"bad_xls_FR.tud"));
  EXPECT_TRUE(folder.exists(u"book_xls_FR.tud"));
}

TEST_F(OfficeRoad, ADocumentThatEndsTheEngineCostsOnlyItself) {
  std::string rows;
  for (int i = 0; i < 8000; ++i) rows += row(cell("<text:span text:style-name=\"bold\">b</text:span> text"));
  const auto large = make_document(u"large.xls", OfficeKind::kWorkbook, workbook_of(sheet("One", rows)));
  OfficeConverter converter;
  converter.write_form(folder.path(u"book.xls"));
  const pid_t engine = office_listener()->process().id();
  std::thread killer([&] {
    const auto give_up = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (!folder.exists(u"large.xls.kavo") && std::chrono::steady_clock::now() < give_up)
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
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

// What a frame holds is written into a Word document only with a layout.
TEST_F(OfficeRoad, TextsInFramesComeBackFromRtf) {
  folder.write(u"framed_doc.rtf",
               "{\\rtf1\\ansi Before {\\shp{\\*\\shpinst\\shpleft1000\\shptop1000\\shpright5000\\shpbottom2000"
               "{\\sp{\\sn shapeType}{\\sv 202}}{\\shptxt Inside the frame\\par}}} after\\par}");
  ASSERT_EQ(run_kavo({"word", "to-doc", path(u"framed_doc.rtf")}).code, 0);
  EXPECT_NE(flat_xml_of(folder.path(u"framed.doc"), OfficeKind::kText).find("Inside the frame"), std::string::npos);
}

}  // namespace
}  // namespace kavo::test
