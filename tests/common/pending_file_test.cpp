#include "common/pending_file.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/clsCommon.h"
#include "platform/failure.h"
#include "support/faulty_files.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

constexpr std::u16string_view kTarget = u"C:\\WORK\\doc.htm";
const std::string kOld = "the old text";
const std::string kNew(600 * 1024, 'n');  // more than the buffer holds

// Two drives: names on different ones cannot be renamed into each other.
class TwoDrives : public MemoryFiles {
 public:
  TwoDrives() { add_folder(u"D:\\"); }
  void rename_file(std::u16string_view from, std::u16string_view to) override {
    if (from[0] != to[0]) throw failure(FailureNumber::kDifferentDrive, u"Different volumes");
    MemoryFiles::rename_file(from, to);
  }
};

class PendingFileTest : public PortsFixture {
 protected:
  PendingFileTest() { ports().files = &drives; }
  std::size_t file_count() const { return drives.all_files().size(); }
  TwoDrives drives;
};

TEST_F(PendingFileTest, NothingIsSeenUnderTheFinalNameBeforeCommit) {
  drives.put(kTarget, kOld);
  PendingFile file(kTarget);
  file.write("a");
  file.write(kNew);
  file.write("z");
  EXPECT_EQ(file.size(), kNew.size() + 2);
  EXPECT_EQ(drives.get(kTarget), kOld);
  file.commit();
  EXPECT_EQ(drives.get(kTarget), "a" + kNew + "z");
  EXPECT_EQ(file_count(), 1u);
}

TEST_F(PendingFileTest, APowerCutAfterTheCommitLosesNothing) {
  FaultyFiles faulty(drives);
  ports().files = &faulty;
  drives.put(u"C:\\WORK\\source", kNew);
  {
    PendingFile file(kTarget);
    file.write(kNew);
    file.commit();
  }
  copy_file(u"C:\\WORK\\source", u"C:\\WORK\\copy");
  faulty.lose_unflushed();
  EXPECT_EQ(drives.get(kTarget), kNew);
  EXPECT_EQ(drives.get(u"C:\\WORK\\copy"), kNew);
}

TEST_F(PendingFileTest, WithoutCommitTheOldFileStaysAndNothingElse) {
  drives.put(kTarget, kOld);
  {
    PendingFile file(kTarget);
    file.write(kNew);
  }
  EXPECT_EQ(drives.get(kTarget), kOld);
  EXPECT_EQ(file_count(), 1u);
}

TEST_F(PendingFileTest, PiecesOfAnySizeComeOutInOrder) {
  std::string expected;
  PendingFile file(kTarget);
  for (std::size_t size = 0; size < 300'000; size = size * 3 + 1) {
    const std::string piece(size, static_cast<char>('a' + size % 26));
    file.write(piece);
    expected += piece;
  }
  file.commit();
  EXPECT_EQ(drives.get(kTarget), expected);
}

TEST_F(PendingFileTest, ChosenTemporaryNameMustBeFree) {
  drives.put(u"C:\\TEMP\\taken", "mine");
  try {
    PendingFile file(kTarget, u"C:\\TEMP\\taken");
    FAIL() << "overwrote a file";
  } catch (const failure& reason) {
    EXPECT_TRUE(reason.is(FailureNumber::kFileAlreadyExists));
  }
  EXPECT_EQ(drives.get(u"C:\\TEMP\\taken"), "mine");
}

TEST_F(PendingFileTest, FinishedFileStaysForItsMover) {
  {
    PendingFile file(kTarget, u"C:\\TEMP\\free");
    file.write(kNew);
    file.finish();
  }
  EXPECT_EQ(drives.get(u"C:\\TEMP\\free"), kNew);
  EXPECT_FALSE(drives.has(kTarget));
}

TEST_F(PendingFileTest, TemporaryOnAnotherVolumeIsCopied) {
  drives.put(kTarget, kOld);
  PendingFile file(kTarget, u"D:\\free");
  file.write(kNew);
  file.commit();
  EXPECT_EQ(drives.get(kTarget), kNew);
  EXPECT_EQ(file_count(), 1u);
}

// What a run over a faulty file system may leave.
struct Scenario {
  const char* name;
  bool target_exists;
  bool read_only;
  bool other_volume;
};
class EveryFault : public PendingFileTest, public testing::WithParamInterface<Scenario> {
 protected:
  void set_up() {
    for (const std::u16string& name : drives.all_files()) {
      drives.set_read_only(name, false);
      drives.remove_file(name);
    }
    if (!GetParam().target_exists) return;
    drives.put(kTarget, kOld);
    if (GetParam().read_only) drives.set_read_only(kTarget, true);
  }
  // The target holds the old or the new document, whole.
  void expect_whole_target(bool done) {
    if (done) {
      EXPECT_EQ(drives.get(kTarget), kNew);
    } else if (GetParam().target_exists) {
      EXPECT_EQ(drives.get(kTarget), kOld);
      EXPECT_EQ(drives.info(kTarget)->is_read_only, GetParam().read_only);
    } else {
      EXPECT_FALSE(drives.has(kTarget));
    }
  }
};

