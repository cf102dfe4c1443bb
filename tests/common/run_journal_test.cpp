#include "common/run_journal.h"

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "support/failures.h"
#include "support/faulty_files.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

constexpr std::u16string_view kFolder = u"C:\\WORK\\.kavo-run";
constexpr std::u16string_view kJournal = u"C:\\WORK\\.kavo-run\\journal";
constexpr std::u16string_view kPlacing = u"C:\\WORK\\.kavo-run\\journal.placing";

class RunJournalTest : public PortsFixture {
 protected:
  RunJournalTest() { files.put(u"C:\\WORK\\.kavo-run\\1\\page.htm", "new page"); }
  void add(const RunJournal& journal) { write_journal(files, std::u16string(kFolder), journal); }
  RunJournal read() { return read_journal(files, std::u16string(kFolder)); }

  const RunJournal working{RunJournal::State::kWorking, {{u"C:\\WORK\\page.bak", u""}}, {}, {u"C:\\TEMP\\MOR1.TMP"}};
  const RunJournal borrowing{RunJournal::State::kWorking,
                             {{u"C:\\WORK\\page.bak", u""}, {u"C:\\WORK\\page.scr", u"C:\\WORK\\.kavo-run\\1\\page.scr"}},
                             {},
                             {}};
  const RunJournal placing{RunJournal::State::kPlacing,
                           {},
                           {{u"C:\\WORK\\page.htm", u"C:\\WORK\\.kavo-run\\1\\page.htm", u""},
                            {u"C:\\WORK\\end", u"", u"C:\\WORK\\.kavo-run\\1\\end"}},
                           {u"C:\\TEMP\\MOR1.TMP"}};
};

TEST_F(RunJournalTest, WithoutOneThereIsNothingToRead) {
  EXPECT_EQ(failure_number([&] { read(); }), 53);
}

TEST_F(RunJournalTest, TheLastStateCounts) {
  add(working);
  EXPECT_EQ(read().borrowed.at(0).path, u"C:\\WORK\\page.bak");
  add(placing);
  const RunJournal last = read();
  EXPECT_EQ(last.state, RunJournal::State::kPlacing);
  EXPECT_TRUE(last.borrowed.empty());
  ASSERT_EQ(last.changes.size(), 2u);
  EXPECT_EQ(last.changes[0].scratch, u"C:\\WORK\\.kavo-run\\1\\page.htm");
  EXPECT_EQ(last.changes[1].path, u"C:\\WORK\\end");
  EXPECT_EQ(last.changes[1].aside, u"C:\\WORK\\.kavo-run\\1\\end");
  EXPECT_EQ(last.temporary_files, std::vector<std::u16string>{u"C:\\TEMP\\MOR1.TMP"});
}

TEST_F(RunJournalTest, AStateThatWasCutOffAtAnyByteLeavesTheOneBefore) {
  add(working);
  const std::string before = files.get(kJournal);
  add(borrowing);
  const std::string both = files.get(kJournal);
  for (std::size_t size = before.size(); size < both.size(); ++size) {
    files.put(kJournal, both.substr(0, size));
    ASSERT_EQ(read().borrowed.size(), 1u) << size;
  }
}

TEST_F(RunJournalTest, AStateBehindOneThatWasCutOffCounts) {
  add(working);
  const std::size_t before = files.get(kJournal).size();
  add(borrowing);
  const std::string both = files.get(kJournal);
  for (std::size_t size = before; size < both.size(); ++size) {
    files.put(kJournal, both.substr(0, size));
    add(borrowing);
    ASSERT_EQ(read().borrowed.size(), 2u) << size;
  }
}

// New files that are not on the disk yet must not be placed after a power cut.
TEST_F(RunJournalTest, NewFilesArePlacedOnlyWhenTheyAreOnTheDisk) {
  add(working);
  FaultyFiles faulty(files);
  faulty.set_fault({.operation = 4});  // opened, written, closed, flushed
  EXPECT_EQ(failure_number([&] { write_journal(faulty, std::u16string(kFolder), placing); }), 61);
  EXPECT_EQ(read().state, RunJournal::State::kWorking);
  EXPECT_EQ(read().borrowed.size(), 1u);
  add(placing);
  EXPECT_EQ(read().state, RunJournal::State::kPlacing);
  EXPECT_FALSE(files.has(kJournal));
}

TEST_F(RunJournalTest, ARunThatCouldNotPlaceItsFilesUndoes) {
  RunJournal undoing = placing;
  undoing.state = RunJournal::State::kUndoing;
  add(placing);
  const std::string before = files.get(kPlacing);
  add(undoing);
  EXPECT_EQ(read().state, RunJournal::State::kUndoing);
  const std::string both = files.get(kPlacing);
  for (std::size_t size = before.size(); size < both.size(); ++size) {
    files.put(kPlacing, both.substr(0, size));
    ASSERT_EQ(read().state, RunJournal::State::kPlacing) << size;
  }
}

TEST_F(RunJournalTest, TheJournalOfAnEarlierVersionIsUnderstood) {
  constexpr char earlier[] = "KAVO run 1\0placing\0change\0/a\0/b\0\0end";
  files.put(kJournal, std::string(earlier, sizeof earlier));  // with the zero byte that ends the last field
  EXPECT_EQ(read().state, RunJournal::State::kPlacing);
  EXPECT_EQ(read().changes.size(), 1u);
}

TEST_F(RunJournalTest, AFirstStateThatWasCutOffChangedNothing) {
  add(working);
  const std::string whole = files.get(kJournal);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    files.put(kJournal, whole.substr(0, size));
    ASSERT_TRUE(read().borrowed.empty()) << size;
  }
}

TEST_F(RunJournalTest, ZerosThatAPowerCutLeftChangedNothing) {
  files.put(kJournal, std::string(200, '\0'));
  EXPECT_TRUE(read().changes.empty());
}

TEST_F(RunJournalTest, ADamagedStateIsRefused) {
  add(working);
  add(placing);
  const std::string whole = files.get(kPlacing);
  for (const std::string_view field : {"to place", "change"}) {
    std::string damaged = whole;
    damaged.at(damaged.rfind(field)) = 'x';
    files.put(kPlacing, damaged);
    EXPECT_EQ(failure_number([&] { read(); }), 5) << field;
  }
  files.remove_file(kPlacing);
  files.put(kJournal, "dear diary");
  EXPECT_EQ(failure_number([&] { read(); }), 5);
}

TEST_F(RunJournalTest, NamesThatLookLikeATitleAreNames) {
  RunJournal journal;
  journal.temporary_files = {u"C:\\TEMP\\KAVO run 1", u"C:\\TEMP\\KAVO run 1", u"C:\\TEMP\\end"};
  journal.borrowed = {{u"C:\\WORK\\KAVO run 1", u""}};
  add(journal);
  EXPECT_EQ(read().temporary_files, journal.temporary_files);
  EXPECT_EQ(read().borrowed.at(0).path, u"C:\\WORK\\KAVO run 1");
}

TEST_F(RunJournalTest, AStateThatCannotBeWrittenLeavesTheOneBefore) {
  add(working);
  FaultyFiles faulty(files);
  for (const std::size_t operation : {1u, 2u}) {  // the file is opened, and written
    faulty.set_fault({.operation = operation, .partial_bytes = 30});
    EXPECT_EQ(failure_number([&] { write_journal(faulty, std::u16string(kFolder), borrowing); }), 61) << operation;
    EXPECT_EQ(read().borrowed.size(), 1u) << operation;
  }
  add(borrowing);
  EXPECT_EQ(read().borrowed.size(), 2u);
}

}  // namespace
}  // namespace kavo::test
