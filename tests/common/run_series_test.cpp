#include "common/run_series.h"

#include <gtest/gtest.h>

#include "common/folder_run.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "common/run_journal.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "support/faulty_files.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

constexpr std::u16string_view kScratch = u"C:\\WORK\\.kavo-run";
constexpr std::u16string_view kJournal = u"C:\\WORK\\.kavo-run\\journal";
constexpr std::u16string_view kPlace = u"C:\\WORK\\.kavo-run\\1";

void write(std::u16string_view path, std::string_view bytes) {
  PendingFile file(path);
  file.write(bytes);
  file.commit();
}

using Names = std::vector<std::u16string>;

// Counts how often a folder is locked.
class LockedFiles final : public FaultyFiles {
 public:
  using FaultyFiles::FaultyFiles;
  std::unique_ptr<FileLock> lock(std::u16string_view path) override {
    ++locks;
    return FaultyFiles::lock(path);
  }
  int locks = 0;
};

class RunSeriesTest : public PortsFixture {
 protected:
  RunReport report() {
    return [this](const std::u16string& message) { reports.push_back(message); };
  }
  // One run that replaces the page, makes its script and writes the page twice, so that there is a second numbered
  // folder.
  void prepare(const std::u16string& page) {
    FolderRun run(page, report());
    write(page, "half of a page");
    write(page, "new page");
    write(script_of(page), "new script");
    run.commit();
  }
  static std::u16string script_of(const std::u16string& page) { return without_extension(page) + u".scr"; }
  bool is_there() { return files.info(kScratch).has_value(); }
  bool is_empty() {
    return files.find(u"C:\\WORK\\.kavo-run\\*") == Names{u"1", u"journal"} &&
           files.find(u"C:\\WORK\\.kavo-run\\1\\*").empty() && files.get(kJournal).empty();
  }
  bool is_new(const std::u16string& page) const {
    return files.get(page) == "new page" && files.has(script_of(page)) && files.get(script_of(page)) == "new script";
  }
  bool is_old(const std::u16string& page) const { return files.get(page) == "old page" && !files.has(script_of(page)); }
  void put_pages() {
    for (const std::u16string& path : files.all_files()) files.remove_file(path);
    if (is_there()) files.remove_folder(kScratch);
    for (const std::u16string& page : pages) files.put(page, "old page");
  }

  const Names pages = {u"C:\\WORK\\a.htm", u"C:\\WORK\\b.htm", u"C:\\WORK\\c.htm"};
  Names reports;
};

TEST_F(RunSeriesTest, TheNextRunTakesOverTheFolderOfTheLastAndNothingIsLeftAtTheEnd) {
  put_pages();
  LockedFiles locked(files);
  ports().files = &locked;
  {
    const RunSeries series(report());
    prepare(pages[0]);
    const auto folder = files.identity(kPlace);
    ASSERT_TRUE(folder);
    EXPECT_TRUE(is_empty());
    prepare(pages[1]);
    EXPECT_EQ(files.identity(kPlace), folder);
    EXPECT_TRUE(is_empty());
  }
  ports().files = &files;
  EXPECT_TRUE(is_new(pages[0]) && is_new(pages[1]));
  EXPECT_EQ(locked.locks, 1);
  EXPECT_FALSE(is_there());
  EXPECT_EQ(reports, Names());
}

TEST_F(RunSeriesTest, ARunThatFailsLeavesNothingOfItsFilesInTheFolder) {
  put_pages();
  const RunSeries series(report());
  {
    FolderRun run(pages[0], report());
    write(pages[0], "half of a page");
  }
  EXPECT_TRUE(is_empty());
  EXPECT_TRUE(is_old(pages[0]));
}

TEST_F(RunSeriesTest, ARunThatCannotBeginLeavesNothing) {
  put_pages();
  const RunSeries series(report());
  prepare(pages[0]);
  files.remove_file(pages[1]);
  files.put(pages[1] + u".kavo-old", "old page");
  FaultyFiles faulty(files);
  faulty.set_fault({.operation = 1, .counted = FaultyFiles::Counted::kMutating});
  ports().files = &faulty;
  EXPECT_THROW(FolderRun(pages[1], report()), failure);
  ports().files = &files;
  EXPECT_TRUE(is_empty());
  prepare(pages[1]);
  EXPECT_TRUE(is_new(pages[1]));
}

TEST_F(RunSeriesTest, ARunThatWritesNothingMakesNoFolder) {
  put_pages();
  const RunSeries series(report());
  { FolderRun run(pages[0], report()); }
  EXPECT_FALSE(is_there());
}

TEST_F(RunSeriesTest, TheFolderIsGivenUpWhenTheSeriesGoesOnElsewhere) {
  put_pages();
  files.put(u"C:\\TEMP\\kavo-0123abcd\\d.htm", "old page");
  const RunSeries series(report());
  prepare(pages[0]);
  EXPECT_TRUE(is_there());
  { FolderRun run(u"C:\\TEMP\\kavo-0123abcd\\d.htm", report()); }
  EXPECT_FALSE(is_there());
}

