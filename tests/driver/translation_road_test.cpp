// The whole road with the reference suite.
#include <gtest/gtest.h>

#include "common/cRegistry.h"
#include "common/clsCommon.h"
#include "common/folder_run.h"
#include "driver/road_fixture.h"
#include "support/faulty_files.h"

namespace kavo::test {
namespace {

class RoadTest : public RoadFixture {};

constexpr std::string_view kManual =
    "<MIFFile 7.00> # Generated\r\n"
    "<XRefFormats \r\n <XRefFormat \r\n  <XRefName `Page'>\r\n  <XRefDef `page <$pagenum\\>'>\r\n >\r\n>\r\n"
    "<VariableFormats \r\n <VariableFormat \r\n  <VariableName `Title'>\r\n  <VariableDef `Handbook'>\r\n >\r\n>\r\n"
    "<TextFlow \r\n <TFTag `A'>\r\n <Para \r\n  <PgfTag `Body'>\r\n  <ParaLine \r\n   <String `Hello there'>\r\n"
    "   <Marker \r\n    <MType 2>\r\n    <MTypeName `Index'>\r\n    <MText `greeting;hello'>\r\n   >\r\n"
    "  > # end of ParaLine\r\n > # end of Para\r\n> # end of TextFlow\r\n";

struct Document {
  const char16_t* name;
  std::string bytes;
  const char16_t* rebuilt;  // for FR
};
const Document kDocuments[] = {
    {u"index.asp",
     "<html><body>\r\n<p class=<%=c%>>Hello <b>there</b></p>\r\n<% w \"Hi\"\r\nDim "
     "x\r\n%>\r\n<p>Bye</p></body></html>\r\n",
     u"index_FR.asp"},
    {u"my_page.jsp", "<html><body><p>Hello <%= name %> you</p></body></html>\n", u"my_page_FR.jsp"},
    {u"shop.htm", "<html><body><p>Price <?php echo \"net\"; ?></p><script>var a = 'One';</script></body></html>",
     u"shop_FR.htm"},
    {u"plain.html", "<html><body><p>Nothing but text</p></body></html>\r\n", u"plain_FR.html"},
    {u"notes.txt", "One\r\n\r\nTwo", u"notes_FR.txt"},
};

TEST_F(RoadTest, UnchangedDocumentComesBackByteForByte) {
  for (const Document& document : kDocuments) {
    SCOPED_TRACE(to_utf8(document.name));
    const auto tuds = prepare(document.name, document.bytes, u"EN-US");
    const auto before = all_files();
    const Rebuilt rebuilt = rebuild(tuds[0]);
    ASSERT_EQ(rebuilt.result, 0) << testing::PrintToString(messages);
    EXPECT_EQ(files.get(rebuilt.target), document.bytes);
    auto expected = before;
    expected[rebuilt.target] = document.bytes;
    EXPECT_EQ(all_files(), expected) << "nothing else is left";
    EXPECT_EQ(object->LastError(), u"");
  }
}

// A script's line changes between its quotes only.
std::u16string marked(const std::u16string& source) {
  const std::size_t quote = source.find_first_of(u"\"'");
  if (quote == source.npos) return u"[" + source + u"]";
  return source.substr(0, quote + 1) + u"*" + source.substr(quote + 1);
}

TEST_F(RoadTest, EveryTranslationIsInTheRebuiltDocument) {
  for (const Document& document : kDocuments) {
    SCOPED_TRACE(to_utf8(document.name));
    std::vector<std::u16string> sources;
    const auto tuds = prepare(document.name, document.bytes);
    for (const std::u16string& tud : tuds)
      translate(tud, [&](const std::u16string& source) {
        sources.push_back(source);
        return marked(source);
      });
    const Rebuilt rebuilt = rebuild(tuds[0]);
    ASSERT_EQ(rebuilt.result, 0) << testing::PrintToString(messages);
    EXPECT_EQ(rebuilt.target, in(document.rebuilt));
    // Prepared once more it gives the translations, in order.
    std::string bytes = files.get(rebuilt.target);
    std::vector<std::u16string> found;
    for (const std::u16string& tud : prepare(u"again" + rebuilt.target.substr(rebuilt.target.rfind(u'.')), bytes))
      translate(tud, [&](const std::u16string& source) {
        found.push_back(source);
        return source;
      });
    ASSERT_EQ(found.size(), sources.size());
    for (std::size_t i = 0; i < found.size(); ++i) EXPECT_EQ(found[i], marked(sources[i]));
  }
}

TEST_F(RoadTest, ManualComesBackWithItsHiddenTextsTranslated) {
  const auto tuds = prepare(u"manual.mif", kManual, u"FR");
  ASSERT_EQ(tuds.size(), 4u);
  Rebuilt rebuilt = rebuild(tuds[0]);
  ASSERT_EQ(rebuilt.result, 0) << testing::PrintToString(messages);
  EXPECT_EQ(rebuilt.target, in(u"manual_FR.mif"));
  EXPECT_EQ(files.get(rebuilt.target), kManual);
  for (const std::u16string& tud : tuds)
    translate(tud, [](const std::u16string& source) { return u"[" + source + u"]"; });
  rebuilt = rebuild(tuds[0], -1);
  ASSERT_EQ(rebuilt.result, 0) << testing::PrintToString(messages);
  const std::string bytes = files.get(rebuilt.target);
  for (const char* text : {"[Handbook]", "[page <$pagenum\\>]", "[greeting;hello]", "[Hello there]"})
    EXPECT_NE(bytes.find(text), std::string::npos) << text << "\n" << bytes;
}

TEST_F(RoadTest, HighlightingColoursThePageAndNotItsScripts) {
  const auto tuds = prepare(u"index.asp", kDocuments[0].bytes);
  cRegistry colour;
  colour.SectionKey(u"Software\\MOR\\MOR Edit\\Settings");
  colour.ValueKey(u"ColourUntran");
  colour.ValueType(4);
  colour.SetValue(std::int32_t{0x0000FF});
  const Rebuilt plain = rebuild(tuds[0]);
  ASSERT_EQ(plain.result, 0);
  const std::string page = files.get(plain.target);
  const Rebuilt coloured = rebuild(tuds[0], 0, 1);
  ASSERT_EQ(coloured.result, 0) << testing::PrintToString(messages);
  const std::string coloured_page = files.get(coloured.target);
  EXPECT_NE(coloured_page, page);
  EXPECT_NE(coloured_page.find("<% w \"Hi\"\r\nDim x\r\n%>"), std::string::npos) << coloured_page;
  EXPECT_NE(coloured_page.find("<%=c%>"), std::string::npos) << coloured_page;
}

// The seven codes by real causes.

TEST_F(RoadTest, EachCodeHasARealCause) {
  struct Cause {
    std::int32_t code;
    const char* what;
    std::function<void()> arrange;
    std::int32_t preview = 0;
  };
  const std::u16string tud = in(u"index_asp_htm_FR.tud"), script = in(u"index_asp_scr_FR.tud");
  const auto cut = [&](const std::u16string& path) {
    const std::string whole = files.get(path);
    files.put(path, whole.substr(0, whole.size() / 2));
  };
  const Cause causes[] = {
      {1, "no such document", [&] { files.remove_file(tud); }},
      {1, "a document cut in half", [&] { cut(tud); }},
      {2, "the OpenTag file cannot be written", [&] { files.add_folder(in(u"index_asp_htm_FR.otf")); }},
      {3, "no skeleton", [&] { files.remove_file(tud + u".skl"); }},
      {4, "a document that another tool made",
       [&] {
         std::string bytes = files.get(tud);
         for (std::size_t at; (at = bytes.find("<note")) != std::string::npos;)
           bytes.erase(at, bytes.find("</note>", at) + 7 - at);
         files.put(tud, bytes);
       }},
      {3, "a skeleton cut in half", [&] { cut(tud + u".skl"); }},
      {3, "the skeleton of another document",
       [&] {
         prepare(u"other.asp", "<p>Other</p>");
         files.put(tud + u".skl", files.get(in(u"other_asp_htm_FR.tud.skl")));
       }},
      {5, "a unit that is missing",
       [&] {
         std::string bytes = files.get(tud);
         const std::size_t unit = bytes.find("<trans-unit");
         bytes.erase(unit, bytes.find("</trans-unit>", unit) + 13 - unit);
         files.put(tud, bytes);
       }},
      {6, "a script document cut in half", [&] { cut(script); }},
      {6, "no skeleton of the script document", [&] { files.remove_file(script + u".skl"); }},
      {7, "a folder in the way", [&] { files.add_folder(in(u"index_asp_FR.htm")); }, -1},
  };
  const char16_t* texts[] = {u"",
                             u"Failed to open TUD file",
                             u"Failed to save OpenTag file",
                             u"Failed to locate SKL file",
                             u"Failed to retrieve merge file details",
                             nullptr,
                             u"Failed to post-process the file",
                             u"Unable to delete the target file - check that it is not already in use"};
  for (const Cause& cause : causes) {
    SCOPED_TRACE(cause.what);
    files = MemoryFiles();
    prepare(u"index.asp", kDocuments[0].bytes);
    files.put(in(u"index_FR.asp"), "old target");
    cause.arrange();
    const auto before = all_files();
    for (const std::int32_t quiet : {1, 0}) {
      object->QuietMode(quiet);
      desktop.message_boxes.clear();
      messages.clear();
      const Rebuilt rebuilt = rebuild(tud, cause.preview);
      EXPECT_EQ(rebuilt.result, cause.code);
      EXPECT_EQ(rebuilt.target, u"");
      if (texts[cause.code] != nullptr) {
        EXPECT_EQ(object->LastError(), texts[cause.code]);
        EXPECT_FALSE(messages.empty()) << "the reason is told";
      } else {
        EXPECT_NE(object->LastError(), u"");
        EXPECT_NE(object->LastError(), u"Failed to create the translation file");
      }
      EXPECT_EQ(desktop.message_boxes.size(), quiet != 0 ? 0u : 1u);
      EXPECT_EQ(all_files(), before);
    }
  }
}

// Notes each document that is put under a name.
class PlacedFiles final : public FaultyFiles {
 public:
  using FaultyFiles::FaultyFiles;
  void rename_file(std::u16string_view from, std::u16string_view to) override {
    FaultyFiles::rename_file(from, to);
    placed.emplace_back(to);
  }
  std::vector<std::u16string> placed;
};

// Locking its segments is a step of its own, which works on the document before it gets its name.
TEST_F(RoadTest, TheScriptDocumentIsPlacedOnceWithItsLocks) {
  const auto tuds = prepare(u"index.asp", kDocuments[0].bytes);
  ASSERT_EQ(tuds.size(), 2u);
  for (const std::u16string& tud : tuds) clsCommon().DeleteFile(tud);
  PlacedFiles placing(files);
  ports().files = &placing;
  std::vector<ProducedFile> produced(object->produced_files().begin(), object->produced_files().end());
  const FilterRun run = convert_produced_files(produced, {u"EN-US", u"FR"});
  ports().files = &files;
  ASSERT_EQ(run.result, 0);
  EXPECT_EQ(std::ranges::count(placing.placed, tuds[1]), 1) << testing::PrintToString(placing.placed);
  EXPECT_NE(files.get(tuds[1]).find("translate=\"no\""), std::string::npos) << files.get(tuds[1]);
}

// Nothing is lost.

// Its translations are a person's work.
TEST_F(RoadTest, AConversionThatFailsLeavesTheOldDocument) {
  const auto tuds = prepare(u"index.asp", kDocuments[0].bytes);
  const auto after = all_files();  // a conversion begins the translation anew
  for (const std::u16string& tud : tuds)
    translate(tud, [](const std::u16string& source) { return u"[" + source + u"]"; });
  const auto before = all_files();
  FaultyFiles faulty(files);
  for (const bool lasting : {false, true}) {
    std::vector<ProducedFile> produced;
    FilterRun run;
    const std::size_t faults = for_each_fault(
        faulty, {.lasting = lasting, .partial_bytes = 7},
        [&](std::size_t) {
          for (const std::u16string& path : files.all_files()) clsCommon().DeleteFile(path);
          for (const auto& [path, bytes] : before) files.put(path, bytes);
          produced.assign(object->produced_files().begin(), object->produced_files().end());
          ports().files = &faulty;
          run = convert_produced_files(produced, {u"EN-US", u"FR"});
          ports().files = &files;
        },
        [&](std::size_t number) {
          SCOPED_TRACE(testing::Message() << "operation " << number << ", lasting " << lasting);
          if (files.info(in(u".kavo-run"))) {
            EXPECT_TRUE(lasting);
            const FolderRun next(tuds[0]);
          }
          for (std::size_t i = 0; i < tuds.size(); ++i) {
            if (!produced[i].tud_name.empty() || lasting) continue;
            for (const std::u16string& path : {tuds[i], tuds[i] + u".skl"})
              EXPECT_TRUE(files.info(path) && files.get(path) == before.at(path)) << to_utf8(path);
          }
          // The documents of both files are whole, whichever they are.
          for (const std::u16string& tud : tuds)
            for (const std::u16string& path : {tud, tud + u".skl"})
              EXPECT_TRUE(files.info(path) && (files.get(path) == before.at(path) || files.get(path) == after.at(path)))
                  << to_utf8(path);
        });
    EXPECT_GT(faults, 10u);
    EXPECT_EQ(run.result, 0);
  }
}

TEST_F(RoadTest, NoDocumentIsLostWhateverFails) {
  const auto tuds = prepare(u"index.asp", kDocuments[0].bytes);
  for (const std::u16string& tud : tuds)
    translate(tud, [](const std::u16string& source) { return u"[" + source + u"]"; });
  ASSERT_EQ(rebuild(tuds[0]).result, 0);
  const std::u16string target = in(u"index_FR.asp");
  const std::string rebuilt = files.get(target);
  files.put(target, "old target");
  files.put(in(u"index_asp_FR.htm"), "somebody's");
  const auto before = all_files();
  FaultyFiles faulty(files);
  for (const bool lasting : {false, true}) {
    for (const std::int32_t preview : {0, -1}) {
      std::int32_t result = 0;
      const std::size_t faults = for_each_fault(
          faulty, {.lasting = lasting, .partial_bytes = 7},
          [&](std::size_t) {
            for (const std::u16string& path : files.all_files()) clsCommon().DeleteFile(path);
            for (const auto& [path, bytes] : before) files.put(path, bytes);
            ports().files = &faulty;
            result = rebuild(tuds[0], preview).result;
            ports().files = &files;
          },
          [&](std::size_t number) {
            SCOPED_TRACE(testing::Message() << "operation " << number << ", lasting " << lasting);
            if (files.info(in(u".kavo-run"))) {
              EXPECT_TRUE(lasting);
              const FolderRun next(target);
            }
            auto done = before;
            done[target] = rebuilt;
            if (result == 0 || (lasting && all_files() != before))
              EXPECT_EQ(all_files(), done);
            else
              EXPECT_EQ(all_files(), before) << result;
          });
      EXPECT_GT(faults, 30u);
      EXPECT_EQ(result, 0);
    }
  }
}

}  // namespace
}  // namespace kavo::test
