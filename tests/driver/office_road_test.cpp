// Word documents, presentations and workbooks on the whole road, with a stand-in for the Office programs.
#include "common/folder_run.h"
#include "driver/prepare_and_convert.h"
#include "driver/road_fixture.h"
#include "driver/translation.h"
#include "office/recording_office.h"
#include "support/stand_in_interchange.h"

namespace kavo::test {
namespace {

constexpr std::string_view kRtf = "{\\rtf1\\ansi\\ansicpg1252 Hello {\\pict 0102} world\\par}";
constexpr std::string_view kXml =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<kavo-office version=\"1\" kind=\"presentation\">\n"
    "<seg place=\"slide:1/shape:1/paragraph:1\" check=\"1\" runs=\"5\">Hello</seg>\n</kavo-office>\n";

class OfficeRoad : public RoadFixture {
 protected:
  OfficeRoad() {
    for (const char16_t* program : {u"Word.Application", u"PowerPoint.Application", u"Excel.Application"})
      automation.factories[program] = [this] { return office.object("Application"); };
    for (const char* collection : {"Documents", "Presentations", "Workbooks"})
      office.answers["Application." + std::string(collection)] = office.with_object("Documents");
    office.answers["Documents.Open"] = [this](std::span<Argument> arguments) -> Value {
      if (const std::u16string name = as_text(arguments[0].value); name.find(u"\\kavo.") == name.npos) opened = name;
      return office.object("Document");
    };
    office.answers["Document.Fields"] = office.with_object("Fields");
    office.answers["Fields.Count"] = [](auto) -> Value { return std::int32_t{0}; };
    office.answers["Document.SaveAs"] = [this](std::span<Argument> arguments) -> Value {
      files.put(as_text(arguments[0].value), "document of " + files.get(opened));
      return Empty{};
    };
    office.answers["Application.Run"] = [this](auto) -> Value {
      files.put(opened, "document of " + files.get(translated_form_of(opened)));
      files.remove_file(opened + u".kavo");
      return Empty{};
    };
  }
  FilterRun convert(std::u16string_view name, RunLanguages languages = {u"EN-US", u"FR"}) {
    produced = {{in(name), FileTypeOf(name), u""}};
    return convert_produced_files(produced, languages);
  }
  static std::u16string bracketed(const std::u16string& source) { return u"[" + source + u"]"; }

