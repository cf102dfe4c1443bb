// What the engine does with documents of ours, and with a LibreOffice that fails.
#include <signal.h>

#include <atomic>
#include <chrono>
#include <regex>
#include <thread>

#include "common/clsCommon.h"
#include "office/clsDOC2RTF.h"
#include "office/clsPPTUtil.h"
#include "office/clsXLSUtil.h"
#include "office/excel_options.h"
#include "office/late_bound.h"
#include "office/libreoffice/flat_documents.h"
#include "office/libreoffice/office_fixture.h"
#include "platform/desktop.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "support/failures.h"

namespace kavo::test {
namespace {

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from << " is not in " << text;
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

class OfficeEngine : public OfficeFixture {
 protected:
  void TearDown() override { save_excel_options({}); }

  std::string export_workbook(std::u16string_view path) {
    clsXLSUtil util;
    util.XLSFile(path);
    EXPECT_EQ(util.XLS2XML(), 0) << to_utf8(util.errors().first_description());
    return read_file(util.XMLFile());
  }
  // Without the headers and footers that every new workbook has.
  static std::vector<std::string> texts_of(const std::string& xml) {
    return segments_of(std::regex_replace(xml, std::regex("<seg place=\"sheet:[0-9]+/(header|footer)/.*"), ""));
  }
  // The result of importing this XML into the workbook, and why.
  std::pair<std::int32_t, std::string> import_workbook(std::u16string_view path, std::string_view xml) {
    clsXLSUtil util;
    util.XLSFile(path);
    write_file(util.XMLFile(), xml);
    const std::int32_t result = util.XML2XLS();
    return {result, to_utf8(util.errors().first_description())};
  }
};

TEST_F(OfficeEngine, FormattedCellsKeepTheirFormattingOnTheirWords) {
  const auto path = make_document(
      u"book.xls", OfficeKind::kWorkbook,
      workbook_of(sheet("One", row(cell("plain <text:span text:style-name=\"bold\">strong</text:span> end")))));
  const std::string xml = export_workbook(path);
  EXPECT_NE(xml.find("<g id=\"1\">plain </g><g id=\"2\">strong</g><g id=\"3\"> end</g>"), std::string::npos) << xml;
  // The words change their order, and one is new.
  const auto [result, reason] =
      import_workbook(path, replaced(xml, "<g id=\"1\">plain </g><g id=\"2\">strong</g><g id=\"3\"> end</g>",
                                     "<g id=\"2\">kr&#228;ftig</g><g id=\"1\"> einfach </g>neu<g id=\"3\"> Ende</g>"));
  EXPECT_EQ(result, 0) << reason;
  const std::string again = export_workbook(path);
  EXPECT_NE(again.find("<g id=\"1\">kr\u00E4ftig</g><g id=\"2\"> einfach neu Ende</g>"), std::string::npos) << again;
  const std::string flat = flat_xml_of(path, OfficeKind::kWorkbook);
  EXPECT_NE(flat.find("bold"), std::string::npos);
}

TEST_F(OfficeEngine, NumbersAndFormulasStayAndFormulasAreShownWhenAsked) {
  const std::string rows =
      row(cell("label") + "<table:table-cell office:value-type=\"float\" office:value=\"4.5\"/>" +
          "<table:table-cell table:formula=\"of:=[.B1]*2\" office:value-type=\"float\" office:value=\"9\"/>" +
          "<table:table-cell table:formula=\"of:=&quot;sum &quot;&amp;[.C1]\" office:value-type=\"string\"/>") +
      row(cell("12") + cell("=A1"));
  const auto path = make_document(u"book.xls", OfficeKind::kWorkbook, workbook_of(sheet("One", rows)));
  const std::string xml = export_workbook(path);
  EXPECT_EQ(texts_of(xml), (std::vector<std::string>{"label", "12", "=A1", "One"})) << xml;
  EXPECT_NE(xml.find("<formula place=\"sheet:1/cell:C1\">=B1*2</formula>"), std::string::npos) << xml;
  EXPECT_EQ(import_workbook(path, replaced(replaced(xml, ">12<", ">13<"), ">label<", ">4711<")).first, 0);
  const std::string again = export_workbook(path);
  // A translation that looks like a number or a formula stays a text.
  EXPECT_EQ(texts_of(again), (std::vector<std::string>{"4711", "13", "=A1", "One"})) << again;
  EXPECT_NE(again.find("<formula place=\"sheet:1/cell:C1\">=B1*2</formula>"), std::string::npos);
  ExcelOptions options;
  options.formulas = false;
  save_excel_options(options);
  EXPECT_EQ(export_workbook(path).find("<formula"), std::string::npos);
}

TEST_F(OfficeEngine, TheOptionsOrderHiddenAndToleranceAreHonoured) {
  const std::string blank = "<table:table-cell table:number-columns-repeated=\"5\"/>";
  const auto path = make_document(
      u"book.xls", OfficeKind::kWorkbook,
      workbook_of(sheet("One", row(cell("a1") + cell("b1") + blank + cell("h1")) + row(cell("a2") + cell("b2"))) +
                  sheet("Two", row(cell("unseen")), "table:style-name=\"hidden\"")));
  using Texts = std::vector<std::string>;
  EXPECT_EQ(texts_of(export_workbook(path)), (Texts{"a1", "b1", "h1", "a2", "b2", "One", "unseen", "Two"}));
  ExcelOptions options;
  options.order = 1;
  save_excel_options(options);
  EXPECT_EQ(texts_of(export_workbook(path)), (Texts{"a1", "a2", "b1", "b2", "h1", "One", "unseen", "Two"}));
  options = {};
  options.hidden = false;
  save_excel_options(options);
  EXPECT_EQ(texts_of(export_workbook(path)), (Texts{"a1", "b1", "h1", "a2", "b2", "One"}));
  options = {};
  options.tolerance = u"5";
  save_excel_options(options);
  EXPECT_EQ(texts_of(export_workbook(path)), (Texts{"a1", "b1", "h1", "a2", "b2", "One", "unseen", "Two"}));
  options.tolerance = u"4";
  save_excel_options(options);
  const std::string xml = export_workbook(path);
  EXPECT_EQ(texts_of(xml), (Texts{"a1", "b1", "a2", "b2", "One", "unseen", "Two"}));
  EXPECT_NE(xml.find("<left-out place=\"sheet:1\" texts=\"1\"/>"), std::string::npos) << xml;
  // The import uses the options of the export, whatever they are now.
  save_excel_options({});
  EXPECT_EQ(import_workbook(path, changed_segments(xml)).first, 0);
  EXPECT_EQ(texts_of(export_workbook(path)), (Texts{"n1", "o1", "h1", "n2", "o2", "Bar", "hafrra", "Gjb"}));
}

TEST_F(OfficeEngine, GroupsAreDissolvedWhenAsked) {
  const std::string group = "<table:shapes><draw:g>" + text_box("<text:p>first</text:p>") +
                            text_box("<text:p>second</text:p>") + "</draw:g></table:shapes>";
  const auto path =
      make_document(u"book.xls", OfficeKind::kWorkbook, workbook_of(sheet("One", group + row(cell("a")))));
  EXPECT_NE(export_workbook(path).find("sheet:1/shape:1.1/paragraph:1"), std::string::npos);
  ExcelOptions options;
  options.ungroup = true;
  save_excel_options(options);
  const std::string xml = export_workbook(path);
  EXPECT_NE(xml.find("sheet:1/shape:2/paragraph:1"), std::string::npos) << xml;
  EXPECT_EQ(import_workbook(path, changed_segments(xml)).first, 0);
  save_excel_options({});
  const std::string again = export_workbook(path);
  EXPECT_NE(again.find("sheet:1/shape:2/paragraph:1"), std::string::npos) << again;
  EXPECT_EQ(again.find("shape:1.1"), std::string::npos);
}

TEST_F(OfficeEngine, AnImportIsRefusedWhenTheDocumentChangedInBetween) {
  const auto book = [](std::string_view text) {
    return workbook_of(sheet("One", row(cell("first")) + row(cell(text))));
  };
  const auto path = make_document(u"book.xls", OfficeKind::kWorkbook, book("second"));
  const std::string xml = changed_segments(export_workbook(path));
  make_document(u"book.xls", OfficeKind::kWorkbook, book("altered"));
  const std::string before = read_file(path);
  auto [result, reason] = import_workbook(path, xml);
  EXPECT_EQ(result, 1);
  EXPECT_EQ(reason, "The document has changed since its texts were exported, at sheet:1/cell:A2; export it again");
  EXPECT_EQ(read_file(path), before);
  // One text is gone, and one is new.
  make_document(u"book.xls", OfficeKind::kWorkbook, workbook_of(sheet("One", row(cell("first")))));
  EXPECT_EQ(import_workbook(path, xml).first, 1);
  make_document(u"book.xls", OfficeKind::kWorkbook,
                workbook_of(sheet("One", row(cell("first")) + row(cell("second")) + row(cell("third")))));
  EXPECT_EQ(import_workbook(path, xml).first, 1);
  EXPECT_FALSE(folder.exists(u"book.xls.kavo"));
}

TEST_F(OfficeEngine, OtherXmlIsRefusedAndTheDocumentStays) {
  const auto path = make_document(u"book.xls", OfficeKind::kWorkbook, workbook_of(sheet("One", row(cell("a")))));
  const std::string xml = export_workbook(path);
  const std::string before = read_file(path);
  for (const std::string& bad : {std::string("no XML"), xml.substr(0, xml.size() / 2),
                                 replaced(xml, "kavo-office", "other"), replaced(xml, "workbook", "presentation"),
                                 replaced(xml, "runs=\"1\"", "runs=\"x\""), replaced(xml, "<seg ", "<!DOCTYPE x><seg "),
                                 replaced(xml, "sheet:1/name", "sheet:1/cell:A1"), replaced(xml, ">One<", ">O[n]e<")}) {
    const auto [result, reason] = import_workbook(path, bad);
    EXPECT_EQ(result, 1) << bad;
    EXPECT_NE(reason, "");
    EXPECT_EQ(read_file(path), before) << reason;
  }
}

TEST_F(OfficeEngine, PresentationsKeepLineBreaksLinksAndFormatting) {
  const auto path =
      make_document(u"deck.ppt", OfficeKind::kPresentation,
                    presentation_of("<draw:page draw:name=\"p1\">" +
                                    text_box("<text:p>one<text:line-break/>two</text:p><text:p>see <text:a "
                                             "xlink:href=\"http://example.org/\">the page</text:a> and <text:span "
                                             "text:style-name=\"bold\">this</text:span></text:p>") +
                                    "</draw:page>"));
  clsPPTUtil util;
  util.PPTFile(path);
  ASSERT_EQ(util.PPT2XML(), 0) << to_utf8(util.errors().first_description());
  const std::string xml = read_file(util.XMLFile());
  EXPECT_NE(xml.find("one<br/>two"), std::string::npos) << xml;
  EXPECT_NE(xml.find("the page"), std::string::npos) << xml;
  EXPECT_NE(xml.find("link"), std::string::npos) << xml;
  write_file(util.XMLFile(), changed_segments(xml));
  ASSERT_EQ(util.XML2PPT(), 0) << to_utf8(util.errors().first_description());
  ASSERT_EQ(util.PPT2XML(), 0);
  const std::string again = read_file(util.XMLFile());
  EXPECT_NE(again.find("bar<br/>gjb"), std::string::npos) << again;
  EXPECT_EQ(segments_of(again), segments_of(changed_segments(xml))) << again;
  const std::string flat = flat_xml_of(path, OfficeKind::kPresentation);
  EXPECT_NE(flat.find("http://example.org/"), std::string::npos);
}

TEST_F(OfficeEngine, DamagedForeignAndProtectedFilesGiveOneWithAReasonQuickly) {
  const auto path = make_document(u"book.xls", OfficeKind::kWorkbook, workbook_of(sheet("One", row(cell("a")))));
  const std::string whole = read_file(path);
  folder.write(u"cut.xls", whole.substr(0, whole.size() / 3));
  folder.write(u"text.xls", "just text");
  folder.write(u"empty.xls", "");
  make_document(u"locked.xls", OfficeKind::kWorkbook, workbook_of(sheet("One", row(cell("a")))), "secret");
  const struct {
    const char16_t* name;
    const char* reason;
  } cases[] = {{u"cut.xls", "cannot be opened"},
               {u"text.xls", "damaged or of another kind"},
               {u"empty.xls", "cannot be opened"},
               {u"locked.xls", "protected with a password"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(to_utf8(c.name));
    const std::string before = folder.read(c.name);
    const double started = ports().clock->seconds();
    clsXLSUtil util;
    util.XLSFile(folder.path(c.name));
    EXPECT_EQ(util.XLS2XML(), 1);
    EXPECT_NE(to_utf8(util.errors().first_description()).find(c.reason), std::string::npos)
        << to_utf8(util.errors().first_description());
    EXPECT_LT(ports().clock->seconds() - started, 10);
    EXPECT_EQ(folder.read(c.name), before);
    EXPECT_FALSE(clsCommon().FileExists(util.XMLFile()));
  }
  folder.write(u"text.doc", "just text");
  clsDOC2RTF converter;
  converter.DOCFile(folder.path(u"text.doc"));
  EXPECT_EQ(converter.DOC2RTF(), 1);
}

TEST_F(OfficeEngine, ALibreOfficeThatCrashesIsAFailureAndTheNextOneServes) {
  const auto path = make_document(u"book.xls", OfficeKind::kWorkbook, workbook_of(sheet("One", row(cell("a")))));
  clsXLSUtil util;
  util.XLSFile(path);
  ASSERT_EQ(util.XLS2XML(), 0);
  const std::string before = read_file(path);
  kill(office_listener()->process().id(), SIGKILL);
  EXPECT_EQ(util.XML2XLS(), 1);
  EXPECT_EQ(util.errors().first_description(), u"LibreOffice ended unexpectedly");
  EXPECT_EQ(read_file(path), before);
  EXPECT_FALSE(folder.exists(u"book.xls.kavo"));
  clsXLSUtil next;
  next.XLSFile(path);
  EXPECT_EQ(next.XLS2XML(), 0);
}

TEST_F(OfficeEngine, AMacroWorksOnTheDocumentWithAFlagFileOnly) {
  const auto one = make_document(u"one.xls", OfficeKind::kWorkbook, workbook_of(sheet("One", row(cell("first")))));
  const auto two = make_document(u"two.xls", OfficeKind::kWorkbook, workbook_of(sheet("Two", row(cell("second")))));
  const ObjectRef excel = ports().automation->create(u"Excel.Application");
  const ObjectRef workbooks = as_object(get_member(excel, u"Workbooks"));
  const ObjectRef first = as_object(call_member(workbooks, u"Open", {by_value(one)}));
  const ObjectRef second = as_object(call_member(workbooks, u"Open", {by_value(two)}));
  const auto run = [&] { call_member(excel, u"Run", {by_value(std::u16string(u"KAVO.XLS!ExportWorkbook"))}); };
  EXPECT_EQ(failure_of(run).value().description(), u"No open document has a flag file");
  EXPECT_FALSE(folder.exists(u"one_xls.xml"));
  EXPECT_FALSE(folder.exists(u"two_xls.xml"));
  folder.write(u"one.xls.kavo", "");
  run();
  EXPECT_TRUE(folder.exists(u"one_xls.xml"));
  EXPECT_FALSE(folder.exists(u"two_xls.xml"));
  EXPECT_FALSE(folder.exists(u"one.xls.kavo"));
  call_member(first, u"Close");
  call_member(second, u"Close");
}

TEST_F(OfficeEngine, ALibreOfficeThatIsNotThereIsSaidToBeMissing) {
  try {
    OfficeListener listener("/nowhere");
    ADD_FAILURE() << "started";
  } catch (const failure& reason) {
    EXPECT_TRUE(reason.is(FailureNumber::kCannotCreateObject));
    EXPECT_EQ(reason.description(), u"LibreOffice is not installed: /nowhere/soffice.bin is missing");
  }
}

TEST_F(OfficeEngine, TitlesOfChartsAndTheirAxesAreExportedAndComeBack) {
  const auto path = make_document(
      u"book.xls", OfficeKind::kWorkbook,
      workbook_of(sheet("One", "<table:shapes>" + chart("Sales", "Years", "Tons") + "</table:shapes>" +
                                   row(cell("a") + cell("b") + cell("c") +
                                       "<table:table-cell office:value-type=\"float\" office:value=\"4.5\"/>"))));
  const std::string xml = export_workbook(path);
  for (const char* place : {"chart:1/title", "chart:1/axis:x/title", "chart:1/axis:y/title"})
    EXPECT_NE(xml.find(place), std::string::npos) << xml;
  EXPECT_EQ(import_workbook(path, changed_segments(xml)).first, 0);
  EXPECT_EQ(segments_of(export_workbook(path)), segments_of(changed_segments(xml)));
}

TEST_F(OfficeEngine, FormulasFollowTheNewNameOfTheirSheet) {
  const auto path =
      make_document(u"book.xls", OfficeKind::kWorkbook,
                    workbook_of(sheet("One", row(cell("seen"))) +
                                sheet("Two", row("<table:table-cell table:formula=\"of:=[$One.A1]&amp;&quot;!&quot;\" "
                                                 "office:value-type=\"string\"/>"))));
  EXPECT_EQ(import_workbook(path, replaced(export_workbook(path), ">One<", ">Neu &amp; alt<")).first, 0);
  const std::string again = export_workbook(path);
  EXPECT_NE(again.find("<formula place=\"sheet:2/cell:A1\">=$'Neu &amp; alt'.A1&amp;&quot;!&quot;</formula>"),
            std::string::npos)
      << again;
  EXPECT_NE(flat_xml_of(path, OfficeKind::kWorkbook).find("<text:p>seen!</text:p>"), std::string::npos);
}

TEST_F(OfficeEngine, TheOrderDoesNotDecideWhichTextsAreLeftOut) {
  std::string rows = row(cell("top"));
  rows += "<table:table-row table:number-rows-repeated=\"400\"><table:table-cell/></table:table-row>";
  rows += row(cell("far below"));
  const auto path = make_document(u"book.xls", OfficeKind::kWorkbook, workbook_of(sheet("One", rows)));
  ExcelOptions options;
  options.order = 1;
  save_excel_options(options);
  const std::string xml = export_workbook(path);
  EXPECT_EQ(texts_of(xml), (std::vector<std::string>{"top", "far below", "One"})) << xml;
  EXPECT_EQ(xml.find("<left-out"), std::string::npos);
}

TEST_F(OfficeEngine, ALibreOfficeThatHangsIsEnded) {
  const auto path = make_document(u"book.xls", OfficeKind::kWorkbook, workbook_of(sheet("One", row(cell("a")))));
  const auto listener = std::make_shared<OfficeListener>(office_program_folder());
  OfficeDocument document(listener, OfficeKind::kWorkbook, path);
  const std::string before = read_file(path);
  listener->begin_document(1);
  kill(listener->process().id(), SIGSTOP);
  try {
    document.save();
    ADD_FAILURE() << "saved";
  } catch (const failure& reason) {
    EXPECT_EQ(reason.description(),
              u"LibreOffice gave no sign of life for 1 s and was ended. The setting office.time-limit allows it more");
  }
  EXPECT_EQ(read_file(path), before);
}

TEST_F(OfficeEngine, ALibreOfficeThatHangsWithoutADocumentIsEnded) {
  const auto listener = std::make_shared<OfficeListener>(office_program_folder(), 1.0);
  kill(listener->process().id(), SIGSTOP);
  try {
    listener->run([&] { listener->desktop()->getCurrentComponent(); });
    ADD_FAILURE() << "answered";
  } catch (const failure& reason) {
    EXPECT_EQ(reason.description(), u"LibreOffice stopped answering and was ended");
  }
}

TEST_F(OfficeEngine, AnInterruptionEndsAnExportAndLeavesNothingBehind) {
  std::string rows;
  for (int i = 0; i < 8000; ++i) rows += row(cell("<text:span text:style-name=\"bold\">b</text:span> text"));
  const auto path = make_document(u"large.xls", OfficeKind::kWorkbook, workbook_of(sheet("One", rows)));
  clsXLSUtil util;
  util.XLSFile(path);
  std::thread interrupter([&] {
    while (!folder.exists(u"large.xls.kavo")) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    request_interrupt();
  });
  try {
    util.XLS2XML();
    ADD_FAILURE() << "not interrupted";
  } catch (const interruption&) {
  }
  interrupter.join();
  EXPECT_FALSE(folder.exists(u"large.xls.kavo"));
  EXPECT_FALSE(folder.exists(u"large_xls.xml"));
  EXPECT_EQ(folder.entry_count(), 2u);  // the workbook and what it was made of
}

}  // namespace
}  // namespace kavo::test
