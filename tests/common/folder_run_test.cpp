#include "common/folder_run.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "common/clsCommon.h"
#include "common/clsGetTempFileName.h"
#include "common/path_parts.h"
#include "common/pending_file.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "support/failures.h"
#include "support/faulty_files.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

constexpr std::u16string_view kPage = u"C:\\WORK\\page.htm";
constexpr std::u16string_view kScript = u"C:\\WORK\\page.scr";

void write(std::u16string_view path, std::string_view bytes) {
  PendingFile file(path);
  file.write(bytes);
  file.commit();
}

std::string read(std::u16string_view path) {
  const auto file = ports().files->open(path, Access::kRead);
  std::string bytes(static_cast<std::size_t>(file->size()), '\0');
  bytes.resize(file->read(bytes));
  return bytes;
}

using Names = std::vector<std::u16string>;

class FolderRunTest : public PortsFixture {
 protected:
  FolderRunTest() { files.put(kPage, "old page"); }
  FolderRun::Report report() {
    return [this](const std::u16string& message) { reports.push_back(message); };
  }
  Names reports;
};

TEST_F(FolderRunTest, NothingRealChangesBeforeTheCommit) {
  {
    FolderRun run(kPage);
    write(kPage, "new page");
    write(kScript, "new script");
    EXPECT_EQ(read(kPage), "new page");
    EXPECT_EQ(files.get(kPage), "old page");
    EXPECT_FALSE(files.has(kScript));
    EXPECT_TRUE(clsCommon().FileExists(kScript));
    EXPECT_EQ(ports().files->find(u"C:\\WORK\\*"), (Names{u"page.htm", u"page.scr"}));
    run.commit();
    EXPECT_EQ(files.get(kPage), "new page");
  }
  EXPECT_EQ(files.get(kScript), "new script");
  EXPECT_EQ(files.all_files(), (Names{std::u16string(kPage), std::u16string(kScript)}));
}

TEST_F(FolderRunTest, WhatIsAppendedChangesNoRealFile) {
  {
    FolderRun run(kPage);
    ports().files->open(kPage, Access::kAppend)->write(" and more");
    ports().files->open(kScript, Access::kAppend)->write("new script");
    EXPECT_EQ(read(kPage), "old page and more");
    EXPECT_EQ(files.get(kPage), "old page");
    EXPECT_FALSE(files.has(kScript));
    run.commit();
  }
  EXPECT_EQ(files.get(kPage), "old page and more");
  EXPECT_EQ(files.get(kScript), "new script");
}

TEST_F(FolderRunTest, WithoutCommitEverythingIsAsItWas) {
  {
    FolderRun run(kPage);
    write(kPage, "new page");
    write(kScript, "new script");
    ports().files->remove_file(kPage);
    EXPECT_FALSE(ports().files->info(kPage));
  }
  EXPECT_EQ(files.get(kPage), "old page");
  EXPECT_EQ(files.all_files(), (Names{std::u16string(kPage)}));
}

TEST_F(FolderRunTest, RemovedAndRenamedFiles) {
  files.put(kScript, "script");
  FolderRun run(kPage);
  ports().files->remove_file(kScript);
  ports().files->rename_file(kPage, u"C:\\WORK\\other.htm");
  EXPECT_EQ(failure_number([] { ports().files->open(kPage, Access::kRead); }), 53);
  EXPECT_EQ(failure_number([] { ports().files->remove_file(kPage); }), 53);
  EXPECT_EQ(ports().files->find(u"C:\\WORK\\*"), (Names{u"other.htm"}));
  run.commit();
  EXPECT_EQ(files.get(u"C:\\WORK\\other.htm"), "old page");
  EXPECT_FALSE(files.has(kPage));
  EXPECT_FALSE(files.has(kScript));
}

TEST_F(FolderRunTest, APartThatIsNotCommittedGoesAlone) {
  {
    FolderRun run(kPage);
    write(kPage, "first");
    {
      FolderRun part(kPage);
      write(kPage, "second");
      write(kScript, "script");
    }
    EXPECT_EQ(read(kPage), "first");
    {
      FolderRun part(kPage);
      write(kScript, "script");
      part.commit();
    }
    EXPECT_FALSE(files.has(kScript)) << "it takes place with the outer run";
    run.commit();
  }
  EXPECT_EQ(files.get(kPage), "first");
  EXPECT_EQ(files.get(kScript), "script");
  EXPECT_EQ(files.all_files().size(), 2u);
}

