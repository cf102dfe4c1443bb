// Preparation of one document, through the automation object.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "common/block_reader.h"
#include "driver/driver_fixture.h"
#include "platform/desktop.h"
#include "support/faulty_files.h"

namespace kavo::test {
namespace {

constexpr std::u16string_view kPage = u"C:\\WORK\\index.asp";
constexpr std::string_view kPageText =
    "<html><body>\r\n<p class=<%=c%>>Hello <b>there <i>you</b></i></p>\r\n<% Dim x\r\nx = 1 %>\r\n</body></html>\r\n";
const std::vector<std::u16string> kPageFiles{u"C:\\WORK\\index_asp.htm", u"C:\\WORK\\index_asp.scr"};

class PreProcess : public DriverFixture {
 protected:
  std::vector<std::u16string> types_of(const K19FPWObj& object) {
    std::vector<std::u16string> types;
    for (const ProducedFile& file : object.produced_files()) types.push_back(std::u16string(1, u'0' + file.file_type));
    return types;
  }
};

TEST_F(PreProcess, ServerPageGivesPageAndScriptFile) {
  files.put(kPage, kPageText);
  K19FPWObj object;
  ASSERT_EQ(pre_process(object, std::u16string(kPage)), 0);
  EXPECT_EQ(file_list(object), kPageFiles);
  EXPECT_EQ(types_of(object), (std::vector<std::u16string>{u"3", u"7"}));
  EXPECT_EQ(files.get(kPage), kPageText) << "the source is not touched";
  const std::string page = files.get(kPageFiles[0]);
  EXPECT_EQ(page.find("<%"), std::string::npos);
  EXPECT_NE(page.find("<!-- ASP2HTML 2 -->"), std::string::npos);
  EXPECT_NE(files.get(kPageFiles[1]).find("<% Dim x\r\nx = 1 %>"), std::string::npos);
}

TEST_F(PreProcess, AspPageWithoutScriptYieldsAScriptFileOfOneLineWithOneBlank) {
  files.put(kPage, "<p>Plain</p>\r\n");
  K19FPWObj object;
  ASSERT_EQ(pre_process(object, std::u16string(kPage)), 0);
  EXPECT_EQ(object.GetFileCount(), 2);
  EXPECT_EQ(files.get(kPageFiles[1]), " \r\n");
  EXPECT_EQ(files.get(kPageFiles[0]), "<p>Plain</p>\r\n");
}

// End tags after the placeholder would be script of the restored page, and more of them with every preparation.
TEST_F(PreProcess, NothingIsWrittenAfterAScriptThatNeverEnds) {
  for (const char* page : {"<table><tr><td>1<script>x", "<b>1<% x", "<p>1<?php x \n"}) {
    files.put(kPage, page);
    K19FPWObj object;
    MessageList told;
    object.observe({{}, [&](const Message& message) { told.push_back(message); }});
    ASSERT_EQ(pre_process(object, std::u16string(kPage)), 0);
    EXPECT_TRUE(files.get(kPageFiles[0]).ends_with("1<!-- ASP2HTML 1 -->")) << files.get(kPageFiles[0]);
    ASSERT_FALSE(told.empty());
    for (const Message& message : told) EXPECT_EQ(message.number, 3018);
  }
  // One that ends, even on the page's last byte, hides nothing.
  files.put(kPage, "<b>1<% x %>");
  K19FPWObj object;
  ASSERT_EQ(pre_process(object, std::u16string(kPage)), 0);
  EXPECT_EQ(files.get(kPageFiles[0]), "<b>1<!-- ASP2HTML 1 --></B>\r\n");
}

TEST_F(PreProcess, EmptyPageIsPreparedToo) {
  files.put(kPage, "");
  K19FPWObj object;
  ASSERT_EQ(pre_process(object, std::u16string(kPage)), 0);
  EXPECT_EQ(files.get(kPageFiles[0]), "");
  EXPECT_EQ(files.get(kPageFiles[1]), " \r\n");
}

TEST_F(PreProcess, HtmFileGoesThroughScriptProtectionAndSlot0IsThePageWritten) {
  files.put(u"C:\\WORK\\page.htm", "<p>One & <b>two</b></p>");
  K19FPWObj object;
  ASSERT_EQ(pre_process(object, u"C:\\WORK\\page.htm"), 0);
  EXPECT_EQ(file_list(object), (std::vector<std::u16string>{u"C:\\WORK\\page_htm.htm", u"C:\\WORK\\page_htm.scr"}));
  EXPECT_EQ(types_of(object), (std::vector<std::u16string>{u"3", u"7"}));
  EXPECT_EQ(files.get(u"C:\\WORK\\page_htm.htm"), "<p>One & <b>two</b></p>");
}

TEST_F(PreProcess, PassThroughTypesAreListedWithoutBeingOpened) {
  FaultyFiles counting(files);
  ports().files = &counting;
  K19FPWObj object;
  const struct {
    std::u16string name;
    std::u16string type;
  } cases[] = {{u"C:\\a.rc", u"6"},  {u"C:\\x.asp.txt", u"7"}, {u"C:\\w.doc", u"1"}, {u"C:\\r.rtf", u"2"},
               {u"C:\\p.ppt", u"8"}, {u"C:\\x.xls", u"9"},     {u"C:\\noext", u"0"}, {u"", u"0"}};
  for (const auto& c : cases) {
    EXPECT_EQ(pre_process(object, c.name), 0);
    EXPECT_EQ(file_list(object), std::vector<std::u16string>{c.name});
    EXPECT_EQ(types_of(object), std::vector<std::u16string>{c.type});
  }
  EXPECT_EQ(counting.operation_count(), 0u);
}

TEST_F(PreProcess, ListIsReplacedByEveryCall) {
  files.put(kPage, kPageText);
  K19FPWObj object;
  ASSERT_EQ(pre_process(object, std::u16string(kPage)), 0);
  ASSERT_EQ(pre_process(object, u"C:\\a.txt"), 0);
  EXPECT_EQ(file_list(object), std::vector<std::u16string>{u"C:\\a.txt"});
  EXPECT_EQ(object.GetFile(1), u"");
}

TEST_F(PreProcess, PageThatCannotBeReadGives3AndLeavesNothing) {
  K19FPWObj object;
  std::vector<Message> messages;
  object.observe({{}, [&](const Message& message) { messages.push_back(message); }});
  for (const std::u16string name : {u"C:\\WORK\\missing.asp", u"C:\\WORK\\missing.htm", u"C:\\NONE\\x.jsp"}) {
    messages.clear();
    EXPECT_EQ(pre_process(object, name), 3);
    EXPECT_EQ(object.GetFileCount(), 0);
    EXPECT_EQ(object.GetFile(0), u"");
    EXPECT_EQ(messages.size(), 1u) << "the reason is told";
  }
  EXPECT_EQ(object.LastError(), u"") << "only a translation sets it";
  EXPECT_TRUE(files.all_files().empty());
  EXPECT_TRUE(desktop.message_boxes.empty());
}

TEST_F(PreProcess, FaultAnywhereLeavesTheSourceAndNoHalfWrittenFile) {
  FaultyFiles faulty(files);
  const BlockSizeScope blocks(16);
  std::int32_t result = -1;
  std::map<std::u16string, std::string> whole;
  files.put(kPage, kPageText);
  K19FPWObj undisturbed;
  ASSERT_EQ(pre_process(undisturbed, std::u16string(kPage)), 0);
  for (const std::u16string& name : kPageFiles) whole[name] = files.get(name);
  const std::size_t faults = for_each_fault(
      faulty, {.partial_bytes = 3},
      [&](std::size_t) {
        ports().files = &files;
        for (const std::u16string& name : files.all_files()) files.remove_file(name);
        files.put(kPage, kPageText);
        K19FPWObj object;
        ports().files = &faulty;
        result = pre_process(object, std::u16string(kPage));
        ASSERT_EQ(object.GetFileCount(), result == 0 ? 2 : 0);
      },
      [&](std::size_t number) {
        SCOPED_TRACE(number);
        EXPECT_TRUE(result == 0 || result == 3) << result;
        EXPECT_EQ(files.get(kPage), kPageText);
        std::vector<std::u16string> expected{std::u16string(kPage)};
        if (result == 0) expected.insert(expected.end(), kPageFiles.begin(), kPageFiles.end());
        EXPECT_EQ(files.all_files().size(), expected.size()) << "for result " << result;
        for (const std::u16string& name : kPageFiles) EXPECT_TRUE(result != 0 || files.get(name) == whole[name]);
      });
  EXPECT_GT(faults, 15u);
  EXPECT_EQ(result, 0);
}

// Somebody may have translated them by hand.
TEST_F(PreProcess, FaultAnywhereBringsBackTheOlderPageAndScriptFile) {
  FaultyFiles faulty(files);
  const BlockSizeScope blocks(16);
  std::int32_t result = -1;
  std::size_t failed = 0;
  for_each_fault(
      faulty, {.partial_bytes = 3},
      [&](std::size_t) {
        ports().files = &files;
        files.put(kPage, kPageText);
        for (const std::u16string& name : kPageFiles) files.put(name, "older");
        K19FPWObj object;
        ports().files = &faulty;
        result = pre_process(object, std::u16string(kPage));
      },
      [&](std::size_t number) {
        for (const std::u16string& name : kPageFiles)
          EXPECT_EQ(files.get(name) == "older", result != 0) << number << " gives " << result;
        EXPECT_EQ(files.all_files().size(), 3u) << number;
        failed += result != 0;
      });
  EXPECT_GT(failed, 15u);
  EXPECT_EQ(result, 0);
}

TEST_F(PreProcess, InterruptionAnywhereBringsBackTheOlderPageAndScriptFile) {
  std::string text;
  for (int i = 0; i < 300; ++i) text += kPageText;
  files.put(kPage, text);
  const BlockSizeScope blocks(256);
  K19FPWObj object;
  ASSERT_EQ(pre_process(object, std::u16string(kPage)), 0);
  const std::size_t events = desktop.process_messages_calls;
  ASSERT_GT(events, 20u);
  for (std::size_t stop = 1; stop <= events; stop += 7) {
    for (const std::u16string& name : kPageFiles) files.put(name, "older");
    desktop.process_messages_calls = 0;
    desktop.on_process_messages = [&] {
      if (desktop.process_messages_calls == stop) request_interrupt();
    };
    EXPECT_EQ(failure_number([&] { pre_process(object, std::u16string(kPage)); }), 18);
    desktop.on_process_messages = {};
    for (const std::u16string& name : kPageFiles) EXPECT_EQ(files.get(name), "older") << "stopped at event " << stop;
    EXPECT_EQ(files.all_files().size(), 3u) << "stopped at event " << stop;
  }
}

TEST_F(PreProcess, InterruptionAnywhereIsRaisedAndLeavesNothing) {
  std::string text;
  for (int i = 0; i < 300; ++i) text += kPageText;
  files.put(kPage, text);
  const BlockSizeScope blocks(256);
  K19FPWObj object;
  std::vector<int> reported;
  object.observe({[&](std::u16string_view file, int percent) {
                    EXPECT_EQ(file, kPage);
                    reported.push_back(percent);
                  },
                  {}});
  ASSERT_EQ(pre_process(object, std::u16string(kPage)), 0);
  ASSERT_GT(reported.size(), 20u);
  EXPECT_TRUE(std::ranges::is_sorted(reported));
  EXPECT_EQ(reported.back(), 100);

  const std::size_t events = desktop.process_messages_calls;
  for (std::size_t stop = 1; stop <= events; stop += 7) {
    for (const std::u16string& name : kPageFiles) files.remove_file(name);
    desktop.process_messages_calls = 0;
    desktop.on_process_messages = [&] {
      if (desktop.process_messages_calls == stop) request_interrupt();
    };
    EXPECT_EQ(failure_number([&] { pre_process(object, std::u16string(kPage)); }), 18);
    EXPECT_EQ(object.GetFileCount(), 0);
    EXPECT_EQ(files.all_files(), std::vector<std::u16string>{std::u16string(kPage)}) << "stopped at event " << stop;
    desktop.on_process_messages = {};
    ASSERT_EQ(pre_process(object, std::u16string(kPage)), 0);
  }
}

TEST_F(PreProcess, RepairsAreReportedWithTheirPlace) {
  files.put(u"C:\\WORK\\page.htm", "<p>\r\nA > B</p>\r\n");
  K19FPWObj object;
  std::vector<Message> messages;
  object.observe({{}, [&](const Message& message) { messages.push_back(message); }});
  ASSERT_EQ(pre_process(object, u"C:\\WORK\\page.htm"), 0);
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0].number, 3011);
  EXPECT_EQ(messages[0].line, 2);
  EXPECT_EQ(messages[0].column, 3);
}

