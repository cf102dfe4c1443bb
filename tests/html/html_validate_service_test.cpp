// The service around the repair: files, backup, messages, the tag table, what is refused.
#include <gtest/gtest.h>

#include "html_validate_run.h"
#include "platform/failure.h"
#include "resources/string_table.h"
#include "support/faulty_files.h"
#include "support/ports_fixture.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

constexpr std::string_view kBroken = "<b>1<i>2</b>3</i>";
constexpr std::string_view kRepaired = "<b>1<i>2</I></b><i>3</i>";
constexpr std::u16string_view kBackupPath = u"C:\\WORK\\page.htm.bak";

class HtmlValidateService : public PortsFixture {
 protected:
  std::int32_t run(std::string_view page) {
    files.put(kPagePath, page);
    validator.Filename(kPagePath);
    return validator.HTMLValidate();
  }
  clsHTMLValidate validator;
};

TEST_F(HtmlValidateService, StartsEmpty) {
  EXPECT_EQ(validator.Filename(), u"");
  EXPECT_FALSE(validator.Backup());
  EXPECT_TRUE(validator.ErrorList().empty());
}

TEST_F(HtmlValidateService, WellFormedPageIsWrittenBackUnchanged) {
  constexpr std::string_view page =
      "<html><body><p>1 <b>2</b></p>\r\n<table><tr><td>3</td></tr></table></body></html>\r\n";
  EXPECT_EQ(run(page), 0);
  EXPECT_EQ(files.get(kPagePath), page);
  ASSERT_EQ(validator.ErrorList().size(), 1u);
  EXPECT_EQ(files.all_files(), std::vector<std::u16string>{std::u16string(kPagePath)});
}

TEST_F(HtmlValidateService, HeaderEntryNamesThePage) {
  run("1");
  EXPECT_EQ(validator.ErrorList()[0].number, 3006);
  EXPECT_TRUE(validator.ErrorList()[0].text.ends_with(kPagePath));
}

TEST_F(HtmlValidateService, RewritesThePageInPlaceAndLeavesNothingElse) {
  EXPECT_EQ(run(kBroken), 0);
  EXPECT_EQ(files.get(kPagePath), kRepaired);
  EXPECT_EQ(files.all_files(), std::vector<std::u16string>{std::u16string(kPagePath)});
}

TEST_F(HtmlValidateService, BackupHoldsThePageAsItWas) {
  validator.Backup(true);
  EXPECT_EQ(run(kBroken), 0);
  EXPECT_EQ(files.get(kBackupPath), kBroken);
  EXPECT_EQ(files.get(kPagePath), kRepaired);
}

TEST_F(HtmlValidateService, CheckingWritesNothing) {
  validator.check_only(true);
  validator.Backup(true);
  EXPECT_EQ(run(kBroken), 0);
  EXPECT_EQ(validator.repairs(), 2u);
  EXPECT_EQ(files.get(kPagePath), kBroken);
  EXPECT_FALSE(files.has(kBackupPath));
}

TEST_F(HtmlValidateService, MissingPageIsReported) {
  validator.Filename(u"C:\\WORK\\none.htm");
  EXPECT_EQ(validator.HTMLValidate(), 1);
  EXPECT_EQ(validator.ErrorList().back().number, 3001);
  EXPECT_NE(validator.ErrorList().back().text.find(u"C:\\WORK\\none.htm\r\n"), std::u16string::npos);
}

TEST_F(HtmlValidateService, FailedBackupIsReportedAndThePageStays) {
  validator.Filename(u"C:\\WORK\\none.htm");
  validator.Backup(true);
  EXPECT_EQ(validator.HTMLValidate(), 1);
  EXPECT_EQ(validator.ErrorList().back().number, 3007);
}

TEST_F(HtmlValidateService, AnEmptyTableMeansThatNothingIsChecked) {
  const std::string page =
      "\xEF\xBB\xBF<title>a < b</title><p><b><i>x > y</b></i><p>z<div></p>" + std::string(9000, '>');
  for (const std::size_t block_size : {std::size_t{1}, std::size_t{4096}, std::size_t{1} << 20}) {
    const BlockSizeScope blocks(block_size);
    CopyTrail trail;
    validator.Tags(u"");
    validator.follow(&trail);
    std::vector<int> percents;
    validator.Progress([&](std::int16_t percent) { percents.push_back(percent); });
    EXPECT_EQ(run(page), 0);
    EXPECT_EQ(files.get(kPagePath), page);
    EXPECT_EQ(validator.repairs(), 0u);
    EXPECT_EQ(validator.ErrorList().size(), 1u);
    EXPECT_EQ(percents.back(), 100);
    EXPECT_EQ(trail.input_of(page.size() - 1), page.size() - 1);
  }
}