TEST_F(FolderRunTest, FilesOfOtherPrograms) {
  FolderRun run(kPage);
  write(kPage, "prepared");
  const std::u16string seen = run.path_to_read(kPage);
  EXPECT_TRUE(seen.ends_with(u"\\page.htm")) << "they learn the right name";
  EXPECT_EQ(files.get(seen), "prepared");
  EXPECT_EQ(run.path_to_read(u"C:\\WORK\\other.txt"), u"C:\\WORK\\other.txt");
  const std::u16string made = run.path_to_write(kScript);
  EXPECT_FALSE(ports().files->info(kScript));
  files.put(made, "theirs");
  EXPECT_EQ(read(kScript), "theirs");
  run.path_to_write(u"C:\\WORK\\never_made.txt");
  files.add_folder(u"C:\\WORK\\folder");
  EXPECT_EQ(failure_number([&] { run.path_to_write(u"C:\\WORK\\folder"); }), 75);
  run.commit();
  EXPECT_EQ(files.get(kScript), "theirs");
  EXPECT_FALSE(files.has(u"C:\\WORK\\never_made.txt"));
}

TEST_F(FolderRunTest, AFileIsWrittenOnceInTheScratchFolderAndSeenWhenItIsComplete) {
  FolderRun run(kPage);
  {
    PendingFile given_up(kPage);
    given_up.write("half");
  }
  PendingFile page(kPage);
  EXPECT_TRUE(page.temporary_path().starts_with(u"C:\\WORK\\.kavo-run\\"));
  EXPECT_TRUE(page.temporary_path().ends_with(u"\\page.htm"));
  page.write("new page");
  page.complete();
  EXPECT_EQ(read(kPage), "old page");
  page.commit();
  EXPECT_EQ(run.path_to_read(kPage), page.temporary_path());
  EXPECT_EQ(read(kPage), "new page");
  EXPECT_EQ(failure_number([] { PendingFile lost(u"C:\\NOWHERE\\page.htm"); }), 76);
}

// Filters that write for a run are given a name in its scratch folder.
TEST_F(FolderRunTest, AFileThatIsInTheScratchFolderAnywayIsWrittenUnderItsOwnNameOnce) {
  FolderRun run(kPage);
  const std::u16string made = run.path_to_write(kScript);
  {
    PendingFile given_up(made);
    EXPECT_EQ(given_up.temporary_path(), made);
    given_up.write("half");
  }
  EXPECT_FALSE(ports().files->info(kScript));
  write(made, "script");
  EXPECT_EQ(read(kScript), "script");
  PendingFile second(made);
  second.write("second");
  second.complete();
  EXPECT_EQ(read(kScript), "script") << "the first one stays until the second is complete";
  second.commit();
  EXPECT_EQ(read(kScript), "second");
}

TEST_F(FolderRunTest, WhatOtherProgramsWroteInTheScratchFolderIsNotReplaced) {
  FolderRun run(kPage);
  const std::u16string theirs = parent_of(run.path_to_write(kPage)) + u"\\page.scr";
  files.put(theirs, "theirs");
  write(kScript, "ours");
  EXPECT_EQ(read(kScript), "ours");
  EXPECT_EQ(files.get(theirs), "theirs");
}

TEST_F(FolderRunTest, ABorrowedNameIsAsItWasWhateverBecomesOfTheRun) {
  files.put(u"C:\\WORK\\Side.mif", "somebody's");
  for (const bool commits : {false, true}) {
    {
      FolderRun run(kPage);
      run.borrow(u"C:\\WORK\\side.MIF");
      run.borrow(u"C:\\WORK\\other.otf");
      EXPECT_FALSE(files.has(u"C:\\WORK\\Side.mif"));
      write(u"C:\\WORK\\side.MIF", "the run's");
      EXPECT_EQ(files.get(u"C:\\WORK\\side.MIF"), "the run's") << "other programs see it";
      write(u"C:\\WORK\\other.otf", "the run's");
      write(kPage, "new page");
      if (commits) run.commit();
    }
    EXPECT_EQ(files.get(u"C:\\WORK\\Side.mif"), "somebody's");
    EXPECT_EQ(files.get(kPage), commits ? "new page" : "old page");
    EXPECT_EQ(files.all_files(), (Names{std::u16string(kPage), u"C:\\WORK\\Side.mif"})) << "with its letters";
  }
}

