// The steps of CreateTranslation, against a suite that records them.
#include "driver/translation.h"

#include <gtest/gtest.h>

#include "common/pending_file.h"
#include "driver/translation_fixture.h"
#include "platform/desktop.h"
#include "platform/files.h"
#include "platform/unicode.h"
#include "support/failures.h"
#include "support/faulty_files.h"

namespace kavo::test {
namespace {

using Calls = std::vector<std::u16string>;

class TranslationTest : public TranslationFixture {
 protected:
  void fail(std::u16string member, std::int32_t with = 1) {
    suite.status = [=](std::u16string_view called, const std::u16string&) { return called == member ? with : 0; };
  }
};

TEST_F(TranslationTest, StepsFollowInTheirOrder) {
  Call call{.target = in(u"mine.txt")};
  EXPECT_EQ(create(u"a_txt_FR.tud", call), 0);
  EXPECT_EQ(suite.calls,
            (Calls{u"Open C:\\WORK\\a_txt_FR.tud", u"GetMergeDetails", u"SaveOpenTag C:\\WORK\\a_txt_FR.otf",
                   u"LocateSkeleton",
                   u"CreateTarget C:\\WORK\\mine.txt|C:\\WORK\\a_txt_FR.otf|C:\\WORK\\a_txt_FR.tud.skl|FR|K19TXT"}));
  EXPECT_EQ(call.target, in(u"mine.txt"));
  EXPECT_EQ(files.get(in(u"mine.txt")), "made");
  EXPECT_TRUE(desktop.message_boxes.empty());
  EXPECT_TRUE(shell.opened.empty());
  EXPECT_TRUE(messages.empty());
}

TEST_F(TranslationTest, TargetOnReturnHoldsTheNameOfTheFileReallyCreated) {
  Call call;
  EXPECT_EQ(create(u"a_txt_FR.tud", call), 0);
  EXPECT_EQ(call.target, u"C:\\WORK\\told_FR.txt") << "an empty name asks for the one that the document tells";
  EXPECT_TRUE(files.has(call.target));
}

TEST_F(TranslationTest, TudNameWithoutUnderscoresTakesThePlainRoute) {
  suite.target_name = in(u"report_FR.htm");
  put(u"report.tud");
  EXPECT_EQ(create(u"report.tud"), 0);
  EXPECT_EQ(count_calls(u"Open"), 1u);
  EXPECT_TRUE(suite.calls.back().ends_with(u"||K19TXT")) << "no language is told";
  EXPECT_EQ(files.get(in(u"report_FR.htm")), "made");
}

TEST_F(TranslationTest, LanguageIsFoundWithoutRegardToCaseAndPassedAsTheSuiteWritesIt) {
  EXPECT_EQ(create(u"a_txt_fr.tud"), 0);
  EXPECT_TRUE(suite.calls.back().ends_with(u"|FR|K19TXT"));
}

TEST_F(TranslationTest, UnknownLanguageTakesThePlainRoute) {
  suite.target_name = in(u"page_XX.htm");
  put(u"page_asp_SCR_XX.tud");
  EXPECT_EQ(create(u"page_asp_HTM_XX.tud"), 0);
  EXPECT_EQ(count_calls(u"Open"), 1u);
}

TEST_F(TranslationTest, SuiteWithoutLanguagesTakesThePlainRoute) {
  automation.factories.erase(u"K19Suite.LanguageInformation");
  suite.target_name = in(u"page_FR.htm");
  put(u"page_asp_SCR_FR.tud");
  EXPECT_EQ(create(u"page_asp_HTM_FR.tud"), 0);
  EXPECT_EQ(count_calls(u"Open"), 1u);
}

TEST_F(TranslationTest, MissingCompanionTakesThePlainRoute) {
  const struct {
    std::u16string tud, target;
    std::vector<std::u16string> companions;
  } cases[] = {
      {u"page_asp_HTM_FR.tud", u"page_FR.htm", {u"page_asp_SCR_FR.tud"}},
      {u"page_x_HTML_FR.tud", u"page_FR.htm", {u"page_x_SCR_FR.tud"}},
      {u"page_x_ASP_FR.tud", u"page_FR.htm", {u"page_x_SCR_FR.tud"}},
      {u"page_x_jsp_FR.tud", u"page_FR.htm", {u"page_x_SCR_FR.tud"}},
      {u"manual_mif_FR.tud", u"manual_FR.mif", {u"KAVO_ix_mif_FR.tud", u"KAVO_xr_mif_FR.tud", u"KAVO_va_mif_FR.tud"}},
      {u"deck_ppt_FR.tud", u"deck_FR.xml", {u"deck.PPT"}},
      {u"book_XLS_FR.tud", u"book_FR.xml", {u"book.xls"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.tud));
    suite.target_name = in(c.target);
    suite.source_format = u"X";
    for (const std::u16string& missing : c.companions) {
      for (const std::u16string& companion : c.companions)
        if (companion != missing) put(companion);
      suite.calls.clear();
      EXPECT_EQ(create(c.tud), 0);
      EXPECT_EQ(count_calls(u"Open"), 1u) << "no other document is touched";
      EXPECT_EQ(files.get(in(c.target)), "made");
      for (const std::u16string& path : files.all_files()) files.remove_file(path);
    }
    for (const std::u16string& companion : c.companions) put(companion);
    suite.calls.clear();
    const std::int32_t result = create(c.tud);
    if (c.target.ends_with(u".xml"))
      EXPECT_EQ(result, 6) << "with all of them the route is taken, which needs an Office program";
    else
      EXPECT_EQ(count_calls(u"Open"), 1 + c.companions.size());
    for (const std::u16string& path : files.all_files()) files.remove_file(path);
  }
}

TEST_F(TranslationTest, OtherTypesNeedNoCompanionAndNoPostProcessing) {
  for (const std::u16string tud : {u"a_txt_FR.tud", u"a_rc_FR.tud", u"a_doc_FR.tud", u"x_y_xml_FR.tud"}) {
    suite.target_name = in(u"a_FR.xml");
    EXPECT_EQ(create(tud), 0);
  }
}

// Codes, their texts, the message box, and what is left behind.

struct FailingStep {
  const char16_t* member;
  std::int32_t code;
  const char16_t* text;
};
constexpr FailingStep kFailingSteps[] = {
    {u"Open", 1, u"Failed to open TUD file"},
    {u"GetMergeDetails", 4, u"Failed to retrieve merge file details"},
    {u"SaveOpenTag", 2, u"Failed to save OpenTag file"},
    {u"LocateSkeleton", 3, u"Failed to locate SKL file"},
};

TEST_F(TranslationTest, EachStepThatFailsEndsTheRunWithItsCode) {
  for (const FailingStep& step : kFailingSteps) {
    for (const std::int32_t quiet : {0, 1}) {
      SCOPED_TRACE(step.code);
      put(u"a_txt_FR.tud");
      put(u"a_txt_FR.otf", "somebody's");
      put(u"a_txt_FR.tud.skl", "skeleton");
      put(u"told_FR.txt", "old target");
      const Files expected = all_files();
      suite.calls.clear();
      messages.clear();
      desktop.message_boxes.clear();
      pre_process(*object, in(u"a.txt"));
      fail(step.member, 7);
      object->QuietMode(quiet);
      Call call{.target = u"", .preview = -1};
      EXPECT_EQ(create(u"a_txt_FR.tud", call), step.code);
      EXPECT_EQ(call.target, u"") << "a failure writes nothing back";
      EXPECT_TRUE(suite.calls.back().starts_with(step.member));
      EXPECT_EQ(object->LastError(), step.text);
      EXPECT_EQ(object->GetFileCount(), 0);
      if (quiet != 0)
        EXPECT_TRUE(desktop.message_boxes.empty());
      else
        EXPECT_EQ(desktop.message_boxes,
                  (std::vector<FakeDesktop::MessageBox>{{step.text, u"KAVO", MessageIcon::kExclamation}}));
      EXPECT_EQ(messages, (Calls{u"the component's reason"}));
      EXPECT_EQ(all_files(), expected);
    }
  }
}

TEST_F(TranslationTest, EmptySkeletonNameIsCode3) {
  suite.has_skeleton = false;
  EXPECT_EQ(create(u"a_txt_FR.tud"), 3);
  EXPECT_EQ(object->LastError(), u"Failed to locate SKL file");
  EXPECT_TRUE(files.all_files().empty());
}

TEST_F(TranslationTest, FailingFilterIsCode5WithItsOwnText) {
  put(u"told_FR.txt", "old target");
  const Files before = all_files();
  for (const std::int32_t preview : {0, -1}) {
    suite.keeps_skeleton = false;
    suite.create = [](const std::u16string& target) {
      write_file_in_ports(target, "half");
      throw failure(1234, u"Segment 7: a code is missing", u"Suite");
    };
    Call call{.target = u"", .preview = preview};
    EXPECT_EQ(create(u"a_txt_FR.tud", call), 5);
    EXPECT_EQ(object->LastError(), u"Segment 7: a code is missing");
    EXPECT_EQ(desktop.message_boxes.back().text, u"Segment 7: a code is missing");
    EXPECT_EQ(all_files(), before);
    suite.create = [](const std::u16string&) { throw failure(1234, u"", u"Suite"); };
    EXPECT_EQ(create(u"a_txt_FR.tud", call), 5);
    EXPECT_EQ(object->LastError(), u"Failed to create the translation file") << "without a description the usual text";
    EXPECT_EQ(all_files(), before);
  }
}

TEST_F(TranslationTest, FilterThatCreatesNothingIsCode5) {
  suite.create = [](const std::u16string&) {};
  EXPECT_EQ(create(u"a_txt_FR.tud"), 5);
  EXPECT_NE(object->LastError().find(u"told_FR.txt"), std::u16string::npos);
}

TEST_F(TranslationTest, TargetThatIsPartOfTheTranslationIsRefused) {
  for (const std::u16string name : {u"a_txt_FR.tud", u"A_TXT_FR.tud.skl", u"a_txt_FR.otf"}) {
    put(u"a_txt_FR.tud", "document");
    put(u"a_txt_FR.tud.skl", "skeleton");
    const Files before = all_files();
    Call call{.target = in(name)};
    EXPECT_EQ(create(u"a_txt_FR.tud", call), 5);
    EXPECT_EQ(count_calls(u"CreateTarget"), 0u);
    EXPECT_EQ(all_files(), before);
  }
}

TEST_F(TranslationTest, TargetThatCannotBeDeletedIsCode7) {
  constexpr const char16_t* text = u"Unable to delete the target file - check that it is not already in use";
  Call call{.target = in(u"folder"), .preview = -1};
  files.add_folder(call.target);
  EXPECT_EQ(create(u"a_txt_FR.tud", call), 7);
  EXPECT_EQ(object->LastError(), text);
  EXPECT_EQ(count_calls(u"SaveOpenTag"), 0u);

  // In use: it can be read, and not replaced.
  put(u"told_FR.txt", "old target");
  call.target = u"";
  {
    const auto held = files.open(in(u"told_FR.txt"), Access::kRead);
    EXPECT_EQ(create(u"a_txt_FR.tud", call), 7);
  }
  EXPECT_EQ(object->LastError(), text);
  EXPECT_EQ(files.get(in(u"told_FR.txt")), "old target");
}

TEST_F(TranslationTest, WhatTheComponentRaisesIsRaisedAfterTheCleanUp) {
  for (const std::u16string member : {u"Open", u"GetMergeDetails", u"SaveOpenTag", u"LocateSkeleton"}) {
    put(u"told_FR.txt", "old target");
    suite.keeps_skeleton = false;
    suite.status = [&](std::u16string_view called, const std::u16string&) -> std::int32_t {
      if (called == member) throw failure(1234, u"The component is damaged", u"Suite");
      return 0;
    };
    const auto raised = failure_of([&] {
      Call call{.target = u"", .preview = -1};
      create(u"a_txt_FR.tud", call);
    });
    ASSERT_TRUE(raised.has_value());
    EXPECT_EQ(raised->number(), 1234);
    EXPECT_EQ(raised->source(), u"Suite");
    EXPECT_EQ(files.get(in(u"told_FR.txt")), "old target");
    EXPECT_FALSE(files.has(in(u"a_txt_FR.otf")));
    files.remove_file(in(u"told_FR.txt"));
    if (files.has(in(u"a_txt_FR.tud.skl"))) files.remove_file(in(u"a_txt_FR.tud.skl"));
  }
  automation.factories.erase(u"K19Suite.TUDDocument");
  EXPECT_EQ(failure_number([&] { create(u"a_txt_FR.tud"); }), 429);
  EXPECT_TRUE(desktop.message_boxes.empty());
}

TEST_F(TranslationTest, SuccessClearsLastErrorAndKeepsTheFileList) {
  fail(u"Open");
  object->QuietMode(1);
  EXPECT_EQ(create(u"a_txt_FR.tud"), 1);
  EXPECT_EQ(object->LastError(), u"Failed to open TUD file");
  suite.status = {};
  pre_process(*object, in(u"a.txt"));
  EXPECT_EQ(create(u"a_txt_FR.tud"), 0);
  EXPECT_EQ(object->LastError(), u"");
  EXPECT_EQ(object->GetFileCount(), 1);
}

TEST_F(TranslationTest, ReleasedCatalogueIsCode5) {
  { const K19FPWObj other; }
  EXPECT_EQ(create(u"a_txt_FR.tud"), 5);
  EXPECT_NE(object->LastError(), u"");
  EXPECT_NE(object->LastError(), u"Failed to create the translation file");
}

// The old target.

TEST_F(TranslationTest, AnOldTargetIsReplacedWhenTheNewOneIsWhole) {
  for (const std::int32_t preview : {0, -1})
    for (const bool read_only : {false, true}) {
      put(u"told_FR.txt", "old target");
      files.set_read_only(in(u"told_FR.txt"), read_only);
      std::u16string made;
      suite.create = [&](const std::u16string& target) {
        made = target;
        EXPECT_FALSE(files.has(target)) << "the filter finds a free name";
        EXPECT_EQ(files.get(in(u"told_FR.txt")), "old target");
        write_file_in_ports(target, "new");
      };
      Call call{.target = u"", .preview = preview};
      EXPECT_EQ(create(u"a_txt_FR.tud", call), 0);
      EXPECT_TRUE(made.ends_with(u"\\told_FR.txt"));
      EXPECT_NE(made, in(u"told_FR.txt")) << "a name of the run's own";
      EXPECT_EQ(files.get(in(u"told_FR.txt")), "new");
      EXPECT_EQ(files.info(in(u"told_FR.txt"))->is_read_only, read_only);
      EXPECT_EQ(files.all_files().size(), 2u) << "nothing is left of the old one";
    }
}

TEST_F(TranslationTest, NegativePreviewIsAFlagWordThatAsksForNoPreview) {
  for (const std::int32_t preview : {-1, -2, -255, -256, -257, -2147483647 - 1}) {
    put(u"told_FR.txt", "old target");
    bool was_there = true;
    suite.create = [&](const std::u16string& target) {
      was_there = files.has(target);
      write_file_in_ports(target, "new");
    };
    Call call{.target = u"", .preview = preview};
    EXPECT_EQ(create(u"a_txt_FR.tud", call), 0);
    EXPECT_FALSE(was_there) << preview;
  }
  EXPECT_TRUE(shell.opened.empty());
}

// Colours.

TEST_F(TranslationTest, HighlightingSavesAnOpenTagFileInTheColoursOfTheEditor) {
  settings.set_number(kEditorKey, u"ColourUntran", 255);
  settings.set_number(kEditorKey, u"Colour100", 65280);
  settings.set_number(kEditorKey, u"ColourTran", 16711680);
  for (const std::int32_t highlight : {1, -1, 7}) {
    suite.calls.clear();
    Call call{.highlight = highlight};
    EXPECT_EQ(create(u"a_txt_FR.tud", call), 0);
    EXPECT_EQ(suite.calls[2], u"SaveColouredOpenTag C:\\WORK\\a_txt_FR.otf 255 0 65280 16711680");
  }
}

TEST_F(TranslationTest, AStatusWithoutAStoredColourHasNoneOrThatOfTheRequest) {
  settings.set_number(kEditorKey, u"ColourFuzzy", 0);
  Call call{.highlight = 1};
  EXPECT_EQ(create(u"a_txt_FR.tud", call), 0);
  EXPECT_EQ(suite.calls[2], u"SaveColouredOpenTag C:\\WORK\\a_txt_FR.otf 0 0 0 0");
  suite.calls.clear();
  const TranslationRequest request{.tud = in(u"a_txt_FR.tud"), .highlight = 1, .unset_colours = {1, 2, 3, 4}};
  EXPECT_EQ(create_translation(request, {}).error, kNoError);
  EXPECT_EQ(suite.calls[2], u"SaveColouredOpenTag C:\\WORK\\a_txt_FR.otf 1 0 3 4") << "black was stored";
}

TEST_F(TranslationTest, HighlightWithAPowerPointSourceReadsNoColoursAndSavesTheUncolouredOpenTagFile) {
  for (const std::u16string format : {u"PPT", u"XLS", u"ppt"}) {
    suite.source_format = format;
    suite.calls.clear();
    Call call{.highlight = 1};
    EXPECT_EQ(create(u"a_txt_FR.tud", call), 0);
    EXPECT_EQ(suite.calls[2], u"SaveOpenTag C:\\WORK\\a_txt_FR.otf");
  }
  for (const std::u16string& name : settings.reads) EXPECT_FALSE(name.starts_with(u"Colour"));
}

TEST_F(TranslationTest, WithoutHighlightNoColoursAreRead) {
  EXPECT_EQ(create(u"a_txt_FR.tud"), 0);
  for (const std::u16string& name : settings.reads) EXPECT_FALSE(name.starts_with(u"Colour"));
}

// Font mapping.

TEST_F(TranslationTest, SuccessLeavesRtfFontMapFileNamingTheFoldersMap) {
  settings.set_number(kFilterKey, u"AllowFontMapping", 3);
  cRegistry map;
  map.SectionKey(kFilterKey);
  map.ValueKey(u"RTFFontMapFile");
  map.SetValue(std::u16string(u"C:\\own.fmp"));
  settings.writes.clear();
  Calls during;
  suite.create = [&](const std::u16string& target) {
    during = settings.writes;
    write_file_in_ports(target, "new");
  };
  EXPECT_EQ(create(u"a_txt_FR.tud"), 0);
  EXPECT_EQ(during, (Calls{u"RTFFontMapFile=C:\\WORK\\KAVO.FMP", u"AllowFontMapping=1"}));
  EXPECT_EQ(settings.writes,
            (Calls{u"RTFFontMapFile=C:\\WORK\\KAVO.FMP", u"AllowFontMapping=1", u"RTFFontMapFile=C:\\own.fmp",
                   u"RTFFontMapFile=C:\\WORK\\KAVO.FMP", u"AllowFontMapping=3"}));
  EXPECT_EQ(std::get<std::u16string>(settings.value(kFilterKey, u"RTFFontMapFile")), u"C:\\WORK\\KAVO.FMP");
}

TEST_F(TranslationTest, FailingFilterLeavesTheFontSettingsAsTheyWereSetForIt) {
  suite.create = [](const std::u16string&) { throw failure(1234, u"No", u"Suite"); };
  EXPECT_EQ(create(u"a_txt_FR.tud"), 5);
  EXPECT_EQ(std::get<std::u16string>(settings.value(kFilterKey, u"RTFFontMapFile")), u"C:\\WORK\\KAVO.FMP");
  EXPECT_EQ(std::get<std::int32_t>(settings.value(kFilterKey, u"AllowFontMapping")), 1);
}

TEST_F(TranslationTest, ARegistryThatCannotBeWrittenMattersToFormatsWithAFontMapOnly) {
  class Refusing : public RecordingRegistry {
   public:
    void write(Hive, std::u16string_view, std::u16string_view, const RegistryData&) override {
      throw failure(FailureNumber::kPermissionDenied, u"The settings cannot be changed");
    }
  } refusing;
  ports().registry = &refusing;
  const struct {
    const char16_t* format;
    std::int32_t expected;
  } cases[] = {{u"TXT", 0}, {u"htm", 0}, {u"rtf", 5}, {u"DOC", 5}};
  for (const auto& c : cases) {
    suite.source_format = c.format;
    EXPECT_EQ(create(u"a_txt_FR.tud"), c.expected);
    EXPECT_EQ(object->LastError(), c.expected == 0 ? u"" : u"The settings cannot be changed");
  }
}

TEST_F(TranslationTest, FailureBeforeTheFilterDoesNotTouchTheFontSettings) {
  fail(u"LocateSkeleton");
  EXPECT_EQ(create(u"a_txt_FR.tud"), 3);
  EXPECT_TRUE(settings.writes.empty());
}

// Skeleton and OpenTag file.

TEST_F(TranslationTest, SkeletonIsDeletedUnlessItIsToBeKept) {
  EXPECT_EQ(create(u"a_txt_FR.tud"), 0);
  EXPECT_TRUE(files.has(in(u"a_txt_FR.tud.skl")));
  EXPECT_FALSE(files.has(in(u"a_txt_FR.otf")));
  suite.keeps_skeleton = false;
  EXPECT_EQ(create(u"a_txt_FR.tud"), 0);
  EXPECT_FALSE(files.has(in(u"a_txt_FR.tud.skl")));
}

TEST_F(TranslationTest, ReadOnlyScratchFilesAreDeletedToo) {
  suite.keeps_skeleton = false;
  suite.create = [&](const std::u16string& target) {
    write_file_in_ports(target, "new");
    ports().files->set_read_only(in(u"a_txt_FR.otf"), true);
    ports().files->set_read_only(in(u"a_txt_FR.tud.skl"), true);
  };
  EXPECT_EQ(create(u"a_txt_FR.tud"), 0);
  EXPECT_EQ(files.all_files(), (Calls{in(u"told_FR.txt")}));
}

// Preview.

TEST_F(TranslationTest, PreviewOpensTheTarget) {
  for (const std::int32_t preview : {0, 1, 2, 3, 256}) {
    shell.opened.clear();
    Call call{.preview = preview};
    EXPECT_EQ(create(u"a_txt_FR.tud", call), 0);
    if (preview == 1 || preview == 2)
      EXPECT_EQ(shell.opened, (std::vector<FakeShell::Opened>{{in(u"told_FR.txt"), u""}}));
    else
      EXPECT_TRUE(shell.opened.empty()) << preview;
  }
  EXPECT_TRUE(shell.started.empty());
  EXPECT_EQ(clock.slept, 0);
}

TEST_F(TranslationTest, PreviewWhoseShellOpenFailsStartsTheTextEditorOnTheTarget) {
  for (const int result : {0, 2, 31}) {
    shell.open_result = result;
    shell.started.clear();
    Call call{.preview = 1};
    EXPECT_EQ(create(u"a_txt_FR.tud", call), 0);
    EXPECT_EQ(shell.started,
              (std::vector<FakeShell::Words>{{u"notepad", to_utf16(path_to_host(u"C:\\WORK\\told_FR.txt"))}}));
  }
  shell.open_result = 32;
  shell.started.clear();
  Call call{.preview = 1};
  EXPECT_EQ(create(u"a_txt_FR.tud", call), 0);
  EXPECT_TRUE(shell.started.empty());
}

TEST_F(TranslationTest, TranslationStandsWhenNothingCanShowIt) {
  shell.open_result = 31;
  shell.can_start = false;
  Call call{.preview = 1};
  EXPECT_EQ(create(u"a_txt_FR.tud", call), 0);
  EXPECT_EQ(call.target, in(u"told_FR.txt"));
  EXPECT_EQ(messages.size(), 1u) << "the reason is told";
}

TEST_F(TranslationTest, NoPreviewAfterAFailure) {
  suite.create = [](const std::u16string&) { throw failure(1234, u"No", u"Suite"); };
  Call call{.preview = 1};
  EXPECT_EQ(create(u"a_txt_FR.tud", call), 5);
  EXPECT_TRUE(shell.opened.empty());
}

TEST_F(TranslationTest, PreviewOfAnOfficeFilterWaitsMoreThanFiveSeconds) {
  const struct {
    const char16_t* filter;
    bool waits;
  } cases[] = {{u"k19pptw.k19pptwobj.1", true},
               {u"K19XLSW.K19XLSWObj.1", true},
               {u"k19docw.k19docwobj.1", true},
               {u"K19DOCW", false},
               {u"k19htm.k19htmobj.1", false}};
  for (const auto& c : cases) {
    suite.filter = c.filter;
    for (const std::int32_t preview : {0, 1}) {
      const double start = clock.now;
      desktop.process_messages_calls = 0;
      Call call{.preview = preview};
      EXPECT_EQ(create(u"a_txt_FR.tud", call), 0);
      if (c.waits && preview != 0) {
        EXPECT_GT(clock.now - start, 5.0);
        EXPECT_LT(clock.now - start, 6.0);
        EXPECT_GT(desktop.process_messages_calls, 10u) << "the host's windows stay alive";
      } else {
        EXPECT_EQ(clock.now, start);
      }
    }
  }
}

TEST_F(TranslationTest, InterruptionOfTheWaitIsRaisedAndTheTranslationStands) {
  suite.filter = u"k19docw.k19docwobj.1";
  desktop.on_process_messages = [] { request_interrupt(); };
  Call call{.preview = 1};
  EXPECT_EQ(failure_number([&] { create(u"a_txt_FR.tud", call); }), 18);
  desktop.on_process_messages = {};
  EXPECT_EQ(files.get(in(u"told_FR.txt")), "made");
  EXPECT_FALSE(files.has(in(u"a_txt_FR.otf")));
  EXPECT_TRUE(shell.opened.empty());
}

TEST_F(TranslationTest, InterruptionOfTheFilterIsRaisedAndLeavesEverythingAsItWas) {
  put(u"told_FR.txt", "old target");
  suite.keeps_skeleton = false;
  const Files before = all_files();
  suite.create = [](const std::u16string& target) {
    write_file_in_ports(target, "half");
    throw interruption();
  };
  for (const std::int32_t preview : {0, -1}) {
    Call call{.preview = preview};
    EXPECT_EQ(failure_number([&] { create(u"a_txt_FR.tud", call); }), 18);
    EXPECT_EQ(all_files(), before);
  }
}

}  // namespace
}  // namespace kavo::test