TEST_F(HtmlValidateService, BackupCanHaveAnotherName) {
  validator.Backup(true);
  validator.backup_name(u"C:\\WORK\\other.bak");
  files.put(kBackupPath, "old");
  EXPECT_EQ(run(kBroken), 0);
  EXPECT_EQ(files.get(u"C:\\WORK\\other.bak"), kBroken);
  EXPECT_EQ(files.get(kBackupPath), "old");
}

TEST_F(HtmlValidateService, AFailedCallLeavesNoNewBackup) {
  validator.Backup(true);
  EXPECT_EQ(run(std::string_view("\xFF\xFE<\0b\0>\0", 8)), 1);
  EXPECT_FALSE(files.has(kBackupPath));
  validator.Progress([](std::int16_t) { throw interruption(); });
  EXPECT_THROW(run(kBroken), interruption);
  EXPECT_FALSE(files.has(kBackupPath));
  files.put(kBackupPath, "old");
  EXPECT_THROW(run(kBroken), interruption);
  EXPECT_EQ(files.get(kBackupPath), kBroken) << "replaced, but not removed";
}

TEST_F(HtmlValidateService, GluePageIsReportedAndNotRepaired) {
  const std::string page = "<!--htmlGLUE x--><b>1";
  EXPECT_EQ(run(page), 0);
  EXPECT_EQ(files.get(kPagePath), page);
  EXPECT_EQ(validator.ErrorList().back().number, 3008);
}

TEST_F(HtmlValidateService, Utf16IsRefused) {
  for (const std::string_view page :
       {std::string_view("\xFF\xFE<\0b\0>\0", 8), std::string_view("\xFE\xFF\0<\0b\0>", 8)}) {
    EXPECT_EQ(run(page), 1);
    EXPECT_EQ(files.get(kPagePath), page);
    EXPECT_NE(validator.ErrorList().back().text.find(u"UTF-16"), std::u16string::npos);
    EXPECT_EQ(files.all_files().size(), 1u);
  }
}

TEST_F(HtmlValidateService, Utf8MarkStays) {
  EXPECT_EQ(run("\xEF\xBB\xBF<b>1"), 0);
  EXPECT_EQ(files.get(kPagePath), "\xEF\xBB\xBF<b>1</B>\r\n");
}

TEST_F(HtmlValidateService, EmptyPageStays) {
  EXPECT_EQ(run(""), 0);
  EXPECT_EQ(files.get(kPagePath), "");
}

TEST_F(HtmlValidateService, MessagesHoldElementLineAndColumn) {
  for (const LineEnd& line_end : kLineEnds) {
    SCOPED_TRACE(line_end.name);
    run(with_line_end("<p>1</p>\n\n <b>\n<i>2</b> a > b", line_end));
    ASSERT_EQ(validator.ErrorList().size(), 5u);
    const Message& order = validator.ErrorList()[1];
    EXPECT_EQ(order.number, 3010);
    EXPECT_EQ(order.line, 4);
    EXPECT_EQ(order.column, 1);
    EXPECT_EQ(order.text, u"Line 4, column 1: I was still open at </B> and was closed before it");
    const Message& stray = validator.ErrorList()[3];
    EXPECT_EQ(stray.number, 3011);
    EXPECT_EQ(stray.line, 4);
    EXPECT_EQ(stray.column, 12);
  }
}