TEST_F(FolderRunTest, AReadOnlyDocumentStaysReadOnly) {
  files.set_read_only(kPage, true);
  {
    FolderRun run(kPage);
    write(kPage, "new page");
    write(kScript, "script");
    run.commit();
  }
  EXPECT_EQ(files.get(kPage), "new page");
  EXPECT_TRUE(files.info(kPage)->is_read_only);
  {
    FolderRun run(kPage);
    clsCommon().DeleteFile(kPage);
    EXPECT_FALSE(ports().files->info(kPage));
  }
  EXPECT_TRUE(files.info(kPage)->is_read_only);
}

TEST_F(FolderRunTest, FilesInTheTemporaryFolderGoWithTheRun) {
  {
    FolderRun run(kPage);
    ports().files->open(u"C:\\TEMP\\MOR1234.TMP", Access::kCreateNew)->close();
    EXPECT_TRUE(files.has(u"C:\\TEMP\\MOR1234.TMP"));
    run.commit();
  }
  EXPECT_EQ(files.all_files().size(), 1u);
}

// A killed run's work folder is removed by the next one, with the journal that would know of temporary files.
TEST_F(FolderRunTest, ARunInAWorkFolderHasItsTemporaryFilesThere) {
  const std::u16string page = u"C:\\TEMP\\kavo-0123abcd\\plain\\page.htm";
  files.put(page, "a copy");
  {
    FolderRun run(page);
    const std::u16string name = clsGetTempFileName().Filename();
    EXPECT_TRUE(name.starts_with(u"C:\\TEMP\\kavo-0123abcd\\MOR")) << to_utf8(name);
    PendingFile file(page, name);
    file.write("repaired");
    file.finish();
    for (const std::u16string& each : files.all_files())
      EXPECT_TRUE(each == kPage || each.starts_with(u"C:\\TEMP\\kavo-0123abcd\\")) << to_utf8(each);
    ASSERT_TRUE(clsCommon().MoveFile(name, page));
    run.commit();
  }
  EXPECT_EQ(files.get(page), "repaired");
  EXPECT_EQ(files.all_files(), (Names{page, std::u16string(kPage)}));
}

TEST_F(FolderRunTest, ADocumentThatWasSetAsideAndNeverReplacedComesBack) {
  files.remove_file(kPage);
  files.put(u"C:\\WORK\\page.htm.kavo-old", "the only copy");
  { FolderRun run(kPage, report()); }
  EXPECT_EQ(files.get(kPage), "the only copy");
  EXPECT_EQ(reports.size(), 1u);
  files.put(u"C:\\WORK\\page.htm.kavo-old", "another");
  { FolderRun run(kPage, report()); }
  EXPECT_EQ(files.get(kPage), "the only copy") << "a document that is there stays";
  EXPECT_TRUE(files.has(u"C:\\WORK\\page.htm.kavo-old"));
}

TEST_F(FolderRunTest, AFolderThatIsNotThere) {
  EXPECT_EQ(failure_number([] { FolderRun run(u"C:\\nowhere\\page.htm"); }), 76);
}

TEST_F(FolderRunTest, AFolderWithoutARunIsSettled) {
  for (const auto* folder : {u"C:\\WORK", u"C:\\nowhere"}) FolderRun::settle(folder, report()).reset();
  EXPECT_TRUE(reports.empty());
}

// Another run has the folder and does not end.
class KeptFolder final : public FaultyFiles {
 public:
  using FaultyFiles::FaultyFiles;
  std::unique_ptr<FileLock> lock(std::u16string_view) override {
    throw failure(FailureNumber::kPermissionDenied, u"in use by another run");
  }
};

TEST_F(FolderRunTest, AFolderThatAnotherRunKeepsIsGivenUpAfterAMinute) {
  KeptFolder kept(files);
  ports().files = &kept;
  const auto thrown = failure_of([&] { FolderRun run(kPage, report()); });
  ASSERT_TRUE(thrown);
  EXPECT_EQ(thrown->number(), 70);
  EXPECT_TRUE(thrown->description().find(u"cannot be locked (in use by another run)") != std::u16string::npos);
  EXPECT_EQ(reports.size(), 1u) << "the wait is said once";
  EXPECT_NEAR(clock.slept, 60, 1);
  clock.slept = 0;
  request_interrupt();
  EXPECT_THROW(FolderRun(kPage, report()), interruption);
  EXPECT_EQ(clock.slept, 0);
  EXPECT_EQ(files.all_files(), (Names{std::u16string(kPage)}));
}

TEST_F(FolderRunTest, AFolderOfTheScratchFoldersNameIsLeftAlone) {
  files.put(u"C:\\WORK\\.kavo-run\\mine.txt", "mine");
  EXPECT_EQ(failure_number([] { FolderRun run(kPage); }), 58);
  EXPECT_EQ(files.get(u"C:\\WORK\\.kavo-run\\mine.txt"), "mine");
}