TEST_F(RunSeriesTest, TheFolderIsGivenUpBeforeItIsSettled) {
  put_pages();
  const RunSeries series(report());
  prepare(pages[0]);
  FolderRun::settle(u"C:\\WORK\\", report()).reset();
  EXPECT_FALSE(is_there());
  EXPECT_EQ(reports, Names());
}

TEST_F(RunSeriesTest, OthersGetAFolderEveryTwoSeconds) {
  put_pages();
  LockedFiles locked(files);
  ports().files = &locked;
  {
    const RunSeries series(report());
    prepare(pages[0]);
    clock.now += 1.9;
    prepare(pages[1]);
    EXPECT_EQ(clock.slept, 0);
    clock.now += 0.2;
    prepare(pages[2]);
    EXPECT_FALSE(is_there());
    EXPECT_GT(clock.slept, kBetweenLooks);
    clock.slept = 0;
    prepare(pages[0]);
    prepare(pages[1]);
    EXPECT_EQ(clock.slept, 0);
  }
  ports().files = &files;
  EXPECT_EQ(locked.locks, 2);
}

TEST_F(RunSeriesTest, AFolderThatSomebodyRemovesIsMadeAgain) {
  put_pages();
  {
    const RunSeries series(report());
    prepare(pages[0]);
    remove_tree(files, std::u16string(kScratch));
    prepare(pages[1]);
  }
  EXPECT_TRUE(is_new(pages[1]));
  EXPECT_FALSE(is_there());
  EXPECT_EQ(reports, Names());
}

TEST_F(RunSeriesTest, WhatASeriesLeavesThatIsKilledBetweenTwoRunsIsRemoved) {
  put_pages();
  files.put(kJournal, "");
  files.add_folder(kPlace);
  prepare(pages[0]);
  EXPECT_TRUE(is_new(pages[0]));
  EXPECT_FALSE(is_there());
  EXPECT_EQ(reports.size(), 1u);
}

TEST_F(RunSeriesTest, AFolderThatCannotBeRemovedIsReported) {
  put_pages();
  FaultyFiles faulty(files);
  {
    ports().files = &faulty;
    const RunSeries series(report());
    prepare(pages[0]);
    faulty.set_fault({.operation = 1, .lasting = true});
  }
  ports().files = &files;
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_NE(reports[0].find(u".kavo-run could not be removed"), std::u16string::npos) << to_utf8(reports[0]);
}

// Faults at every operation of a series of three runs.
class BrokenSeries : public RunSeriesTest {
 protected:
  // Whether the fault happened.
  bool run_broken(const FaultyFiles::Fault& fault, bool loses_unflushed = false) {
    put_pages();
    reports.clear();
    FaultyFiles faulty(files);
    faulty.set_fault(fault);
    ports().files = &faulty;
    {
      const RunSeries series(report());
      for (const std::u16string& page : pages) {
        try {
          prepare(page);
        } catch (const failure& reason) {
          reports.push_back(reason.description());
        }
      }
    }
    ports().files = &files;
    if (loses_unflushed) faulty.lose_unflushed();
    return faulty.fault_happened();
  }
  void expect_whole(std::size_t number) {
    for (const std::u16string& page : pages) EXPECT_TRUE(is_old(page) || is_new(page)) << number << ' ' << to_utf8(page);
    EXPECT_FALSE(is_there()) << number;
  }
};

TEST_F(BrokenSeries, AFailureLeavesEachSetOldOrNewAndNothingWithoutAWord) {
  for (const bool lasting : {false, true}) {
    std::size_t number = 1;
    for (; run_broken({.operation = number, .lasting = lasting}); ++number) {
      if (is_there()) {
        EXPECT_TRUE(lasting) << number;
        EXPECT_FALSE(reports.empty()) << "left without a word: " << number;
        FolderRun next(pages[0]);
      }
      expect_whole(number);
    }
    EXPECT_GT(number, 100u);
  }
}

TEST_F(BrokenSeries, TheNextSeriesFinishesOrUndoesWhatAKilledOneBegan) {
  std::size_t number = 1, begun = 0;
  for (; run_broken({.operation = number, .lasting = true, .kills = true}); ++number) {
    begun += is_there();
    reports.clear();
    {
      const RunSeries series(report());
      FolderRun next(pages[0], report());
    }
    expect_whole(number);
  }
  EXPECT_GT(begun, 80u);
}

TEST_F(BrokenSeries, TheNextRunFinishesOrUndoesWhatAPowerCutBrokeOff) {
  std::size_t number = 1;
  for (; run_broken({.operation = number, .lasting = true, .kills = true}, true); ++number) {
    EXPECT_NO_THROW(FolderRun next(pages[0])) << number;
    expect_whole(number);
  }
  EXPECT_GT(number, 100u);
}

}  // namespace
}  // namespace kavo::test
