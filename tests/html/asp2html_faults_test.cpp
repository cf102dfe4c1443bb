// Every file operation fails in turn: the documents are then all old or all new, and nothing else is left.
#include <gtest/gtest.h>

#include <map>

#include "asp2html_run.h"
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

  // A file that nobody needs any more stays behind when it cannot be removed.
  static Contents without_leftovers(Contents all) {
    std::erase_if(all, [](const auto& entry) { return entry.first.find(u".kavo-") != entry.first.npos; });
    return all;
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
            const Contents left = contents();
            const Contents documents = without_leftovers(left);
            leftovers += left.size() - documents.size();
            // With every further operation failing too, an old file that was set aside cannot be put back.
            if (!lasting || result == 0) {
              EXPECT_EQ(documents, result == 0 ? end : start) << "fault " << fault;
            } else {
              for (const auto& [path, bytes] : start) {
                const auto aside = left.find(path + u".kavo-old");
                EXPECT_EQ(aside == left.end() ? files.get(path) : aside->second, bytes) << "lasting fault " << fault;
              }
            }
            EXPECT_EQ(converter.ErrorList().size(), result == 0 ? 1u : 2u);
            leftovers += contents().size() - left.size();
          });
      EXPECT_GT(faults, 8u);
      ports().files = &files;
    }
  }

  std::size_t leftovers = 0;
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
  EXPECT_EQ(leftovers, 0u);
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