constexpr std::u16string_view kMif = u"C:\\WORK\\manual.mif";
constexpr std::string_view kMifText =
    "<MIFFile 7.00>\r\n<TextFlow\r\n <Para\r\n  <ParaLine\r\n   <Marker\r\n    <MTypeName `Index'>\r\n"
    "    <MText `first entry'>\r\n   > # end of Marker\r\n   <String `Text'>\r\n  >\r\n >\r\n>\r\n";

TEST_F(PreProcess, MifGivesTheDocumentAndItsThreeSideFiles) {
  files.put(kMif, kMifText);
  K19FPWObj object;
  ASSERT_EQ(pre_process(object, std::u16string(kMif)), 0);
  EXPECT_EQ(file_list(object), (std::vector<std::u16string>{std::u16string(kMif), u"C:\\WORK\\KAVO_ix.mif",
                                                            u"C:\\WORK\\KAVO_xr.mif", u"C:\\WORK\\KAVO_va.mif"}));
  EXPECT_EQ(types_of(object), (std::vector<std::u16string>{u"5", u"5", u"5", u"5"}));
  EXPECT_EQ(files.get(u"C:\\WORK\\manual.mif.kavo.bak"), kMifText);
}

TEST_F(PreProcess, MifBackupReplacesAnOlderOne) {
  files.put(kMif, kMifText);
  files.put(u"C:\\WORK\\manual.mif.kavo.bak", "older");
  K19FPWObj object;
  ASSERT_EQ(pre_process(object, std::u16string(kMif)), 0);
  EXPECT_EQ(files.get(u"C:\\WORK\\manual.mif.kavo.bak"), kMifText);
}

