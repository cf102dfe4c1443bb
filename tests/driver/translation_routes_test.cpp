// What follows when the filter has created a target: scripts, side files, objects and Office documents come back.
#include <gtest/gtest.h>

#include "common/clsCommon.h"
#include "common/folder_run.h"
#include "driver/translation.h"
#include "driver/translation_fixture.h"
#include "office/recording_office.h"
#include "support/faulty_files.h"

namespace kavo::test {
namespace {

class RoutesTest : public TranslationFixture {
 protected:
  void add_file(std::u16string_view name, std::string_view bytes) { suite.targets[in(name)] = bytes; }
  // Runs with a fault at every operation in turn. Whatever fails, every document is as it was before, or the target is
  // the whole new one; what a run cannot clean up the next one does.
  void check_every_fault(std::u16string_view tud, const std::u16string& target, const std::string& rebuilt) {
    const Files before = all_files();
    Files done = before;
    done[target] = rebuilt;
    FaultyFiles faulty(files);
    object->QuietMode(1);
    for (const bool lasting : {false, true}) {
      std::int32_t result = 0;
      const std::size_t faults = for_each_fault(
          faulty, {.lasting = lasting, .partial_bytes = 3},
          [&](std::size_t) {
            for (const std::u16string& path : files.all_files()) clsCommon().DeleteFile(path);
            for (const auto& [path, bytes] : before) files.put(path, bytes);
            ports().files = &faulty;
            try {
              Call call{.target = u"", .preview = -1};
              result = create(tud, call);
            } catch (const failure&) {
              result = -1;  // what the suite's component raised
            }
            ports().files = &files;
          },
          [&](std::size_t number) {
            SCOPED_TRACE(testing::Message() << "operation " << number << ", lasting " << lasting);
            if (files.info(in(u".kavo-run"))) {
              EXPECT_TRUE(lasting);
              const FolderRun next(target);
            }
            Files after = all_files();
            // What the component makes where it is missing.
            std::erase_if(
                after, [&](const auto& file) { return file.first.ends_with(u".skl") && !before.contains(file.first); });
            if (result == 0 || (lasting && after != before))
              EXPECT_EQ(after, done);
            else
              EXPECT_EQ(after, before) << "result " << result;
          });
      EXPECT_GT(faults, 10u);
      EXPECT_EQ(result, 0);
    }
  }
  // The documents that have to be there before, and those that are there after.
  Files with(Files all, std::initializer_list<std::pair<std::u16string, std::string>> more) const {
    for (const auto& [name, bytes] : more) all[in(name)] = bytes;
    return all;
  }
};

// The tests that follow begin with a document that already exists.

// The command replaces nothing unless asked to, and says so before any work begins.
TEST_F(RoutesTest, AnExistingDocumentIsSeenBeforeTheSuiteMakesAnything) {
  const struct {
    const char* name;
    const char16_t* tud;
    const char16_t* companion;
    const char16_t* format;
    const char16_t* target;    // that the filter is asked for
    const char16_t* existing;  // the document that is there already
  } cases[] = {
      {"page", u"page_asp_HTM_ENU.tud", u"page_asp_SCR_ENU.tud", u"HTM", u"page_asp_ENU.htm", u"page_ENU.asp"},
      {"file on the way", u"page_asp_HTM_ENU.tud", u"page_asp_SCR_ENU.tud", u"HTM", u"page_asp_ENU.htm",
       u"page_asp_ENU.htm"},
      {"Word document", u"letter_doc_rtf_ENU.tud", u"letter_doc.rtf", u"RTF", u"letter_doc_ENU.rtf", u"letter_ENU.doc"},
      {"RTF document", u"letter_rtf_ENU.tud", u"letter.rtf", u"RTF", u"letter_ENU.rtf", u"letter_ENU.rtf"},
      {"RTF document called doc", u"doc_rtf_ENU.tud", u"doc.rtf", u"RTF", u"doc_ENU.rtf", u"doc_ENU.rtf"},
      {"presentation", u"deck_PPT_ENU.tud", u"deck.PPT", u"XML", u"deck_PPT_ENU.xml", u"deck_ENU.PPT"},
      {"workbook without a language", u"book_XLS.tud", u"book.XLS", u"XML", u"told.xml", u"told.XLS"},
      {"MIF document", u"manual_mif_ENU.tud", u"manual.mif", u"MIF", u"manual_ENU.mif", u"manual_ENU.mif"},
      {"text", u"a_txt_ENU.tud", u"a.txt", u"TXT", u"a_ENU.txt", u"a_ENU.txt"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    for (const std::u16string& path : files.all_files()) files.remove_file(path);
    for (const char16_t* name : {c.tud, c.companion, c.existing}) put(name, "mine");
    suite.calls.clear();
    suite.source_format = c.format;
    suite.target_name = in(c.target);
    const Files before = all_files();
    const TranslationResult result = create_translation({.tud = in(c.tud), .keeps_existing = true}, {});
    EXPECT_EQ(result.error, kTargetInTheWay);
    EXPECT_EQ(result.text, in(c.existing) + u" exists already");
    EXPECT_EQ(count_calls(u"CreateTarget"), 0u);
    EXPECT_EQ(count_calls(u"SaveOpenTag"), 0u);
    EXPECT_EQ(all_files(), before);
  }
}

// RestoreScripts.

class RestoreScripts : public RoutesTest {
 protected:
  RestoreScripts() {
    put(u"page_asp_HTM_ENU.tud");
    put(u"page_asp_SCR_ENU.tud");
    put(u"page_asp_HTM_ENU.tud.skl", "skeleton");
    put(u"page_asp_SCR_ENU.tud.skl", "skeleton");
    suite.target_name = in(u"page_asp_ENU.htm");
    suite.source_format = u"HTM";
    add_file(u"page_asp_ENU.htm", "<p>Bonjour <!-- ASP2HTML 1 --></p>\r\n");
    add_file(u"page_asp_ENU.SCR", "\r\n<!-- ASP2HTML 1 -->\r\n<%= \"nom\" %>\r\n");
  }
  const std::string page = "<p>Bonjour <%= \"nom\" %></p>\r\n";
};

TEST_F(RestoreScripts, PageComesBackUnderItsOwnName) {
  const Files before = all_files();
  Call call;
  EXPECT_EQ(create(u"page_asp_HTM_ENU.tud", call), 0);
  EXPECT_EQ(call.target, in(u"page_ENU.asp")) << "the file really created, not the one that the filter was given";
  EXPECT_EQ(all_files(), with(before, {{u"page_ENU.asp", page}}));
  EXPECT_EQ(count_calls(u"CreateTarget"), 2u);
  EXPECT_EQ(suite.calls.back(),
            u"CreateTarget C:\\WORK\\page_asp_ENU.SCR|C:\\WORK\\page_asp_SCR_ENU.otf|"
            u"C:\\WORK\\page_asp_SCR_ENU.tud.skl|ENU|K19TXT");
}

TEST_F(RestoreScripts, NoPageHasAFinalNameBeforeItsScriptsAreBack) {
  suite.create = [&](const std::u16string& target) {
    write_file_in_ports(target, suite.bytes_of(target));
    for (const auto* name : {u"page_asp_ENU.htm", u"page_ENU.asp"}) EXPECT_FALSE(files.has(in(name)));
  };
  EXPECT_EQ(create(u"page_asp_HTM_ENU.tud"), 0);
  EXPECT_EQ(count_calls(u"CreateTarget"), 2u);
  EXPECT_EQ(files.get(in(u"page_ENU.asp")), page);
}

TEST_F(RestoreScripts, FilesOnTheWayGoReadOnlyOrNot) {
  const Files before = all_files();
  suite.create = [&](const std::u16string& target) {
    write_file_in_ports(target, suite.bytes_of(target));
    files.set_read_only(target, true);
  };
  EXPECT_EQ(create(u"page_asp_HTM_ENU.tud"), 0);
  EXPECT_EQ(all_files(), with(before, {{u"page_ENU.asp", page}}));
}

TEST_F(RestoreScripts, ScriptsAreNeverColoured) {
  Call call{.highlight = 1};
  EXPECT_EQ(create(u"page_asp_HTM_ENU.tud", call), 0);
  EXPECT_EQ(count_calls(u"SaveColouredOpenTag C:\\WORK\\page_asp_HTM_ENU.otf"), 1u);
  EXPECT_EQ(count_calls(u"SaveOpenTag C:\\WORK\\page_asp_SCR_ENU.otf"), 1u);
}

TEST_F(RestoreScripts, ScriptDocumentThatCannotBeRebuiltIsCode6) {
  put(u"page_ENU.asp", "old page");
  put(u"page_asp_ENU.SCR", "somebody's");
  put(u"page_asp_ENU.htm", "somebody's too");
  const Files before = all_files();
  for (const std::u16string member : {u"Open", u"GetMergeDetails", u"SaveOpenTag", u"LocateSkeleton"}) {
    suite.status = [&](std::u16string_view called, const std::u16string& tud) {
      return called == member && tud.find(u"_SCR_") != std::u16string::npos ? 1 : 0;
    };
    messages.clear();
    EXPECT_EQ(create(u"page_asp_HTM_ENU.tud"), 6);
    EXPECT_EQ(object->LastError(), u"Failed to post-process the file");
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_NE(messages[0].find(u"page_asp_SCR_ENU.tud"), std::u16string::npos);
    EXPECT_EQ(all_files(), before);
  }
  suite.status = {};
  suite.create = [&](const std::u16string& target) {
    write_file_in_ports(target, "half");
    if (target.ends_with(u".SCR")) throw failure(1234, u"Segment 3 is damaged", u"Suite");
  };
  messages.clear();
  EXPECT_EQ(create(u"page_asp_HTM_ENU.tud"), 6);
  EXPECT_EQ(messages, std::vector<std::u16string>{u"C:\\WORK\\page_asp_SCR_ENU.tud: Segment 3 is damaged"});
  EXPECT_EQ(all_files(), before);
}

TEST_F(RestoreScripts, PageThatCannotBeRestoredIsCode6) {
  put(u"page_ENU.asp", "old page");
  suite.targets[in(u"page_asp_ENU.htm")] = "\xFF\xFE<\0p\0";  // a page that restoring refuses
  const Files before = all_files();
  EXPECT_EQ(create(u"page_asp_HTM_ENU.tud"), 6);
  EXPECT_EQ(messages.size(), 1u);
  EXPECT_EQ(all_files(), before);
}

TEST_F(RestoreScripts, PageMayBeAskedForUnderTheRestoredPagesName) {
  for (const std::u16string name : {u"page_htm_HTM_ENU.tud", u"page_htm_SCR_ENU.tud"}) put(name);
  put(u"page_ENU.htm", "old page");
  add_file(u"page_ENU.htm", suite.targets.at(in(u"page_asp_ENU.htm")));
  add_file(u"page_htm_ENU.SCR", suite.targets.at(in(u"page_asp_ENU.SCR")));
  Files before = all_files();
  for (const bool fails : {true, false}) {
    suite.status = [&](std::u16string_view, const std::u16string& tud) {
      return fails && tud.find(u"_SCR_") != std::u16string::npos ? 1 : 0;
    };
    Call call{.target = in(u"page_ENU.htm"), .preview = -1};
    EXPECT_EQ(create(u"page_htm_HTM_ENU.tud", call), fails ? 6 : 0);
    if (!fails) {
      before[in(u"page_ENU.htm")] = page;
      before[in(u"page_htm_HTM_ENU.tud.skl")] = "skeleton";
    }
    Files after = all_files();
    after.erase(in(u"page_htm_SCR_ENU.tud.skl"));
    before.erase(in(u"page_htm_SCR_ENU.tud.skl"));
    EXPECT_EQ(after, before);
  }
}

TEST_F(RestoreScripts, OtherExtensionsNeedNoWork) {
  suite.target_name = in(u"page_ENU.asp");
  Call call;
  EXPECT_EQ(create(u"page_asp_HTM_ENU.tud", call), 0);
  EXPECT_EQ(count_calls(u"Open"), 1u);
  EXPECT_EQ(files.get(in(u"page_ENU.asp")), "made");
}

TEST_F(RestoreScripts, NoDocumentIsLostWhateverFails) {
  put(u"page.asp", "source");
  put(u"page_ENU.asp", "old page");
  put(u"page_asp_ENU.htm", "somebody's");
  check_every_fault(u"page_asp_HTM_ENU.tud", in(u"page_ENU.asp"), page);
}

// MergeMIF.

class MergeMif : public RoutesTest {
 protected:
  MergeMif() {
    for (const std::u16string name :
         {u"manual_mif_FR.tud", u"KAVO_ix_mif_FR.tud", u"KAVO_xr_mif_FR.tud", u"KAVO_va_mif_FR.tud"}) {
      put(name);
      put(name + u".skl", "skeleton");
    }
    suite.target_name = in(u"manual_FR.mif");
    suite.source_format = u"MIF";
    suite.filter = u"K19MIF";
    add_file(u"manual_FR.mif", manual("Apple"));
    add_file(u"KAVO_ix_mif_FR.otf", side("Apple", "Pomme"));
    add_file(u"KAVO_xr_mif_FR.otf", side("", ""));
    add_file(u"KAVO_va_mif_FR.otf", side("", ""));
    select_index_markers();
  }
};

TEST_F(MergeMif, TranslationsOfTheSideFilesComeIntoTheDocument) {
  const Files before = all_files();
  Call call;
  EXPECT_EQ(create(u"manual_mif_FR.tud", call), 0) << testing::PrintToString(messages);
  EXPECT_EQ(call.target, in(u"manual_FR.mif"));
  EXPECT_EQ(all_files(), with(before, {{u"manual_FR.mif", manual("Pomme")}}));
  std::vector<std::u16string> opened;
  for (const std::u16string& called : suite.calls)
    if (called.starts_with(u"Open ")) opened.push_back(called.substr(5));
  EXPECT_EQ(opened, (std::vector<std::u16string>{in(u"manual_mif_FR.tud"), in(u"KAVO_ix_mif_FR.tud"),
                                                 in(u"KAVO_xr_mif_FR.tud"), in(u"KAVO_va_mif_FR.tud")}));
}

// A host's catalogue sees the names of the contract, and nobody sees a document before it is merged.
TEST_F(MergeMif, SideFilesHaveTheirNamesAtOnceAndTheDocumentAtTheEnd) {
  std::vector<std::u16string> made;
  suite.create = [&](const std::u16string& target) {
    made.push_back(target);
    write_file_in_ports(target, suite.bytes_of(target));
    EXPECT_FALSE(files.has(in(u"manual_FR.mif")));
  };
  EXPECT_EQ(create(u"manual_mif_FR.tud"), 0);
  ASSERT_EQ(made.size(), 4u);
  made.erase(made.begin());
  EXPECT_EQ(made, (std::vector<std::u16string>{in(u"KAVO_ix.mif"), in(u"KAVO_xr.mif"), in(u"KAVO_va.mif")}));
  EXPECT_EQ(files.get(in(u"manual_FR.mif")), manual("Pomme"));
}

TEST_F(MergeMif, SideFilesNeverOutliveTheRun) {
  for (const std::u16string side_file : {u"KAVO_ix.mif", u"KAVO_xr.mif", u"KAVO_va.mif"}) put(side_file, "extracted");
  files.set_read_only(in(u"KAVO_xr.mif"), true);
  EXPECT_EQ(create(u"manual_mif_FR.tud"), 0);
  for (const std::u16string& path : files.all_files()) {
    EXPECT_EQ(path.find(u"KAVO_ix.mif"), std::u16string::npos);
    EXPECT_FALSE(path.ends_with(u".mif") && !path.ends_with(u"manual_FR.mif")) << testing::PrintToString(path);
    EXPECT_EQ(path.find(u".kavo-old"), std::u16string::npos);
  }
}

TEST_F(MergeMif, SideThatCannotBeRebuiltIsCode6AndLaterSidesAreLeftAlone) {
  for (const std::u16string side_file : {u"KAVO_ix.mif", u"KAVO_xr.mif", u"KAVO_va.mif"}) put(side_file, "extracted");
  put(u"manual_FR.mif", "old target");
  const Files before = all_files();
  const std::u16string sides[] = {u"KAVO_ix", u"KAVO_xr", u"KAVO_va"};
  for (std::size_t failing = 0; failing < 3; ++failing) {
    suite.calls.clear();
    suite.status = [&](std::u16string_view member, const std::u16string& tud) {
      return member == u"LocateSkeleton" && tud.find(sides[failing]) != std::u16string::npos ? 1 : 0;
    };
    for (const std::int32_t preview : {0, -1}) {
      Call call{.target = u"", .preview = preview};
      EXPECT_EQ(create(u"manual_mif_FR.tud", call), 6);
      EXPECT_EQ(all_files(), before);
    }
    for (std::size_t later = failing + 1; later < 3; ++later)
      EXPECT_EQ(count_calls(u"Open C:\\WORK\\" + sides[later]), 0u);
  }
}

TEST_F(MergeMif, FailingMergeIsCode6AndLeavesEverythingAsItWas) {
  for (const std::u16string side_file : {u"KAVO_ix.mif", u"KAVO_xr.mif", u"KAVO_va.mif"}) put(side_file, "extracted");
  put(u"manual_FR.mif", "old target");
  const Files before = all_files();
  FaultyFiles faulty(files);
  ports().files = &faulty;
  suite.create = [&](const std::u16string& target) {
    write_file_in_ports(target, suite.bytes_of(target));
    // Its OpenTag file is deleted next; then merging writes.
    if (suite.created_from.ends_with(u"KAVO_va_mif_FR.otf"))
      faulty.set_fault({.operation = 2, .counted = FaultyFiles::Counted::kMutating});
  };
  EXPECT_EQ(create(u"manual_mif_FR.tud"), 6);
  EXPECT_TRUE(faulty.fault_happened());
  faulty.clear_fault();
  EXPECT_EQ(all_files(), before);
  EXPECT_FALSE(messages.empty());
}

TEST_F(MergeMif, ObjectsOfTheObjectFileAreInserted) {
  put(u"manual.obj", "<KAVOObj 1>\r\n=FrameImage\r\n&x\r\n=EndInset\r\n<KAVOObj End>\r\n");
  add_file(u"manual_FR.mif", "<MIFFile 7.00>\r\n<KAVOObj 1>\r\n");
  EXPECT_EQ(create(u"manual_mif_FR.tud"), 0);
  EXPECT_EQ(files.get(in(u"manual_FR.mif")), "<MIFFile 7.00>\r\n=FrameImage\r\n&x\r\n=EndInset\r\n");
  EXPECT_TRUE(files.has(in(u"manual.obj")));
}

TEST_F(MergeMif, ObjectFileThatIsMissingIsAFailureOnlyWhenObjectsWereTakenOut) {
  const Files before = all_files();
  std::string text = "<MIFFile 7.00>\r\n";
  for (const bool taken : {false, true}) {
    // Beyond the first block, across its end.
    for (const std::size_t filler : {0, 4075, 4080, 4085, 9000}) {
      add_file(u"manual_FR.mif",
               text + std::string(filler, ' ') + "\r\n" + (taken ? "<KAVOObj 1>" : "<KAVOObject>") + "\r\n");
      EXPECT_EQ(create(u"manual_mif_FR.tud"), taken ? 6 : 0) << filler;
      if (!taken) files.remove_file(in(u"manual_FR.mif"));
      EXPECT_EQ(all_files(), before);
    }
  }
}

TEST_F(MergeMif, APlaceholderIsFoundAsTheInsertionFindsIt) {
  for (const std::string line : {" <KAVOObj 1>", "x<KAVOObj 1>y", "\t<KAVOObj 1>"}) {
    add_file(u"manual_FR.mif", "<MIFFile 7.00>\r\n" + line + "\r\n");
    EXPECT_EQ(create(u"manual_mif_FR.tud"), 6) << line;
  }
}

TEST_F(MergeMif, NamePartsGiveTheObjectFileOfAManualWithUnderscores) {
  for (const std::u16string name : {u"a_b_MIF_FR.tud"}) put(name);
  put(u"a_b.obj", "<KAVOObj 1>\r\n=X\r\n=EndInset\r\n<KAVOObj End>\r\n");
  suite.target_name = in(u"a_b_FR.mif");
  add_file(u"a_b_FR.mif", "<MIFFile 7.00>\r\n<KAVOObj 1>\r\n");
  EXPECT_EQ(create(u"a_b_MIF_FR.tud"), 0);
  EXPECT_EQ(files.get(in(u"a_b_FR.mif")), "<MIFFile 7.00>\r\n=X\r\n=EndInset\r\n");
}

TEST_F(MergeMif, NoDocumentIsLostWhateverFails) {
  put(u"manual.mif", "source");
  put(u"manual_FR.mif", "old target");
  put(u"KAVO_other.mif", "another book's");
  put(u"manual.obj", "<KAVOObj 1>\r\n=X\r\n=EndInset\r\n<KAVOObj End>\r\n");
  add_file(u"manual_FR.mif", manual("Apple") + "<KAVOObj 1>\r\n");
  check_every_fault(u"manual_mif_FR.tud", in(u"manual_FR.mif"), manual("Pomme") + "=X\r\n=EndInset\r\n");
}

// RebuildDocument.

class RebuildDocument : public RoutesTest {
 protected:
  RebuildDocument() {
    suite.target_name = in(u"report_doc_FR.rtf");
    suite.source_format = u"RTF";
    add_file(u"report_doc_FR.rtf", rtf);
    automation.factories[u"Word.Application"] = [this] { return word.object("Application"); };
    word.answers["Application.Documents"] = word.with_object("Documents");
    word.answers["Documents.Open"] = word.with_object("Document");
    word.answers["Document.Fields"] = word.with_object("Fields");
    word.answers["Fields.Count"] = [](auto) -> Value { return std::int32_t{0}; };
    word.answers["Document.SaveAs"] = [](std::span<Argument> arguments) -> Value {
      write_file_in_ports(as_text(arguments[0].value), "doc");
      return Empty{};
    };
  }
  const std::string rtf = "{\\rtf1 Bonjour {\\v\\mor OBJ 1 }}";
  const std::string objects = "{\\v\\mor OBJ 1 }\r\n{\\pict 00}\r\n{\\v\\mor OBJ 2 }\r\n";
  RecordingOffice word;
};

TEST_F(RebuildDocument, RtfGetsItsObjectsBack) {
  put(u"letter.obj", objects);
  suite.target_name = in(u"letter_FR.rtf");
  add_file(u"letter_FR.rtf", rtf);
  const Files before = all_files();
  Call call;
  EXPECT_EQ(create(u"letter_rtf_FR.tud", call), 0);
  EXPECT_EQ(call.target, in(u"letter_FR.rtf"));
  EXPECT_EQ(all_files(),
            with(before, {{u"letter_FR.rtf", "{\\rtf1 Bonjour {\\pict 00}}"}, {u"letter_rtf_FR.tud.skl", "skeleton"}}));
  EXPECT_TRUE(word.calls.empty());
}

TEST_F(RebuildDocument, WithoutAnObjectFileTheDocumentStaysAsTheFilterMadeIt) {
  suite.target_name = in(u"letter_FR.rtf");
  EXPECT_EQ(create(u"letter_rtf_FR.tud"), 0);
  EXPECT_EQ(files.get(in(u"letter_FR.rtf")), "made");
}

TEST_F(RebuildDocument, MarkersWithoutAnObjectFileAreCode6) {
  suite.target_name = in(u"letter_FR.rtf");
  add_file(u"letter_FR.rtf", rtf);
  put(u"letter_rtf_FR.tud.skl", "skeleton");
  EXPECT_EQ(create(u"letter_rtf_FR.tud"), 6);
  ASSERT_FALSE(messages.empty());
  EXPECT_NE(testing::PrintToString(messages).find("object file cannot be opened"), std::string::npos)
      << testing::PrintToString(messages);
}

TEST_F(RebuildDocument, ObjectsThatAreMissingAreCode6) {
  put(u"report_doc.obj", "{\\v\\mor OBJ 7 }\r\n{\\pict 00}\r\n{\\v\\mor OBJ 8 }\r\n");
  put(u"report_doc_FR.rtf", "old target");
  put(u"report_doc_rtf_FR.tud.skl", "skeleton");
  const Files before = all_files();
  EXPECT_EQ(create(u"report_doc_rtf_FR.tud"), 6);
  EXPECT_FALSE(messages.empty());
  EXPECT_TRUE(word.calls.empty());
  EXPECT_EQ(all_files(), before);
}

TEST_F(RebuildDocument, WordDocumentIsConvertedBack) {
  put(u"report_doc.obj", objects);
  Call call;
  EXPECT_EQ(create(u"report_doc_rtf_FR.tud", call), 0) << testing::PrintToString(messages);
  EXPECT_EQ(call.target, in(u"report_FR.doc"));
  EXPECT_EQ(files.get(in(u"report_FR.doc")), "doc");
  EXPECT_FALSE(files.has(in(u"report_doc_FR.rtf"))) << "the intermediate document goes";
  EXPECT_NE(word.text().find("\\report_doc_FR.rtf\"&, false"), std::string::npos) << word.text();
  EXPECT_NE(word.text().find("\\report_FR.doc\"&, 0"), std::string::npos) << word.text();
}

TEST_F(RebuildDocument, OldWordDocumentIsReplacedOnlyByAWholeOne) {
  put(u"report_FR.doc", "old document");
  put(u"report_doc_rtf_FR.tud.skl", "skeleton");
  const Files before = all_files();
  const std::function<void()> breaks[] = {
      [&] { automation.factories.erase(u"Word.Application"); },
      [&] {
        word.answers["Document.SaveAs"] = [](std::span<Argument> arguments) -> Value {
          write_file_in_ports(as_text(arguments[0].value), "half");
          throw failure(5, u"Word cannot save", u"Word");
        };
      },
      [&] { word.answers["Document.SaveAs"] = [](auto) -> Value { return Empty{}; }; },
  };
  for (const auto& break_it : breaks) {
    const auto factories = automation.factories;
    break_it();
    messages.clear();
    EXPECT_EQ(create(u"report_doc_rtf_FR.tud"), 6);
    EXPECT_EQ(object->LastError(), u"Failed to post-process the file");
    EXPECT_EQ(messages.size(), 1u);
    EXPECT_EQ(all_files(), before);
    automation.factories = factories;
  }
}

TEST_F(RebuildDocument, NoDocumentIsLostWhateverFails) {
  put(u"report.doc", "source");
  put(u"report_FR.doc", "old document");
  put(u"report_doc.obj", objects);
  check_every_fault(u"report_doc_rtf_FR.tud", in(u"report_FR.doc"), "doc");
}

// RebuildOfficeFile.

class RebuildOffice : public RoutesTest {
 protected:
  RebuildOffice() {
    for (const char16_t* program : {u"PowerPoint.Application", u"Excel.Application"})
      automation.factories[program] = [this] { return office.object("Application"); };
    office.answers["Application.Presentations"] = office.with_object("Documents");
    office.answers["Application.Workbooks"] = office.with_object("Documents");
    office.answers["Documents.Open"] = [this](std::span<Argument> arguments) -> Value {
      if (const std::u16string name = as_text(arguments[0].value); name.find(u"\\kavo.") == std::u16string::npos)
        opened = name;
      return office.object("Document");
    };
    // The macro takes the XML file that is named after the open document.
    office.answers["Application.Run"] = [this](std::span<Argument>) -> Value {
      const std::size_t dot = opened.rfind(u'.');
      const std::u16string xml = opened.substr(0, dot) + u"_" + opened.substr(dot + 1) + u".xml";
      imported = files.has(xml) ? files.get(xml) : "no XML file";
      files.put(opened, files.get(opened) + " with " + imported);
      files.remove_file(opened + u".kavo");
      return Empty{};
    };
  }
  RecordingOffice office;
  std::u16string opened;
  std::string imported;
};

TEST_F(RebuildOffice, TextsComeIntoACopyOfTheSource) {
  for (const std::u16string type : {u"ppt", u"xls", u"PPT"}) {
    for (const std::u16string& path : files.all_files()) files.remove_file(path);
    put(u"deck." + type, "slides");
    suite.source_format = u"PPT";
    suite.target_name = in(u"deck_FR.xml");
    add_file(u"deck_FR.xml", "texts");
    Call call;
    EXPECT_EQ(create(u"deck_" + type + u"_FR.tud", call), 0) << testing::PrintToString(messages);
    EXPECT_EQ(call.target, in(u"deck_FR." + type));
    EXPECT_EQ(FolderRun::without_scratch_folder(opened), call.target);
    EXPECT_EQ(all_files(), (Files{{in(u"deck." + type), "slides"},
                                  {in(u"deck_FR." + type), "slides with texts"},
                                  {in(u"deck_" + type + u"_FR.tud.skl"), "skeleton"}}));
  }
}

TEST_F(RebuildOffice, XmlFileMayHaveItsFinalNameAlready) {
  put(u"deck.ppt", "slides");
  suite.target_name = in(u"deck_FR_ppt.xml");
  add_file(u"deck_FR_ppt.xml", "texts");
  EXPECT_EQ(create(u"deck_ppt_FR.tud"), 0);
  EXPECT_EQ(files.get(in(u"deck_FR.ppt")), "slides with texts");
  EXPECT_FALSE(files.has(in(u"deck_FR_ppt.xml")));
}

TEST_F(RebuildOffice, NameWithoutALanguageIsRebuiltWhenTheSourceFormatIsXml) {
  put(u"big_deck.ppt", "slides");
  suite.target_name = in(u"big_deck_neu.xml");
  suite.source_format = u"XML";
  add_file(u"big_deck_neu.xml", "texts");
  Call call;
  EXPECT_EQ(create(u"big_deck_ppt.tud", call), 0) << testing::PrintToString(messages);
  EXPECT_EQ(call.target, in(u"big_deck_neu.ppt"));
  EXPECT_EQ(files.get(in(u"big_deck_neu.ppt")), "slides with texts");
  EXPECT_EQ(files.get(in(u"big_deck.ppt")), "slides");

  suite.source_format = u"PPT";
  EXPECT_EQ(create(u"big_deck_ppt.tud", call = {}), 0);
  EXPECT_EQ(files.get(in(u"big_deck_neu.xml")), "texts") << "any other format is left as the filter made it";

  suite.source_format = u"XML";
  suite.target_name = in(u"big_deck.xml");
  EXPECT_EQ(create(u"big_deck_ppt.tud", call = {}), 6) << "the source is never the target";
  EXPECT_EQ(files.get(in(u"big_deck.ppt")), "slides");
}

TEST_F(RebuildOffice, FailureLeavesSourceAndOldTarget) {
  put(u"deck.ppt", "slides");
  put(u"deck_FR.ppt", "old target");
  put(u"deck_FR.xml", "somebody's");
  put(u"deck_FR_ppt.xml", "somebody's too");
  put(u"deck_ppt_FR.tud.skl", "skeleton");
  suite.target_name = in(u"deck_FR.xml");
  const Files before = all_files();
  office.failing.insert("Document.Save");
  EXPECT_EQ(create(u"deck_ppt_FR.tud"), 6);
  EXPECT_EQ(messages.size(), 1u);
  EXPECT_EQ(all_files(), before);
  automation.factories.erase(u"PowerPoint.Application");
  EXPECT_EQ(create(u"deck_ppt_FR.tud"), 6);
  EXPECT_EQ(all_files(), before);
}

TEST_F(RebuildOffice, NoDocumentIsLostWhateverFails) {
  put(u"deck.ppt", "slides");
  put(u"deck_FR.ppt", "old target");
  put(u"deck_FR.xml", "somebody's");
  suite.target_name = in(u"deck_FR.xml");
  add_file(u"deck_FR.xml", "texts");
  check_every_fault(u"deck_ppt_FR.tud", in(u"deck_FR.ppt"), "slides with texts");
}

TEST_F(RebuildOffice, OtherXmlDocumentsAreLeftAlone) {
  suite.target_name = in(u"data_FR.xml");
  EXPECT_EQ(create(u"data_xml_FR.tud"), 0);
  EXPECT_EQ(files.get(in(u"data_FR.xml")), "made");
  EXPECT_TRUE(office.calls.empty());
}

}  // namespace
}  // namespace kavo::test