TEST_F(FolderRunTest, MessagesSpeakOfTheFilesThatTheUserKnows) {
  EXPECT_EQ(FolderRun::without_scratch_folder(u"C:\\a\\.kavo-run\\1\\b.mif: bad; /x/.kavo-run/12/y"),
            u"C:\\a\\b.mif: bad; /x/y");
  EXPECT_EQ(FolderRun::without_scratch_folder(u"/x/.kavo-run could not be removed"),
            u"/x/.kavo-run could not be removed");
}

// Replaces, removes, borrows and makes files, and uses a temporary file.
void work(FolderRun& run) {
  ports().files->open(u"C:\\TEMP\\MOR1234.TMP", Access::kCreateNew)->close();
  run.borrow(u"C:\\WORK\\side.mif");
  write(u"C:\\WORK\\side.mif", "the run's");
  write(kPage, "new page");
  write(kScript, "new script");
  write(u"C:\\WORK\\fresh.txt", "fresh");
  ports().files->remove_file(u"C:\\WORK\\gone.txt");
  run.commit();
}

class BrokenRun : public FolderRunTest {
 protected:
  void put_files() {
    for (const std::u16string& path : files.all_files()) {
      files.set_read_only(path, false);
      files.remove_file(path);
    }
    for (const auto* folder : {u"C:\\WORK\\.kavo-run\\1", u"C:\\WORK\\.kavo-run\\2", u"C:\\WORK\\.kavo-run"})
      if (files.info(folder)) files.remove_folder(folder);
    files.put(kPage, "old page");
    files.put(kScript, "old script");
    files.put(u"C:\\WORK\\gone.txt", "gone");
    files.put(u"C:\\WORK\\side.mif", "somebody's");
  }
  // A run with a fault: whether the fault happened. What the run failed with joins the reports.
  enum class Disk { kKeepsAll, kLosesUnflushed };
  bool run_broken(const FaultyFiles::Fault& fault, Disk disk = Disk::kKeepsAll) {
    FaultyFiles faulty(files);
    faulty.set_fault(fault);
    ports().files = &faulty;
    try {
      FolderRun run(kPage, report());
      work(run);
    } catch (const failure& reason) {
      reports.push_back(reason.description());
    }
    ports().files = &files;
    if (disk == Disk::kLosesUnflushed) faulty.lose_unflushed();
    return faulty.fault_happened();
  }
  bool is_old() const {
    return files.get(kPage) == "old page" && files.get(kScript) == "old script" && files.has(u"C:\\WORK\\gone.txt") &&
           files.get(u"C:\\WORK\\side.mif") == "somebody's" && files.all_files().size() == 4;
  }
  bool is_new() const {
    return files.get(kPage) == "new page" && files.get(kScript) == "new script" &&
           files.get(u"C:\\WORK\\fresh.txt") == "fresh" && files.get(u"C:\\WORK\\side.mif") == "somebody's" &&
           files.all_files().size() == 4;
  }
};

TEST_F(BrokenRun, AFailureAtEveryStepLeavesTheOldSetOrTheNewOne) {
  for (const bool lasting : {false, true}) {
    FaultyFiles faulty(files);
    bool finished = false;
    const std::size_t count = for_each_fault(
        faulty, {.lasting = lasting},
        [&](std::size_t) {
          put_files();
          ports().files = &faulty;
          finished = false;
          reports.clear();
          try {
            FolderRun run(kPage, report());
            work(run);
            finished = true;
          } catch (const failure&) {
          }
          ports().files = &files;
        },
        [&](std::size_t number) {
          if (files.info(u"C:\\WORK\\.kavo-run")) {
            EXPECT_TRUE(lasting) << number;
            EXPECT_FALSE(reports.empty()) << "left without a word: " << number;
            FolderRun next(kPage);
          }
          EXPECT_TRUE(finished ? is_new() : is_old() || (lasting && is_new())) << number;
        });
    EXPECT_GT(count, 40u);
  }
}

