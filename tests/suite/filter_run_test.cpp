// The driver's filter run with the suite behind it: from produced files to bilingual documents.
#include "driver//filter_run.h"

#include <gtest/gtest.h>

#include "common/file_type.h"
#include "driver/K19FPWObj.h"
#include "suite/suite.h"
#include "suite/suite_fixture.h"

namespace kavo::test {
namespace {

class FilterRunTest : public SuiteTest {
 protected:
  FilterRunTest() {
    for (const SuiteClass& known : suite_classes())
      automation.factories[std::u16string(known.programmatic_identifier)] = known.create;
    driver.emplace();
    driver->QuietMode(1);
  }
  ~FilterRunTest() override { driver.reset(); }

  std::vector<ProducedFile> preprocess(std::u16string_view name) {
    std::u16string file = in_folder(name);
    EXPECT_EQ(driver->PreProcess(file), 0);
    return {driver->produced_files().begin(), driver->produced_files().end()};
  }

  std::optional<K19FPWObj> driver;
  RunLanguages languages{u"EN-US", u"FR"};
};

TEST_F(FilterRunTest, AServerPageGivesTwoBilingualDocuments) {
  put(u"index.asp", "<html><body><p>Hello</p>\r\n<% Response.Write \"Hi\"\r\nDim x %>\r\n</body></html>\r\n");
  std::vector<ProducedFile> produced = preprocess(u"index.asp");
  const FilterRun run = convert_produced_files(produced, languages);
  EXPECT_EQ(run.result, 0) << testing::PrintToString(run.reason);
  ASSERT_EQ(produced.size(), 2u);
  EXPECT_EQ(produced[0].tud_name, in_folder(u"index_asp_htm_FR.tud"));
  EXPECT_EQ(produced[1].tud_name, in_folder(u"index_asp_scr_FR.tud"));
  for (const ProducedFile& file : produced) EXPECT_TRUE(files.has(skeleton_name_of(file.tud_name)));
}

TEST_F(FilterRunTest, ScriptSegmentsAreTextsAndDoubtfulOnesAreLocked) {
  put(u"index_asp.scr", "\r\n<!-- ASP2HTML 1 -->\r\n<% MsgBox \"Hi you\"\r\nDim x\r\nw \"Approved\" %>\r\n");
  std::vector<ProducedFile> produced{{in_folder(u"index_asp.scr"), kPlainText, u""}};
  EXPECT_EQ(convert_produced_files(produced, languages).result, 0);
  const BilingualDocument document(produced[0].tud_name);
  ASSERT_EQ(document.size(), 2u);
  EXPECT_EQ(document.segment(0).status, TranslationStatus::kUntranslated);
  EXPECT_EQ(document.segment(0).match, 0);
  EXPECT_EQ(document.segment(1).status, TranslationStatus::kLocked);
  EXPECT_NE(files.get(produced[0].tud_name).find("translate=\"no\""), std::string::npos);
}

TEST_F(FilterRunTest, APlainTextIsNotLocked) {
  put(u"a.txt", "One\n");
  std::vector<ProducedFile> produced = preprocess(u"a.txt");
  EXPECT_EQ(convert_produced_files(produced, languages).result, 0);
  EXPECT_EQ(BilingualDocument(produced[0].tud_name).segment(0).status, TranslationStatus::kUntranslated);
}

TEST_F(FilterRunTest, AFailureOnTheSecondFileLeavesTheFirstDocumentInPlace) {
  put(u"a.txt", "One\n");
  std::vector<ProducedFile> produced{{in_folder(u"a.txt"), kPlainText, u""},
                                     {in_folder(u"missing.txt"), kPlainText, u""},
                                     {in_folder(u"a.txt"), kPlainText, u""}};
  const FilterRun run = convert_produced_files(produced, languages);
  EXPECT_EQ(run.result, 201);
  EXPECT_NE(run.reason, u"");
  EXPECT_TRUE(files.has(produced[0].tud_name));
  EXPECT_EQ(produced[1].tud_name, u"");
  EXPECT_EQ(produced[2].tud_name, u"");
}

TEST_F(FilterRunTest, ATypeWithoutAFilterStopsTheRun) {
  std::vector<ProducedFile> produced{{in_folder(u"a.asp"), kServerPage, u""}};
  EXPECT_EQ(convert_produced_files(produced, languages).result, 200);
  produced = {{in_folder(u"a.doc"), kWordDocument, u""}};
  EXPECT_EQ(convert_produced_files(produced, languages).result, 200);
}

TEST_F(FilterRunTest, AnOldDocumentAndItsSkeletonMakeWayAndComeBackWhenTheFilterFails) {
  put(u"a_txt_FR.tud", "old");
  put(u"a_txt_FR.tud.skl", "old skeleton");
  files.set_read_only(in_folder(u"a_txt_FR.tud"), true);
  std::vector<ProducedFile> produced{{in_folder(u"a.txt"), kPlainText, u""}};
  EXPECT_EQ(convert_produced_files(produced, languages).result, 200);
  EXPECT_EQ(files.get(in_folder(u"a_txt_FR.tud")), "old");
  EXPECT_EQ(files.get(in_folder(u"a_txt_FR.tud.skl")), "old skeleton");
  put(u"a.txt", "One\n");
  EXPECT_EQ(convert_produced_files(produced, languages).result, 0);
  EXPECT_NE(files.get(in_folder(u"a_txt_FR.tud")), "old");
  EXPECT_FALSE(has(u"a_txt_FR.tud.kavo-old"));
}

TEST_F(FilterRunTest, ASuiteThatRefusesToLockIsAFailure) {
  put(u"a.scr", "Dim x\n");
  automation.factories[u"K19Suite.TUDDocument"] = [] {
    return std::make_shared<FakeObject>(
        std::vector<Member>{{u"Open", MemberKind::kMethod, 1, 1, [](auto) -> Value { return std::int32_t{7}; }}});
  };
  std::vector<ProducedFile> produced{{in_folder(u"a.scr"), kPlainText, u""}};
  const FilterRun run = convert_produced_files(produced, languages);
  EXPECT_EQ(run.result, 200);
  EXPECT_EQ(run.reason, u"Open");
  EXPECT_FALSE(has(u"a_scr_FR.tud")) << "a document whose script is not locked is not done";
  EXPECT_FALSE(has(u"a_scr_FR.tud.skl"));
}

TEST(ContainsQuotedText, TwoQuotesOfAKind) {
  EXPECT_FALSE(ContainsQuotedText(u""));
  EXPECT_FALSE(ContainsQuotedText(u"it's 1\" long"));
  EXPECT_TRUE(ContainsQuotedText(u"\"\""));
  EXPECT_TRUE(ContainsQuotedText(u"a \"b\" c"));
  EXPECT_TRUE(ContainsQuotedText(u"'a'"));
  EXPECT_TRUE(ContainsQuotedText(u"\"'a'"));
}

}  // namespace
}  // namespace kavo::test
