// Files that a run must not touch although it uses the same names.
#include <gtest/gtest.h>

#include "driver/translation.h"
#include "driver/translation_fixture.h"
#include "office/recording_office.h"

namespace kavo::test {
namespace {

class InputsAreKept : public TranslationFixture {
 protected:
  InputsAreKept() {
    object->QuietMode(1);
    select_index_markers();
  }
  void put_manual(std::u16string_view language) {
    const std::u16string end = u"_mif_" + std::u16string(language) + u".tud";
    for (const std::u16string name : {u"manual", u"KAVO_ix", u"KAVO_xr", u"KAVO_va"}) {
      put(name + end);
      put(name + end + u".skl", "skeleton");
    }
  }
};

TEST_F(InputsAreKept, ADocumentThatIsNamedAsItsOpenTagFile) {
  for (const std::u16string name : {u"font.otf", u"a_txt_FR.OTF"}) {
    put(name, "precious");
    messages.clear();
    const Files before = all_files();
    EXPECT_EQ(create(name), 1);
    EXPECT_EQ(object->LastError(), u"Failed to open TUD file");
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_NE(messages[0].find(in(name).substr(0, 12)), std::u16string::npos);
    EXPECT_EQ(all_files(), before);
  }
  EXPECT_EQ(count_calls(u"Open"), 0u);
}

TEST_F(InputsAreKept, ASkeletonThatIsNamedAsTheOpenTagFile) {
  put(u"a_txt_FR.tud");
  put(u"a_txt_FR.otf", "the only skeleton");
  const Files before = all_files();
  for (const std::u16string told : {u"a_txt_FR.otf", u"C:\\WORK\\A_TXT_FR.otf"}) {
    suite.told_skeleton = told;
    EXPECT_EQ(create(u"a_txt_FR.tud"), 4);
    EXPECT_EQ(all_files(), before);
  }
}

TEST_F(InputsAreKept, FilesBesideTheDocumentAreRefusedAsTarget) {
  put_manual(u"FR");
  put(u"manual.obj", "objects");
  put(u"page_asp_HTM_FR.tud");
  put(u"page_asp_SCR_FR.tud");
  put(u"page_asp_SCR_FR.tud.skl", "skeleton");
  suite.source_format = u"MIF";
  const Files before = all_files();
  const struct {
    const char16_t* tud;
    const char16_t* target;
  } cases[] = {
      {u"manual_mif_FR.tud", u"KAVO_ix_mif_FR.tud"},
      {u"manual_mif_FR.tud", u"kavo_va_mif_fr.tud.skl"},
      {u"manual_mif_FR.tud", u"manual.obj"},
      {u"manual_mif_FR.tud", u"KAVO_xr_mif_FR.otf"},
      {u"page_asp_HTM_FR.tud", u"page_asp_SCR_FR.tud"},
      {u"page_asp_HTM_FR.tud", u"page_asp_SCR_FR.tud.skl"},
      {u"page_asp_HTM_FR.tud", u"x\\..\\PAGE_asp_scr_FR.tud"},
  };
  for (const auto& c : cases)
    for (const std::int32_t preview : {0, -1}) {
      SCOPED_TRACE(testing::PrintToString(c.target));
      Call call{.target = in(c.target), .preview = preview};
      EXPECT_EQ(create(c.tud, call), 5);
      EXPECT_NE(object->LastError().find(u"must be another file"), std::u16string::npos);
      EXPECT_EQ(all_files(), before);
      EXPECT_EQ(create_translation({.tud = in(c.tud), .output = in(c.target)}, {}).error, kTargetNotCreated);
      EXPECT_EQ(all_files(), before);
    }
}

TEST_F(InputsAreKept, AFileOfTheScriptFilesNameIsBackAfterTheRun) {
  put(u"page_asp_HTM_ENU.tud");
  put(u"page_asp_SCR_ENU.tud");
  put(u"page_asp_ENU.SCR", "somebody's");
  suite.target_name = in(u"page_asp_ENU.htm");
  suite.source_format = u"HTM";
  suite.targets[in(u"page_asp_ENU.htm")] = "<p><!-- ASP2HTML 1 --></p>\r\n";
  suite.targets[in(u"page_asp_ENU.SCR")] = "\r\n<!-- ASP2HTML 1 -->\r\n<%= 1 %>\r\n";
  EXPECT_EQ(create(u"page_asp_HTM_ENU.tud"), 0);
  EXPECT_EQ(files.get(in(u"page_ENU.asp")), "<p><%= 1 %></p>\r\n");
  EXPECT_EQ(files.get(in(u"page_asp_ENU.SCR")), "somebody's");
  EXPECT_FALSE(files.has(in(u"page_asp_ENU.SCR.kavo-old")));
}

TEST_F(InputsAreKept, AFileOfTheXmlFilesNameIsBackAfterTheRun) {
  RecordingOffice office;
  automation.factories[u"PowerPoint.Application"] = [&] { return office.object("Application"); };
  office.answers["Application.Presentations"] = office.with_object("Documents");
  std::u16string opened;
  office.answers["Documents.Open"] = [&](std::span<Argument> arguments) -> Value {
    if (const std::u16string name = as_text(arguments[0].value); name.find(u"\\kavo.") == std::u16string::npos)
      opened = name;
    return office.object("Document");
  };
  office.answers["Application.Run"] = [&](std::span<Argument>) -> Value {
    files.remove_file(opened + u".kavo");
    return Empty{};
  };
  put(u"deck_ppt_FR.tud");
  put(u"deck.ppt", "slides");
  put(u"deck_FR_ppt.xml", "somebody's");
  suite.source_format = u"PPT";
  suite.target_name = in(u"deck_FR.xml");
  EXPECT_EQ(create(u"deck_ppt_FR.tud"), 0) << testing::PrintToString(messages);
  EXPECT_EQ(files.get(in(u"deck_FR_ppt.xml")), "somebody's");
  EXPECT_EQ(files.get(in(u"deck_FR.ppt")), "slides");
}

// A host that calls again from within a filter: the side files of both have the same names.
TEST_F(InputsAreKept, ARunInsideAnotherOneLeavesItsSideFilesAlone) {
  put_manual(u"FR");
  put_manual(u"ENU");
  suite.source_format = u"MIF";
  for (const std::u16string language : {u"FR", u"ENU"}) {
    suite.targets[in(u"manual_" + language + u".mif")] = manual("Apple");
    suite.targets[in(u"KAVO_ix_mif_" + language + u".otf")] = side("Apple", language == u"FR" ? "Pomme" : "apple");
    for (const std::u16string other : {u"KAVO_xr_mif_", u"KAVO_va_mif_"})
      suite.targets[in(other + language + u".otf")] = side("", "");
  }
  bool began = false;
  suite.create = [&](const std::u16string& target) {
    write_file_in_ports(target, suite.bytes_of(target));
    if (began || !suite.created_from.ends_with(u"KAVO_va_mif_FR.otf")) return;
    began = true;
    Call call{.target = in(u"manual_ENU.mif")};
    EXPECT_EQ(create(u"manual_mif_ENU.tud", call), 6);
    EXPECT_NE(messages.back().find(u"KAVO_ix.mif is in use"), std::u16string::npos);
  };
  Call call{.target = in(u"manual_FR.mif")};
  EXPECT_EQ(create(u"manual_mif_FR.tud", call), 0) << testing::PrintToString(messages);
  EXPECT_TRUE(began);
  EXPECT_EQ(files.get(in(u"manual_FR.mif")), manual("Pomme"));
  EXPECT_FALSE(files.has(in(u"manual_ENU.mif")));
  EXPECT_EQ(create(u"manual_mif_ENU.tud", call), 0);
}

TEST_F(InputsAreKept, HiddenTextsWithoutATranslationAreReported) {
  put_manual(u"FR");
  suite.source_format = u"MIF";
  suite.target_name = in(u"manual_FR.mif");
  suite.targets[in(u"KAVO_ix_mif_FR.otf")] = side("Apple", "Pomme");
  for (const std::u16string other : {u"KAVO_xr_mif_FR.otf", u"KAVO_va_mif_FR.otf"})
    suite.targets[in(other)] = side("", "");
  for (const auto& [text, told] : {std::pair("Apple", 0u), std::pair("Pear", 1u)}) {
    suite.targets[in(u"manual_FR.mif")] = manual(text);
    messages.clear();
    EXPECT_EQ(create(u"manual_mif_FR.tud"), 0);
    ASSERT_EQ(messages.size(), told) << text;
    if (told != 0) {
      EXPECT_TRUE(messages[0].ends_with(u"stay untranslated: 1")) << testing::PrintToString(messages[0]);
    }
  }
}

TEST_F(InputsAreKept, ATextThatLooksLikeAnObjectsPlaceIsNotOne) {
  put_manual(u"FR");
  suite.source_format = u"MIF";
  suite.target_name = in(u"manual_FR.mif");
  for (const std::u16string other : {u"KAVO_ix_mif_FR.otf", u"KAVO_xr_mif_FR.otf", u"KAVO_va_mif_FR.otf"})
    suite.targets[in(other)] = side("", "");
  const std::string text = "   <String `<KAVOObj 1\\> <KAVOObj 2\\>'>\r\n";
  // At the beginning of a block, at its end and across it.
  for (std::size_t filler = 0; filler < 9000; filler = filler < 4000 || filler > 4120 ? filler + 97 : filler + 1) {
    const std::string head = "<MIFFile 7.00>\r\n" + std::string(filler, ' ');
    suite.targets[in(u"manual_FR.mif")] = head + text;
    EXPECT_EQ(create(u"manual_mif_FR.tud"), 0) << filler;
    suite.targets[in(u"manual_FR.mif")] = head + "\r\n<KAVOObj 1>\r\n" + text;
    EXPECT_EQ(create(u"manual_mif_FR.tud"), 6) << filler;
  }
}

TEST_F(InputsAreKept, ADocumentNamedWithALeadingUnderscoreFindsItsObjects) {
  for (const std::u16string name :
       {u"_b_mif_FR.tud", u"KAVO_ix_mif_FR.tud", u"KAVO_xr_mif_FR.tud", u"KAVO_va_mif_FR.tud"})
    put(name);
  suite.source_format = u"MIF";
  suite.target_name = in(u"_b_FR.mif");
  for (const std::u16string other : {u"KAVO_ix_mif_FR.otf", u"KAVO_xr_mif_FR.otf", u"KAVO_va_mif_FR.otf"})
    suite.targets[in(other)] = side("", "");
  suite.targets[in(u"_b_FR.mif")] = "<MIFFile 7.00>\r\n<KAVOObj 1>\r\n";
  put(u"_b.obj", "<KAVOObj 1>\r\n=X\r\n=EndInset\r\n<KAVOObj End>\r\n");
  put(u"b.obj", "another document's");
  EXPECT_EQ(create(u"_b_mif_FR.tud"), 0) << testing::PrintToString(messages);
  EXPECT_EQ(files.get(in(u"_b_FR.mif")), "<MIFFile 7.00>\r\n=X\r\n=EndInset\r\n");
}

TEST_F(InputsAreKept, AMifDocumentThatCannotBePreparedLeavesTheSideFilesAsTheyWere) {
  put(u"KAVO_ix.mif", manual("Apple"));  // it has the name of its own side file
  put(u"KAVO_va.mif", "somebody's");
  Files expected = all_files();
  expected[in(u"KAVO_ix.mif.kavo.bak")] = manual("Apple");
  EXPECT_EQ(pre_process(*object, in(u"KAVO_ix.mif")), 4);
  EXPECT_EQ(all_files(), expected);
}

TEST_F(InputsAreKept, ManualsOfABatchShareTheirSideFiles) {
  for (const char16_t* name : {u"ch1.mif", u"ch2.mif", u"other\\ch3.mif"})
    put(name, manual(name[0] == u'o' ? "3" : name[2] == u'1' ? "one" : "two"));
  PreparationBatch batch({in(u"ch1.mif"), in(u"missing.mif"), in(u"other\\ch3.mif"), in(u"ch2.mif")});
  const auto prepare = [&](std::u16string_view name) { return prepare_document({in(name)}, batch, {}); };
  EXPECT_EQ(prepare(u"missing.mif").result, 4);
  EXPECT_FALSE(files.has(in(u"KAVO_ix.mif")));
  EXPECT_EQ(prepare(u"ch1.mif").files.size(), 4u);
  EXPECT_EQ(prepare(u"other\\ch3.mif").files.size(), 4u);
  const PreparationResult alone = prepare(u"ch2.mif");
  EXPECT_EQ(alone.result, 0);
  ASSERT_EQ(alone.files.size(), 1u);
  EXPECT_EQ(alone.files[0].file_name, in(u"ch2.mif"));
  const std::string index = files.get(in(u"KAVO_ix.mif"));
  EXPECT_NE(index.find("`one'"), std::string::npos);
  EXPECT_NE(index.find("`two'"), std::string::npos);
  EXPECT_EQ(index.find("`3'"), std::string::npos);
  EXPECT_NE(files.get(in(u"other\\KAVO_ix.mif")).find("`3'"), std::string::npos);

  EXPECT_EQ(prepare(u"ch2.mif").result, 0);
  EXPECT_EQ(pre_process(*object, in(u"ch2.mif")), 0);
  EXPECT_EQ(object->GetFileCount(), 4) << "a document of no batch has side files of its own";
}

TEST_F(InputsAreKept, AComponentThatRaisesLeavesNoOldResultBehind) {
  put(u"a.txt");
  put(u"a_txt_FR.tud");
  ASSERT_EQ(pre_process(*object, in(u"a.txt")), 0);
  suite.status = [](std::u16string_view, const std::u16string&) -> std::int32_t {
    throw failure(1234, u"The component is damaged", u"Suite");
  };
  EXPECT_EQ(failure_number([&] { create(u"a_txt_FR.tud"); }), 1234);
  EXPECT_EQ(object->LastError(), u"The component is damaged");
  EXPECT_EQ(object->GetFileCount(), 0);
}

}  // namespace
}  // namespace kavo::test