TEST_F(BrokenRun, TheNextRunFinishesOrUndoesWhatAKilledOneBegan) {
  std::size_t finished = 0, undone = 0;
  for (std::size_t number = 1;; ++number) {
    put_files();
    const bool happened = run_broken({.operation = number, .lasting = true, .kills = true});
    const bool is_left = files.info(u"C:\\WORK\\.kavo-run").has_value();
    reports.clear();
    if (number % 2 == 0)
      FolderRun::settle(u"C:\\WORK\\", report()).reset();
    else
      FolderRun next(kPage, report());
    EXPECT_TRUE(is_old() || is_new()) << number;
    EXPECT_EQ(reports.size(), is_left ? 1u : 0u) << number;
    (is_new() ? finished : undone) += 1;
    if (!happened) break;
    EXPECT_FALSE(files.info(u"C:\\WORK\\.kavo-run")) << number;
  }
  EXPECT_GT(finished, 3u);
  EXPECT_GT(undone, 20u);
}

TEST_F(BrokenRun, TheNextRunFinishesOrUndoesWhatAPowerCutBrokeOff) {
  std::size_t finished = 0, undone = 0;
  for (std::size_t number = 1;; ++number) {
    put_files();
    const bool happened = run_broken({.operation = number, .lasting = true, .kills = true}, Disk::kLosesUnflushed);
    EXPECT_NO_THROW(FolderRun next(kPage)) << number;
    // The run does not wait for the disk for a temporary file, so one may stay after a power cut.
    if (files.has(u"C:\\TEMP\\MOR1234.TMP")) files.remove_file(u"C:\\TEMP\\MOR1234.TMP");
    EXPECT_TRUE(is_old() || is_new()) << number;
    (is_new() ? finished : undone) += 1;
    if (!happened) break;
  }
  EXPECT_GT(finished, 3u);
  EXPECT_GT(undone, 20u);
}

// The journal of such a run is not forced onto the disk before the files take their names.
TEST_F(BrokenRun, APowerCutLeavesAllOfNewFilesOrNone) {
  const std::u16string_view names[] = {u"C:\\WORK\\a.tud", u"C:\\WORK\\a.tud.skl", u"C:\\WORK\\b.tud"};
  std::size_t finished = 0, undone = 0;
  for (std::size_t number = 1;; ++number) {
    put_files();
    FaultyFiles faulty(files);
    faulty.set_fault({.operation = number, .lasting = true, .kills = true});
    ports().files = &faulty;
    try {
      FolderRun run(kPage);
      run.note_temporary_file(u"C:\\TEMP\\note.tmp");
      for (const std::u16string_view name : names) write(name, "all of it");
      run.commit();
    } catch (const failure&) {
    }
    ports().files = &files;
    faulty.lose_unflushed();
    EXPECT_NO_THROW(FolderRun next(kPage)) << number;
    const std::size_t there = static_cast<std::size_t>(
        std::ranges::count_if(names, [&](std::u16string_view name) { return files.has(name); }));
    EXPECT_TRUE(there == 0 || there == std::size(names)) << number;
    for (const std::u16string_view name : names)
      if (files.has(name)) {
        EXPECT_EQ(files.get(name), "all of it") << number;
      }
    EXPECT_FALSE(files.info(u"C:\\WORK\\.kavo-run")) << number;
    (there == 0 ? undone : finished) += 1;
    if (!faulty.fault_happened()) break;
  }
  EXPECT_GT(finished, 3u);
  EXPECT_GT(undone, 20u);
}

TEST_F(BrokenRun, ARunThatFailsWhileItClearsUpSaysWhatItDid) {
  const auto is_left = [&] { return files.info(u"C:\\WORK\\.kavo-run").has_value(); };
  std::size_t cleared = 0, left = 0;
  for (std::size_t killed_at = 1; killed_at < 80; killed_at += 3)
    for (std::size_t failing = 1;; ++failing) {
      put_files();
      run_broken({.operation = killed_at, .lasting = true, .kills = true});
      if (!is_left()) break;
      reports.clear();
      const bool failed = run_broken({.operation = failing});
      const auto tells = [](const std::u16string& text) { return text.find(u"was stopped") != text.npos; };
      // The first operation looks whether there is anything.
      EXPECT_TRUE(failing == 1 || std::ranges::any_of(reports, tells)) << killed_at << ' ' << failing;
      (is_left() ? left : cleared) += 1;
      const bool clears = is_left();
      reports.clear();
      { FolderRun next(kPage, report()); }
      EXPECT_EQ(std::ranges::any_of(reports, tells), clears) << killed_at << ' ' << failing;
      EXPECT_TRUE(is_old() || is_new()) << killed_at << ' ' << failing;
      if (!failed) break;
    }
  EXPECT_GT(left, 50u);
  EXPECT_GT(cleared, 50u);
}

}  // namespace
}  // namespace kavo::test
