// The macros of "kavo.xls", as the script makes it, on workbooks of ours: they write the XML that the engine writes,
// and read it back. Only the module "KavoHost", which needs Windows, has a stand-in.
#include "office/libreoffice/template_macros.h"

#include <fstream>
#include <iterator>

#include "office/clsXLSUtil.h"
#include "office/excel_options.h"
#include "office/libreoffice/flat_documents.h"
#include "office/libreoffice/office_fixture.h"
#include "office/libreoffice/shape_texts.h"
#include "platform/files.h"
#include "platform/unicode.h"

namespace kavo::test {
namespace {

std::string module(const std::string& path) {
  std::ifstream file(path);
  EXPECT_TRUE(file) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

// Without the line that tells its name.
std::string exported_module(const std::string& path) {
  const std::string text = module(path);
  return "Option VBASupport 1\n" + text.substr(text.find('\n') + 1);
}

std::string template_module(const std::string& name) {
  return exported_module(std::string(KAVO_TEMPLATE_SOURCES) + "/" + name + ".bas");
}

class WorkbookMacros : public OfficeFixture {
 protected:
  void SetUp() override {
    std::ifstream made(KAVO_TEMPLATES "/kavo.xls", std::ios::binary);
    ASSERT_TRUE(made) << "scripts/make-templates.sh makes it; ctest runs that first";
    const auto path = folder.write(u"kavo.xls", std::string{std::istreambuf_iterator<char>(made), {}});
    macros_.emplace(path);
    use_settings("");
  }
  void TearDown() override {
    macros_.reset();
    save_excel_options({});
  }

  // Settings as ";Order=1;Tolerance=5;".
  void use_settings(const std::string& settings) {
    std::string host = module(KAVO_TEMPLATE_STAND_IN);
    for (std::size_t at = host.find("\"SETTINGS\""); at != std::string::npos; at = host.find("\"SETTINGS\""))
      host.replace(at + 1, 8, settings);
    macros_->put_module("KavoHost", host);
  }

  // A workbook as Office would have saved it, its pages with plain headers, and the engine's export of it.
  // LibreOffice's own fields in headers are the only thing that its Basic shows differently from Office.
  std::u16string make_workbook(const std::string& flat_xml) {
    const auto path = make_document(u"book.xls", OfficeKind::kWorkbook, flat_xml);
    EXPECT_EQ(macros_->run_on(path,
                              "Dim Sheet\nFor Each Sheet In Workbooks(\"book.xls\").Worksheets\nWith Sheet.PageSetup\n"
                              ".CenterHeader = \"\"\n.LeftHeader = \"top of it\"\n.CenterFooter = \"bottom\"\n"
                              "End With\nNext"),
              "");
    engine_xml_ = export_by_engine(path);
    return path;
  }
  std::string export_by_engine(std::u16string_view path) {
    clsXLSUtil util;
    util.XLSFile(path);
    EXPECT_EQ(util.XLS2XML(), 0) << to_utf8(util.errors().first_description());
    return folder.read(u"book_xls.xml");
  }
  std::string run(std::u16string_view path, const char* macro) {
    folder.write(u"book.xls.kavo", "");
    const std::string raised = macros_->run_on(path, macro);
    EXPECT_FALSE(folder.exists(u"book.xls.kavo")) << "the program would wait for ever";
    return raised;
  }
  std::string export_by_macro(std::u16string_view path) {
    folder.write(u"book_xls.xml", "");
    EXPECT_EQ(run(path, "KavoWorkbook.ExportWorkbook"), "");
    return folder.read(u"book_xls.xml");
  }

  std::optional<TemplateMacros> macros_;
  std::string engine_xml_;
};

std::string rich_workbook(std::string_view more_cells = {}) {
  const std::string rows =
      row(cell("plain &amp; <text:span text:style-name=\"bold\">strong</text:span> end") + cell("  ") + cell("12") +
          "<table:table-cell office:value-type=\"float\" office:value=\"4.5\"/>" +
          "<table:table-cell table:formula=\"of:=[.D1]*2\" office:value-type=\"float\" office:value=\"9\"/>") +
      row(cell("two</text:p><text:p>lines") +
          "<table:table-cell office:value-type=\"string\"><office:annotation><text:p>a remark</text:p>"
          "</office:annotation><text:p>remarked \xC3\xA4\xE2\x82\xAC</text:p></table:table-cell>");
  const std::string shapes =
      "<table:shapes>" + text_box("<text:p>in a box</text:p>") + chart("Sales", "Years", "Tons") + "</table:shapes>";
  return workbook_of(sheet("One", shapes + rows) + sheet("Two", row(cell("last", "Code") + std::string(more_cells))) +
                     sheet("Three", row(cell("unseen")), "table:style-name=\"hidden\""));
}

TEST_F(WorkbookMacros, EveryModuleOfTheTemplateIsCompiled) {
  EXPECT_EQ(macros_->evaluate("Evaluate = XmlNameOf(\"C:\\a\\book.xls\")"), "C:\\a\\book_xls.xml");
}

TEST_F(WorkbookMacros, TheExportIsTheEnginesByteForByte) {
  const auto path = make_workbook(rich_workbook());
  EXPECT_NE(engine_xml_.find("cell:B2/comment"), std::string::npos) << engine_xml_;
  EXPECT_NE(engine_xml_.find("chart:1/axis:y/title"), std::string::npos) << engine_xml_;
  EXPECT_NE(engine_xml_.find(" style=\"Code\">last<"), std::string::npos) << engine_xml_;
  EXPECT_EQ(export_by_macro(path), engine_xml_);
}

TEST_F(WorkbookMacros, TheOptionsMeanWhatTheyMeanToTheEngine) {
  const std::string gap = "<table:table-cell table:number-columns-repeated=\"3\"/>";
  const std::string book =
      workbook_of(sheet("One", row(cell("a1") + cell("b1") + gap + cell("f1")) + row(cell("a2") + cell("b2"))) +
                  sheet("Two", row(cell("unseen")), "table:style-name=\"hidden\""));
  struct Case {
    const char* settings;
    ExcelOptions options;
  };
  for (const Case& c :
       {Case{";Order=1;", {.order = 1}}, Case{";Hidden=0;Formulas=0;", {.hidden = false, .formulas = false}},
        Case{";Tolerance=2;", {.tolerance = u"2"}}, Case{";Order=1;Tolerance=2;", {.order = 1, .tolerance = u"2"}},
        Case{";Tolerance=3;", {.tolerance = u"3"}}}) {
    SCOPED_TRACE(c.settings);
    save_excel_options(c.options);
    const auto path = make_workbook(book);
    use_settings(c.settings);
    EXPECT_EQ(export_by_macro(path), engine_xml_);
  }
}

TEST_F(WorkbookMacros, ATranslationComesBackWithItsFormattingAndFormulasFollowTheNewNameOfTheirSheet) {
  const auto path = make_workbook(rich_workbook(
      "<table:table-cell table:formula=\"of:=[$One.A2]&amp;&quot;!&quot;\" office:value-type=\"string\"/>"));
  const std::string translated = changed_segments(engine_xml_);
  folder.write(u"book_xls.xml", translated);
  EXPECT_EQ(run(path, "KavoWorkbook.ImportWorkbook"), "");
  const std::string again = export_by_engine(path);
  EXPECT_EQ(segments_of(again), segments_of(translated)) << again;
  EXPECT_NE(again.find("<g id=\"2\">fgebat</g>"), std::string::npos) << again;
  EXPECT_NE(again.find("Bar"), std::string::npos);
  EXPECT_NE(again.find("<formula place=\"sheet:2/cell:B1\">=$Bar.A2&amp;&quot;!&quot;</formula>"), std::string::npos)
      << again;
}

TEST_F(WorkbookMacros, ATranslationOfAnotherStateIsRefusedAndNothingIsChanged) {
  const auto path = make_workbook(rich_workbook());
  std::string other = changed_segments(engine_xml_);
  // The last text is not the one that was exported: everything in front of it would have been written by then.
  const std::size_t check = other.rfind(" check=\"") + 8;
  other[check] = other[check] == '0' ? '1' : '0';
  folder.write(u"book_xls.xml", other);
  const std::string before = read_file(path);
  EXPECT_EQ(run(path, "KavoWorkbook.ImportWorkbook"),
            "The document has changed since its texts were exported, at sheet:3/name; export it again");
  EXPECT_EQ(read_file(path), before);
}

constexpr const char* kNoFlag = "No open document has a flag file: only the program can start this macro";
constexpr const char* kTwoFlags =
    "More than one open document has a flag file (.kavo): close those that you opened yourself";

TEST_F(WorkbookMacros, AWorkbookWithoutAFlagFileIsTheUsersOwn) {
  const auto path = make_workbook(rich_workbook());
  const std::string before = read_file(path);
  const std::string translated = changed_segments(engine_xml_);
  folder.write(u"book_xls.xml", translated);
  // That of a workbook that the program could not open.
  folder.write(u"other.xls.kavo", "");
  for (const char* macro : {"KavoWorkbook.ExportWorkbook", "KavoWorkbook.ImportWorkbook"}) {
    SCOPED_TRACE(macro);
    EXPECT_EQ(macros_->run_on(path, macro), kNoFlag);
    EXPECT_EQ(folder.read(u"book_xls.xml"), translated);
    EXPECT_TRUE(read_file(path) == before);
    EXPECT_TRUE(folder.exists(u"other.xls.kavo"));
  }
}

TEST_F(WorkbookMacros, OfTwoWorkbooksWithFlagFilesNeitherIsTaken) {
  const auto path = make_workbook(rich_workbook());
  folder.write(u"book_xls.xml", "old");
  folder.write(u"book.xls.kavo", "");
  folder.write(u"kavo.xls.kavo", "");  // the template is the other one that is open
  EXPECT_EQ(macros_->run_on(path, "KavoWorkbook.ExportWorkbook"), kTwoFlags);
  EXPECT_EQ(folder.read(u"book_xls.xml"), "old");
}

// Presentations that are open in this stand-in for PowerPoint's list of them.
std::string presentations(const std::vector<std::string>& files) {
  std::string module =
      "Option VBASupport 1\nType Deck\nFullName As String\nEnd Type\n"
      "Public Function Presentations(Optional ByVal Index)\nDim All As New Collection, One As Deck\n";
  for (const std::string& file : files) module += "One = New Deck\nOne.FullName = \"" + file + "\"\nAll.Add One\n";
  return module +
         "If IsMissing(Index) Then\nSet Presentations = All\nElse\nPresentations = All(Index)\nEnd If\n"
         "End Function\n";
}

TEST_F(WorkbookMacros, CellsOfATableAreNumberedAsTheEngineDoes) {
  macros_->put_module("KavoPresentation", template_module("KavoPresentation"));
  EXPECT_EQ(column_name(74), "BW") << "the last one that a table may have";
  for (const int column : {1, 26, 27, 52, 53, 75})
    EXPECT_EQ(macros_->evaluate("Evaluate = ColumnName(" + std::to_string(column) + ")"), column_name(column - 1));
}

TEST_F(WorkbookMacros, TheSampleOfAHostIsCompiled) {
  const std::string host = exported_module(KAVO_SAMPLES "/hosts/prepare.bas");
  macros_->put_module("Host", host);
  EXPECT_EQ(macros_->evaluate("Evaluate = \"compiled\""), "compiled");
  macros_->put_module("Host", host + "\nSub Wrong(\n");
  EXPECT_EQ(macros_->evaluate("Evaluate = \"compiled\""), "not compiled");
}

TEST_F(WorkbookMacros, APresentationWithoutAFlagFileIsTheUsersOwn) {
  macros_->put_module("KavoPresentation", template_module("KavoPresentation"));
  EXPECT_EQ(macros_->evaluate("Evaluate = Escaped(\"<\")"), "&lt;") << "compiled";
  const auto in_host_form = [this](std::u16string_view name) { return path_to_host(folder.path(name)); };
  folder.write(u"left.ppt.kavo", "");
  folder.write(u"deck.ppt.kavo", "");
  const struct {
    const char* name;
    std::vector<std::string> open;
    const char* expected;
  } cases[] = {{"none is open", {}, kNoFlag},
               {"the user's own is open", {in_host_form(u"own.ppt")}, kNoFlag},
               {"two have a flag file", {in_host_form(u"left.ppt"), in_host_form(u"deck.ppt")}, kTwoFlags}};
  for (const auto& c : cases) {
    macros_->put_module("StandIn", presentations(c.open));
    for (const char* macro : {"KavoPresentation.ExportPresentation", "KavoPresentation.ImportPresentation"}) {
      SCOPED_TRACE(std::string(c.name) + ": " + macro);
      EXPECT_EQ(macros_->evaluate(macro), c.expected);
      EXPECT_TRUE(folder.exists(u"deck.ppt.kavo"));
    }
  }
}

}  // namespace
}  // namespace kavo::test
