// Every file operation fails in turn: the documents are then all old or all new, and nothing else is left.
#include <gtest/gtest.h>

#include <map>

#include "asp2html_run.h"
#include "common/folder_run.h"
#include "support/faulty_files.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

using Contents = std::map<std::u16string, std::string>;

class FaultsTest : public PortsFixture {
 protected:
  Contents contents() const {
    Contents all;
    for (const std::u16string& path : files.all_files()) all[path] = files.get(path);
    return all;
  }
  void fill(const Contents& start) {
    for (const std::u16string& path : files.all_files()) {
      files.set_read_only(path, false);
      files.remove_file(path);
    }
    for (const auto& [path, bytes] : start) files.put(path, bytes);
  }

  // Runs `call` from `start` with every fault; afterwards everything must be as at the start, or as after a whole run.
  void expect_old_or_new(const Contents& start, std::int32_t (clsASP2HTML::*call)(), const clsASP2HTML& prepared) {
    fill(start);
    clsASP2HTML whole = prepared;
    ASSERT_EQ((whole.*call)(), 0);
    const Contents end = contents();
    for (const bool lasting : {false, true}) {
      FaultyFiles faulty(files);
      ports().files = &faulty;
      std::int32_t result = 0;
      clsASP2HTML converter;
      const std::size_t faults = for_each_fault(
          faulty, {.number = FailureNumber::kDiskFull, .lasting = lasting, .partial_bytes = 3},
          [&](std::size_t) {
            fill(start);
            converter = prepared;
            result = (converter.*call)();
          },
          [&](std::size_t fault) {
            // What a run cannot clean up, because every further operation fails too, the next one does.
            if (files.info(u"C:\\WORK\\.kavo-run")) {
              EXPECT_TRUE(lasting) << "fault " << fault;
              ports().files = &files;
              { const FolderRun next(u"C:\\WORK\\x.asp"); }
              ports().files = &faulty;
            }
            const Contents documents = contents();
            if (result == 0 || (lasting && documents != start))
              EXPECT_EQ(documents, end) << "fault " << fault;
            else
              EXPECT_EQ(documents, start) << "fault " << fault;
            EXPECT_EQ(converter.ErrorList().size(), result == 0 ? 1u : 2u);
          });
      EXPECT_GT(faults, 8u);
      ports().files = &files;
    }
  }
};

TEST_F(FaultsTest, ProtectingReplacesBothFilesOrNone) {
  clsASP2HTML converter;
  converter.ASPFile(u"C:\\WORK\\x.asp");
  expect_old_or_new({{u"C:\\WORK\\x.asp", "a<%b%>"}, {u"C:\\WORK\\x_asp.htm", "old"}, {u"C:\\WORK\\x_asp.scr", "old"}},
                    &clsASP2HTML::ASP2HTML, converter);
}

TEST_F(FaultsTest, ProtectingMakesBothFilesOrNone) {
  clsASP2HTML converter;
  converter.ASPFile(u"C:\\WORK\\x.asp");
  expect_old_or_new({{u"C:\\WORK\\x.asp", "a<%b%>"}}, &clsASP2HTML::ASP2HTML, converter);
}

TEST_F(FaultsTest, RestoringReplacesThePageOrLeavesIt) {
  clsASP2HTML converter;
  converter.HTMFile(u"C:\\WORK\\x_asp.htm");
  expect_old_or_new(
      {{u"C:\\WORK\\x.asp", "old"},
       {u"C:\\WORK\\x_asp.htm", "a<!-- ASP2HTML 2 -->b<!-- ASP2HTML 1 -->"},
       {u"C:\\WORK\\x_asp.scr", "\r\n<!-- ASP2HTML 1 -->\r\n<%one%>\r\n<!-- ASP2HTML 2 -->\r\n<%two%>\r\n"}},
      &clsASP2HTML::HTML2ASP, converter);
}

}  // namespace
}  // namespace kavo::test