TEST_P(EveryFault, LeavesTheOldOrTheNewFileAndNothingElse) {
  FaultyFiles faulty(drives);
  ports().files = &faulty;
  bool done = false;
  for (const bool lasting : {false, true})
    for (const std::size_t partial : {std::size_t{0}, std::size_t{100}}) {
      const std::size_t faults = for_each_fault(
          faulty, {.lasting = lasting, .partial_bytes = partial},
          [&](std::size_t) {
            ports().files = &drives;
            set_up();
            ports().files = &faulty;
            done = false;
            try {
              PendingFile file(kTarget, GetParam().other_volume ? u"D:\\new.tmp" : u"C:\\WORK\\new.tmp");
              file.write(kNew);
              file.commit();
              done = true;
            } catch (const failure& reason) {
              EXPECT_TRUE(reason.is(FailureNumber::kDiskFull));
            }
          },
          [&](std::size_t number) {
            SCOPED_TRACE(number);
            // A read-only mark that cannot be set again, on a disk where nothing works any more, is the exception.
            if (!(lasting && GetParam().read_only)) expect_whole_target(done);
            // A copied source that cannot be removed is no failure of the document.
            if (!(done && GetParam().other_volume)) {
              EXPECT_EQ(file_count(), GetParam().target_exists || done ? 1u : 0u);
            }
          });
      EXPECT_GE(faults, GetParam().other_volume ? 9u : 4u);
      EXPECT_EQ(drives.get(kTarget), kNew) << "the run without a fault";
    }
}

TEST_P(EveryFault, MoveFileLeavesBothFilesAsTheyWereOrMoves) {
  FaultyFiles faulty(drives);
  const std::u16string source = GetParam().other_volume ? u"D:\\MOR0001.TMP" : u"C:\\TEMP\\MOR0001.TMP";
  bool done = false;
  MessageList errors;
  for_each_fault(
      faulty, {},
      [&](std::size_t) {
        ports().files = &drives;
        set_up();
        drives.put(source, kNew);
        ports().files = &faulty;
        errors.clear();
        done = clsCommon().MoveFile(source, kTarget, &errors);
      },
      [&](std::size_t number) {
        SCOPED_TRACE(number);
        expect_whole_target(done);
        // The last step makes a read-only file read-only again; the document is whole without it, too.
        if (done && errors.empty()) {
          EXPECT_TRUE(GetParam().read_only);
          return;
        }
        ASSERT_EQ(errors.size(), 1u);
        if (!done) {
          EXPECT_EQ(drives.get(source), kNew);
          EXPECT_EQ(file_count(), GetParam().target_exists ? 2u : 1u);
        } else {
          EXPECT_EQ(errors[0].number, 3005) << "done all the same: only the copied source stays";
          EXPECT_EQ(errors[0].text, u"The file could not be removed: " + source);
        }
      });
  EXPECT_TRUE(done);
  EXPECT_TRUE(errors.empty());
}

INSTANTIATE_TEST_SUITE_P(Targets, EveryFault,
                         testing::Values(Scenario{"New", false, false, false}, Scenario{"Old", true, false, false},
                                         Scenario{"ReadOnly", true, true, false},
                                         Scenario{"OtherVolume", true, false, true},
                                         Scenario{"OtherVolumeReadOnly", true, true, true},
                                         Scenario{"OtherVolumeNew", false, false, true}),
                         [](const auto& row) { return row.param.name; });

TEST_F(PendingFileTest, CopyIsWholeOrNotThere) {
  drives.put(u"C:\\WORK\\source", kNew);
  drives.put(kTarget, kOld);
  FaultyFiles faulty(drives);
  ports().files = &faulty;
  for_each_fault(
      faulty, {},
      [&](std::size_t) {
        drives.put(kTarget, kOld);
        try {
          copy_file(u"C:\\WORK\\source", kTarget);
        } catch (const failure&) {
        }
      },
      [&](std::size_t number) {
        SCOPED_TRACE(number);
        EXPECT_EQ(drives.get(kTarget), kOld);
        EXPECT_EQ(drives.get(u"C:\\WORK\\source"), kNew);
        EXPECT_EQ(file_count(), 2u);
      });
  EXPECT_EQ(drives.get(kTarget), kNew);
}

}  // namespace
}  // namespace kavo::test
