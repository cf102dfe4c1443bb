// A host takes RTF, a resource script, and the three Office types to their translation with the two libraries:
// PreProcess, Convert, CreateTranslation. A program of the tests stands in for Office, in a process of its own.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <ostream>

#include "automation_server/host.h"
#include "office/win32/office_stand_in.h"
#include "platform/ports.h"
#include "platform/unicode.h"

namespace kavo::test {
namespace {

constexpr std::string_view kTexts =
    "A ship & <two> boats\n"
    "picture 0102a0ff\n"
    "Gr\xC3\xB6\xC3\x9F"
    "e {1} \\ \xE2\x82\xAC\n";
constexpr std::string_view kTranslatedTexts =
    "[A ship & <two> boats]\n"
    "picture 0102a0ff\n"
    "[Gr\xC3\xB6\xC3\x9F"
    "e {1} \\ \xE2\x82\xAC]\n";
constexpr std::string_view kTranslatedCells =
    "[A ship & <two> boats]\n"
    "[picture 0102a0ff]\n"
    "[Gr\xC3\xB6\xC3\x9F"
    "e {1} \\ \xE2\x82\xAC]\n";

struct Road {
  const wchar_t* program;  // null for none
  std::u16string_view document;
  std::string_view bytes;
  std::u16string_view filter, tud, target;
  std::string_view translated;
  std::vector<std::string_view> macros;
};
void PrintTo(const Road& road, std::ostream* out) { *out << to_utf8(road.document); }

const Road kRoads[] = {
    {L"Word.Application",
     u"report.doc",
     kTexts,
     u"K19DOCW",
     u"report_doc_rtf_FR.tud",
     u"report_FR.doc",
     kTranslatedTexts,
     {}},
    {L"PowerPoint.Application",
     u"deck.ppt",
     kTexts,
     u"k19pptw.k19pptwobj.1",
     u"deck_ppt_FR.tud",
     u"deck_FR.ppt",
     kTranslatedCells,
     {"KAVO.PPT!ExportPresentation", "KAVO.PPT!ImportPresentation"}},
    {L"Excel.Application",
     u"book.xls",
     kTexts,
     u"K19XLSW",
     u"book_xls_FR.tud",
     u"book_FR.xls",
     kTranslatedCells,
     {"KAVO.XLS!ExportWorkbook", "KAVO.XLS!ImportWorkbook"}},
    {nullptr,
     u"letter.rtf",
     "{\\rtf1\\ansi A letter {\\pict 0102}\\par}",
     u"K19RTF",
     u"letter_rtf_FR.tud",
     u"letter_FR.rtf",
     "[A letter ]{\\pict 0102}\\par",
     {}},
    {nullptr,
     u"app.rc",
     "STRINGTABLE\r\nBEGIN\r\n  1 \"Open\"\r\nEND\r\n",
     u"K19GCP",
     u"app_rc_FR.tud",
     u"app_FR.rc",
     "\"[Open]\"",
     {}},
};

Value call(const ObjectRef& object, std::u16string_view member, std::vector<Argument> arguments) {
  return object->invoke(member, arguments);
}
Argument text(std::u16string_view value) { return by_value(std::u16string(value)); }

// Puts brackets around each text.
void translate(const std::u16string& tud) {
  const ObjectRef document = ports().automation->create(u"K19Suite.TUDDocument");
  ASSERT_EQ(as_number(call(document, u"Open", {by_value(tud)})), 0);
  const std::int32_t count = as_number(document->get(u"SegmentCount"));
  EXPECT_GT(count, 0);
  for (std::int32_t number = 1; number <= count; ++number) {
    Argument segment[] = {by_value(number), by_reference(std::u16string()), by_reference(std::u16string()),
                          by_reference(std::int32_t{0}), by_reference(std::int32_t{0})};
    ASSERT_EQ(as_number(document->invoke(u"GetSegment", segment)), 0);
    EXPECT_EQ(as_number(call(document, u"SetSegment",
                             {by_value(number), by_value(u"[" + as_text(segment[1].value) + u"]"),
                              by_value(std::int32_t{2}), by_value(std::int32_t{0})})),
              0);
  }
  ASSERT_EQ(as_number(document->invoke(u"Close")), 0);
}

class DocumentRoad : public testing::TestWithParam<Road> {
 protected:
  void SetUp() override {
    for (const StandInProgram& program : kStandInPrograms)
      if (!OfficeStandIn::is_free(program.identifier)) GTEST_SKIP() << "a real Office is installed; it is left alone";
  }
  ManifestScope manifests_;
};

TEST_P(DocumentRoad, AHostPreparesConvertsTranslatesAndRebuilds) {
  const Road& road = GetParam();
  std::unique_ptr<OfficeStandIn> office;
  if (road.program != nullptr) {
    office = std::make_unique<OfficeStandIn>(road.program);
    office->plan({});
  }
  const TempFolder own;
  const TempFolder& folder = office ? office->documents() : own;
  const std::u16string document = folder.write(road.document, road.bytes);
  {
    const ObjectRef wizard = ports().automation->create(u"K19FPW.K19FPWObj");
    const ObjectRef catalogue = ports().automation->create(u"K19Suite.FilterCatalogue");
    wizard->put(u"QuietMode", std::int32_t{1});
    ASSERT_EQ(as_number(call(wizard, u"PreProcess", {by_value(document)})), 0);
    ASSERT_EQ(as_number(wizard->invoke(u"GetFileCount")), 1);
    EXPECT_EQ(as_text(call(wizard, u"GetFile", {by_value(std::int32_t{0})})), document);

    const std::u16string tud = folder.path(road.tud);
    call(catalogue, u"Convert",
         {by_value(document), by_value(tud), by_value(tud + u".skl"), text(u"EN-US"), by_value(std::int32_t{0}),
          text(u"FR"), by_value(std::int32_t{0}), text(road.filter), text(u"Paragraph")});
    EXPECT_EQ(folder.entry_count(), 3u) << "the document, its bilingual document and the skeleton";
    EXPECT_EQ(folder.read(road.document), road.bytes);
    translate(tud);

    std::vector<Argument> arguments{by_value(tud), by_reference(std::u16string()), by_value(std::int32_t{0}),
                                    by_value(std::int32_t{0})};
    ASSERT_EQ(as_number(wizard->invoke(u"CreateTranslation", arguments)), 0)
        << to_utf8(as_text(wizard->get(u"LastError")));
    EXPECT_EQ(as_text(arguments[1].value), folder.path(road.target));
  }
  const std::string translated = folder.read(road.target);
  if (office)
    EXPECT_EQ(translated, road.translated);
  else
    EXPECT_NE(translated.find(road.translated), std::string::npos) << translated;
  EXPECT_EQ(folder.read(road.document), road.bytes);
  EXPECT_EQ(folder.entry_count(), 4u) << "neither a flag file nor a scratch file is left";
  if (!office) return;
  EXPECT_TRUE(office->has_ended()) << "the program goes with the object that has started it";
  std::vector<std::string> runs;
  for (const std::string& made : office->calls())
    if (made.starts_with("Application.Run(")) runs.push_back(made);
  ASSERT_EQ(runs.size(), road.macros.size());
  for (std::size_t i = 0; i < runs.size(); ++i)
    EXPECT_EQ(runs[i], "Application.Run(BSTR \"" + std::string(road.macros[i]) + "\")");
}

INSTANTIATE_TEST_SUITE_P(EachType, DocumentRoad, testing::ValuesIn(kRoads), [](const auto& each) {
  const std::string name = to_utf8(each.param.document);
  return name.substr(0, name.find('.')) + "_" + name.substr(name.find('.') + 1);
});

}  // namespace
}  // namespace kavo::test