// The document can be copied once but not read again.
class ReadableOnce : public MemoryFiles {
 public:
  std::unique_ptr<File> open(std::u16string_view path, Access access) override {
    if (access == Access::kRead && path == kMif && ++opened > 1)
      throw failure(FailureNumber::kPermissionDenied, u"Permission denied");
    return MemoryFiles::open(path, access);
  }
  int opened = 0;
};

TEST_F(PreProcess, MifWhoseExtractFailsLeavesItsBackupAndReturns4) {
  ReadableOnce once;
  ports().files = &once;
  once.put(kMif, kMifText);
  K19FPWObj object;
  EXPECT_EQ(pre_process(object, std::u16string(kMif)), 4);
  EXPECT_EQ(object.GetFileCount(), 0);
  EXPECT_EQ(once.all_files(), (std::vector<std::u16string>{std::u16string(kMif), u"C:\\WORK\\manual.mif.kavo.bak"}));
  EXPECT_EQ(once.get(u"C:\\WORK\\manual.mif.kavo.bak"), kMifText);
}

TEST_F(PreProcess, MifWhoseSideFilesCannotBeWrittenLeavesItsBackupAndReturns4) {
  for (const std::u16string_view side : {u"KAVO_ix.mif", u"KAVO_xr.mif", u"KAVO_va.mif"}) {
    files = MemoryFiles();
    files.put(kMif, kMifText);
    files.add_folder(u"C:\\WORK\\" + std::u16string(side));
    K19FPWObj object;
    EXPECT_EQ(pre_process(object, std::u16string(kMif)), 4);
    EXPECT_EQ(object.GetFileCount(), 0);
    EXPECT_EQ(files.all_files(), (std::vector<std::u16string>{std::u16string(kMif), u"C:\\WORK\\manual.mif.kavo.bak"}));
  }
}

TEST_F(PreProcess, MissingMifReturns4AndLeavesNothing) {
  K19FPWObj object;
  EXPECT_EQ(pre_process(object, std::u16string(kMif)), 4);
  EXPECT_EQ(object.GetFileCount(), 0);
  EXPECT_TRUE(files.all_files().empty());
}

}  // namespace
}  // namespace kavo::test