TEST_F(HtmlValidateService, ManyMessagesAreCountedNotListed) {
  EXPECT_EQ(run(std::string(20'000, '>')), 0);
  EXPECT_EQ(validator.ErrorList().size(), 10'001u);
  EXPECT_EQ(validator.ErrorList().back().text, u"10001 more messages are not listed");
  EXPECT_EQ(validator.repairs(), 20'000u);
}

TEST_F(HtmlValidateService, ProgressGrowsTo100) {
  std::vector<std::int16_t> percents;
  validator.Progress([&](std::int16_t percent) { percents.push_back(percent); });
  run(std::string(100'000, 'x'));
  ASSERT_FALSE(percents.empty());
  EXPECT_TRUE(std::is_sorted(percents.begin(), percents.end()));
  EXPECT_EQ(percents.back(), 100);
}

TEST_F(HtmlValidateService, InterruptionLeavesEverythingAsItWas) {
  validator.Progress([](std::int16_t) { throw interruption(); });
  EXPECT_THROW(run(kBroken), interruption);
  EXPECT_EQ(files.get(kPagePath), kBroken);
  EXPECT_EQ(files.all_files().size(), 1u);
}

TEST_F(HtmlValidateService, NoFaultLosesThePage) {
  FaultyFiles faulty(files);
  ports().files = &faulty;
  validator.Filename(kPagePath);
  const auto faults = for_each_fault(
      faulty, {},
      [&](std::size_t) {
        files.put(kPagePath, kBroken);
        try {
          validator.HTMLValidate();
        } catch (const failure&) {
          // Errors of the scan reach the caller.
        }
      },
      [&](std::size_t number) {
        const std::string page = files.get(kPagePath);
        EXPECT_TRUE(page == kBroken || page == kRepaired) << "fault " << number << ": " << page;
      });
  EXPECT_GE(faults, 5u);
}

TEST(TagTable, HasTheDefaultTable) {
  EXPECT_EQ(clsHTMLValidate().Tags(),
            u"B|0,I|0,U|0,A|0,FONT|1,STRONG|0,EM|0,PRE|0,TT|0,SPAN|1,BIG|1,SMALL|1,CITE|0,"
            u"DFN|0,CODE|0,SAMP|0,KBD|0,VAR|0,ABBR|0,ACRONYM|0,SCRIPT|0,STYLE|0,"
            u"H1|0,H2|0,H3|0,H4|0,H5|0,H6|0,"
            u"TABLE|1,CAPTION|0,THEAD|1,TFOOT|1,TBODY|1,COLGROUP|0,TR|1,TH|1,TD|1,");
}

TEST(TagTable, GivesBackWhatWasWritten) {
  struct Case {
    const char* name;
    std::u16string_view written;
    std::u16string_view read;
  };
  constexpr Case cases[] = {
      {"empty", u"", u""},
      {"text behind the last comma is ignored", u"B|0,I|1", u"B|0,"},
      {"cut at the first bar", u"B|0|1,", u"B|0|1,"},
      {"a piece without a bar", u"B,", u"B|,"},
      {"an empty piece", u",", u"|,"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    clsHTMLValidate validator;
    validator.Tags(c.written);
    EXPECT_EQ(validator.Tags(), c.read);
  }
}

TEST(TagTable, Takes128EntriesAndNoMore) {
  std::u16string tags;
  for (int i = 0; i < 128; ++i) tags += u"B|0,";
  clsHTMLValidate validator;
  validator.Tags(tags);
  EXPECT_EQ(validator.Tags(), tags);
  try {
    validator.Tags(tags + u"I|0,");
    FAIL() << "129 entries were taken";
  } catch (const failure& reason) {
    EXPECT_TRUE(reason.is(FailureNumber::kSubscriptOutOfRange));
  }
  EXPECT_EQ(validator.Tags(), tags);
}

TEST(TagTable, DecidesWhatIsChecked) {
  EXPECT_EQ(validate("<b>1", 4096, u"I|0,").page, "<b>1");
  EXPECT_EQ(validate("<s>1", 4096, u"S|0,").page, "<s>1</S>\r\n");
  EXPECT_EQ(validate("<x-y>1", 4096, u"X-Y|0,").page, "<x-y>1</X-Y>\r\n");
  EXPECT_EQ(validate("<b><i>1</b>2</i>", 4096, u"B|0,I|1,").page, "<b><i>1</b>2</i>");
  for (const std::u16string_view tags : {std::u16string_view(u"B|0,FONT|1,"), std::u16string_view(u"B|0,FONT|0,")})
    EXPECT_EQ(validate("<font><b>1</font></b>", 4096, tags).page, "<font><b>1</font></b>") << "font never counts";
}

}  // namespace
}  // namespace kavo::test