  StandInInterchange interchange;
  RecordingOffice office;
  std::u16string opened;
  std::vector<ProducedFile> produced;
};

TEST_F(OfficeRoad, AWordDocumentGoesByItsRtfAndItsObjectsAndComesBack) {
  const auto tuds = prepare(u"report.doc", kRtf);
  ASSERT_EQ(tuds, std::vector{in(u"report_doc_rtf_FR.tud")});
  EXPECT_EQ(files.get(in(u"report.doc")), kRtf) << "the author's document is only read";
  EXPECT_NE(interchange.copies.at(0), in(u"report.doc"));
  EXPECT_NE(files.get(in(u"report_doc.obj")).find("{\\pict 0102}"), std::string::npos);
  EXPECT_FALSE(files.has(in(u"report_doc.rtf")));
  translate(tuds[0], bracketed);
  const Rebuilt rebuilt = rebuild(tuds[0]);
  ASSERT_EQ(rebuilt.result, 0) << testing::PrintToString(messages);
  EXPECT_EQ(rebuilt.target, in(u"report_FR.doc"));
  const std::string document = files.get(rebuilt.target);
  EXPECT_NE(document.find("document of {\\rtf1"), std::string::npos) << document;
  EXPECT_NE(document.find("{\\pict 0102}"), std::string::npos) << "the objects are back";
  EXPECT_NE(document.find('['), std::string::npos) << document;
}

TEST_F(OfficeRoad, PresentationsAndWorkbooksGoByTheirXmlAndComeBack) {
  for (const std::u16string type : {u"ppt", u"xls", u"XLS"}) {
    SCOPED_TRACE(to_utf8(type));
    const auto tuds = prepare(u"deck." + type, kXml);
    ASSERT_EQ(tuds, std::vector{in(u"deck_" + type + u"_FR.tud")});
    EXPECT_EQ(files.get(in(u"deck." + type)), kXml);
    translate(tuds[0], bracketed);
    const Rebuilt rebuilt = rebuild(tuds[0]);
    ASSERT_EQ(rebuilt.result, 0) << testing::PrintToString(messages);
    EXPECT_EQ(rebuilt.target, in(u"deck_FR." + type));
    EXPECT_NE(files.get(rebuilt.target).find(">[Hello]</seg>"), std::string::npos) << files.get(rebuilt.target);
    EXPECT_EQ(files.get(in(u"deck." + type)), kXml) << "the source is only read";
    for (const std::u16string& path : files.all_files()) files.remove_file(path);
  }
}

TEST_F(OfficeRoad, ADocumentIsConvertedOnceForAllLanguages) {
  const struct {
    std::u16string_view document, tud, target;
    std::string_view bytes;
  } cases[] = {{u"report.doc", u"report_doc_rtf_", u"report_", kRtf}, {u"deck.ppt", u"deck_ppt_", u"deck_", kXml}};
  for (const auto& c : cases) {
    SCOPED_TRACE(to_utf8(c.document));
    interchange.copies.clear();
    files.put(in(c.document), c.bytes);
    PreparationRequest request;
    request.document = in(c.document);
    PreparationBatch batch({request.document});
    const RunLanguages languages[] = {{u"EN-US", u"FR"}, {u"EN-US", u"DE"}, {u"EN-US", u"JA"}};
    const std::vector<ConvertedDocument> converted = prepare_and_convert(request, batch, languages, {});
    ASSERT_EQ(converted.size(), 3u);
    EXPECT_EQ(interchange.copies.size(), 1u);
    for (const std::u16string_view language : {u"FR", u"DE", u"JA"}) {
      const std::u16string tud = in(c.tud) + std::u16string(language) + u".tud";
      ASSERT_TRUE(files.has(tud));
      translate(tud, bracketed);
      const Rebuilt rebuilt = rebuild(tud);
      ASSERT_EQ(rebuilt.result, 0) << testing::PrintToString(messages);
      const std::string document = files.get(rebuilt.target);
      EXPECT_NE(document.find("[Hello"), std::string::npos) << document;
      EXPECT_EQ(document.find("{\\pict 0102}") != std::string::npos, c.bytes == kRtf) << document;
    }
    for (const std::u16string& path : files.all_files()) EXPECT_EQ(path.find(u".kavo-run"), path.npos) << to_utf8(path);
  }
}

TEST_F(OfficeRoad, AHostThatConvertsTheDocumentItselfGetsTheSameTexts) {
  const struct {
    std::u16string_view document;
    std::string_view bytes;
    std::u16string_view filter, tud, original;
  } cases[] = {{u"deck.ppt", kXml, u"K19PPTW", u"deck_ppt_FR.tud", u"deck_ppt.xml"},
               {u"book.xls", kXml, u"k19xlsw.k19xlswobj.1", u"book_xls_FR.tud", u"book_xls.xml"},
               {u"report.doc", kRtf, u"K19DOCW", u"report_doc_rtf_FR.tud", u"report_doc.rtf"}};
  for (const auto& c : cases) {
    files.put(in(c.document), c.bytes);
    const ObjectRef catalogue = automation.create(u"K19Suite.FilterCatalogue");
    const auto text = [](std::u16string_view value) { return by_value(std::u16string(value)); };
    Argument arguments[] = {text(in(c.document)), text(in(c.tud)), text(in(c.tud) + u".skl"), text(u"EN-US"),
                            by_value(std::int32_t{0}), text(u"FR"), by_value(std::int32_t{0}), text(c.filter)};
    EXPECT_GT(as_number(catalogue->invoke(u"Convert", arguments)), 0);
    const std::string tud = files.get(in(c.tud));
    EXPECT_NE(tud.find("original=\"" + to_utf8(c.original) + "\""), std::string::npos) << tud;
    EXPECT_NE(tud.find("Hello"), std::string::npos);
    EXPECT_EQ(files.get(in(c.document)), c.bytes);
    translate(in(c.tud), bracketed);
    EXPECT_EQ(rebuild(in(c.tud)).result, 0) << testing::PrintToString(messages);
  }
  EXPECT_TRUE(files.has(in(u"report_FR.doc")));
  EXPECT_TRUE(files.has(in(u"deck_FR.ppt")));
  EXPECT_TRUE(files.has(in(u"book_FR.xls")));
}

TEST_F(OfficeRoad, TheLibraryReceivesTheIdentifiersOfTheOfficeFilters) {
  const struct {
    std::u16string_view name;
    std::string_view bytes;
    std::u16string_view identifier, format;
  } cases[] = {{u"report.doc", kRtf, u"k19docw.k19docwobj.1", u"RTF"},
               {u"deck.ppt", kXml, u"k19pptw.k19pptwobj.1", u"XML"},
               {u"book.xls", kXml, u"k19xlsw.k19xlswobj.1", u"XML"},
               {u"letter.rtf", kRtf, u"K19RTF", u"RTF"}};
  for (const auto& c : cases) {
    const auto tuds = prepare(c.name, c.bytes);
    const ObjectRef document = automation.create(u"K19Suite.TUDDocument");
    Argument name[] = {by_value(tuds.at(0))};
    ASSERT_EQ(as_number(document->invoke(u"Open", name)), 0);
    Argument details[] = {by_reference(std::u16string()), by_reference(std::u16string()),
                          by_reference(std::u16string()), by_reference(std::u16string())};
    ASSERT_EQ(as_number(document->invoke(u"GetMergeDetails", details)), 0);
    EXPECT_EQ(as_text(details[0].value), c.format);
    EXPECT_EQ(as_text(details[3].value), c.identifier);
  }
}

TEST_F(OfficeRoad, ADocumentThatCannotBeReadSaysWhyAndCostsOnlyItself) {
  interchange.before = [](const std::u16string& copy) {
    if (copy.ends_with(u"bad.xls")) throw failure(FailureNumber::kInvalidCall, u"The workbook cannot be opened");
  };
  files.put(in(u"bad.xls"), kXml);
  const Files before = all_files();
  const FilterRun run = convert(u"bad.xls");
  EXPECT_EQ(run.result, 200);
  EXPECT_EQ(run.reason, u"The workbook cannot be opened");
  EXPECT_EQ(all_files(), before);
  files.put(in(u"good.xls"), kXml);
  EXPECT_EQ(convert(u"good.xls").result, 0);
}

TEST_F(OfficeRoad, TheFormStaysBesideTheDocumentOnlyWhenAsked) {
  files.put(in(u"report.doc"), kRtf);
  ASSERT_EQ(convert(u"report.doc", {.source = u"EN-US", .target = u"FR", .keeps_form = true}).result, 0);
  EXPECT_EQ(files.get(in(u"report_doc.rtf")), kRtf) << "with its objects";
  const TranslationResult rebuilt = create_translation({.tud = in(u"report_doc_rtf_FR.tud"), .keeps_form = true}, {});
  ASSERT_EQ(rebuilt.error, kNoError);
  EXPECT_EQ(files.get(in(u"report_FR_doc.rtf")), kRtf) << "nothing was translated";
}

TEST_F(OfficeRoad, OneRunInSeveralLanguagesKeepsItsFilesApart) {
  files.put(in(u"deck.ppt"), kXml);
  FolderRun run(in(u"deck.ppt"));
  for (const std::u16string target : {u"FR", u"DE"})
    EXPECT_EQ(convert(u"deck.ppt", {.source = u"EN-US", .target = target, .keeps_form = true}).result, 0);
  run.commit();
  EXPECT_TRUE(files.has(in(u"deck_ppt_FR.tud")));
  EXPECT_TRUE(files.has(in(u"deck_ppt_DE.tud")));
}

}  // namespace
}  // namespace kavo::test
