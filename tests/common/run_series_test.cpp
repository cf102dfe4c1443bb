#include "common/run_series.h"

#include <gtest/gtest.h>


#include "common/folder_run.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "platform/failure.h"
#include "platform/formatted.h"
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
  {
    const RunSeries series(report());
    prepare(pages[0]);
    const auto folder = files.identity(kPlace);
    ASSERT_TRUE(folder);
    EXPECT_TRUE(is_idle(files, std::u16string(kScratch)));
    prepare(pages[1]);
    EXPECT_EQ(files.identity(kPlace), folder);
    EXPECT_FALSE(files.info(u"C:\\WORK\\.kavo-run\\2"));
  }
  EXPECT_TRUE(is_new(pages[0]) && is_new(pages[1]));
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
  EXPECT_TRUE(is_idle(files, std::u16string(kScratch)));
  EXPECT_TRUE(is_old(pages[0]));
}

TEST_F(RunSeriesTest, ARunThatWritesNothingMakesNoFolder) {
  put_pages();
  const RunSeries series(report());
  { FolderRun run(pages[0], report()); }
  EXPECT_FALSE(is_there());
}

TEST_F(RunSeriesTest, TheFolderIsRemovedWhenTheSeriesGoesOnElsewhere) {
  put_pages();
  files.put(u"C:\\TEMP\\kavo-0123abcd\\d.htm", "old page");
  const RunSeries series(report());
  prepare(pages[0]);
  EXPECT_TRUE(is_there());
  { FolderRun run(u"C:\\TEMP\\kavo-0123abcd\\d.htm", report()); }
  EXPECT_FALSE(is_there());
}

TEST_F(RunSeriesTest, AnotherProgramMayRemoveTheFolderBetweenTwoRuns) {
  put_pages();
  {
    const RunSeries series(report());
    prepare(pages[0]);
    FolderRun::settle(u"C:\\WORK\\", report()).reset();
    EXPECT_FALSE(is_there());
    prepare(pages[1]);
  }
  EXPECT_TRUE(is_new(pages[1]));
  EXPECT_FALSE(is_there());
  EXPECT_EQ(reports, Names());
}

TEST_F(RunSeriesTest, ARunOutsideOfASeriesRemovesAnIdleFolderWithoutAWord) {
  put_pages();
  files.put(kJournal, "");
  files.add_folder(kPlace);
  prepare(pages[0]);
  EXPECT_TRUE(is_new(pages[0]));
  EXPECT_FALSE(is_there());
  EXPECT_EQ(reports, Names());
}

TEST_F(RunSeriesTest, AFolderThatHoldsAFileIsNotIdle) {
  const std::u16string scratch(kScratch);
  files.put(kJournal, "");
  files.add_folder(kPlace);
  ASSERT_TRUE(is_idle(files, scratch));
  for (const auto* path : {u"C:\\WORK\\.kavo-run\\mine.txt", u"C:\\WORK\\.kavo-run\\1\\mine.txt",
                           u"C:\\WORK\\.kavo-run\\2\\mine.txt", u"C:\\WORK\\.kavo-run\\journal.placing"}) {
    files.put(path, "mine");
    EXPECT_FALSE(is_idle(files, scratch)) << to_utf8(path);
    files.remove_file(path);
    if (files.info(u"C:\\WORK\\.kavo-run\\2")) files.remove_folder(u"C:\\WORK\\.kavo-run\\2");
    EXPECT_TRUE(is_idle(files, scratch)) << to_utf8(path);
  }
  files.put(kJournal, "something");
  EXPECT_FALSE(is_idle(files, scratch));
}

TEST_F(RunSeriesTest, AFolderOfTheUsersIsRefusedAndStays) {
  put_pages();
  const RunSeries series(report());
  prepare(pages[0]);
  files.remove_file(kJournal);
  files.put(u"C:\\WORK\\.kavo-run\\1\\mine.txt", "mine");
  EXPECT_THROW(prepare(pages[1]), failure);
  EXPECT_EQ(files.get(u"C:\\WORK\\.kavo-run\\1\\mine.txt"), "mine");
  EXPECT_TRUE(is_old(pages[1]));
}

// Files whose folders another run locks from some moment on.
class LockedFiles final : public FaultyFiles {
 public:
  using FaultyFiles::FaultyFiles;
  std::unique_ptr<FileLock> lock(std::u16string_view path) override {
    if (is_locked) throw failure(FailureNumber::kPermissionDenied, u"in use by another run");
    return FaultyFiles::lock(path);
  }
  bool is_locked = false;
};

TEST_F(RunSeriesTest, TheFolderStaysWhileAnotherRunHasTheLock) {
  put_pages();
  LockedFiles locked(files);
  {
    ports().files = &locked;
    const RunSeries series(report());
    prepare(pages[0]);
    locked.is_locked = true;
  }
  ports().files = &files;
  EXPECT_TRUE(is_there());
  EXPECT_EQ(reports, Names());
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
