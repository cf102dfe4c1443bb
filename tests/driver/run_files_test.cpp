#include "driver/run_files.h"

#include <gtest/gtest.h>

#include "common/pending_file.h"
#include "platform/failure.h"
#include "support/failures.h"
#include "support/faulty_files.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

constexpr std::u16string_view kName = u"C:\\WORK\\a.txt";

class RunFilesTest : public PortsFixture {};

TEST_F(RunFilesTest, ARunThatFailsLeavesTheOldFiles) {
  files.put(kName, "old");
  files.put(u"C:\\WORK\\b.txt", "old b");
  files.put(u"C:\\WORK\\c.txt", "half");
  {
    RunFiles run;
    run.make_way_for(kName);
    EXPECT_FALSE(files.has(kName));
    run.keep_copy_of(u"C:\\WORK\\b.txt");
    EXPECT_EQ(files.get(u"C:\\WORK\\b.txt"), "old b");
    files.put(kName, "new");
    files.put(u"C:\\WORK\\b.txt", "new");
    run.add(u"C:\\WORK\\c.txt");
    run.make_way_for(u"C:\\WORK\\d.txt");
    files.put(u"C:\\WORK\\d.txt", "new");
  }
  EXPECT_EQ(files.get(kName), "old");
  EXPECT_EQ(files.get(u"C:\\WORK\\b.txt"), "old b");
  EXPECT_EQ(files.all_files().size(), 2u);
}

TEST_F(RunFilesTest, ARunThatSucceedsKeepsTheNewFilesOnly) {
  files.put(kName, "old");
  RunFiles run;
  run.make_way_for(kName);
  files.put(kName, "new");
  run.keep();
  EXPECT_EQ(files.get(kName), "new");
  EXPECT_EQ(files.all_files().size(), 1u);
}

TEST_F(RunFilesTest, AReadOnlyFileComesBackReadOnly) {
  for (const bool copied : {false, true}) {
    files.put(kName, "old");
    files.set_read_only(kName, true);
    {
      RunFiles run;
      if (copied)
        run.keep_copy_of(kName);
      else
        run.make_way_for(kName);
    }
    EXPECT_EQ(files.get(kName), "old");
    EXPECT_TRUE(files.info(kName)->is_read_only) << copied;
    EXPECT_EQ(files.all_files().size(), 1u);
    {
      RunFiles run;
      run.keep_copy_of(kName);
      run.keep();
    }
    EXPECT_EQ(files.all_files().size(), 1u) << "a read-only copy goes too";
    files.set_read_only(kName, false);
  }
}

TEST_F(RunFilesTest, WhatAKilledRunLeftAsideIsNotTouched) {
  files.put(kName, "newest");
  files.put(u"C:\\WORK\\a.txt.kavo-old", "left by a killed run");
  {
    RunFiles run;
    run.make_way_for(kName);
    EXPECT_EQ(files.get(u"C:\\WORK\\a.txt.kavo-old2"), "newest");
  }
  EXPECT_EQ(files.get(kName), "newest");
  EXPECT_EQ(files.get(u"C:\\WORK\\a.txt.kavo-old"), "left by a killed run");
}

TEST_F(RunFilesTest, AFileThatCannotBeMovedStays) {
  FaultyFiles faulty(files);
  files.put(kName, "old");
  ports().files = &faulty;
  {
    RunFiles run;
    faulty.set_fault({.operation = 1, .number = FailureNumber::kPermissionDenied});
    EXPECT_EQ(failure_number([&] { run.make_way_for(kName); }), 70);
    faulty.clear_fault();
  }
  EXPECT_EQ(files.get(kName), "old");
  files.add_folder(u"C:\\WORK\\folder");
  RunFiles run;
  EXPECT_EQ(failure_number([&] { run.make_way_for(u"C:\\WORK\\folder"); }), 75);
  run.keep_copy_of(u"C:\\WORK\\folder");
}

TEST_F(RunFilesTest, AnOldFileThatCannotBePutBackStaysUnderItsOtherName) {
  FaultyFiles faulty(files);
  files.put(kName, "old");
  ports().files = &faulty;
  {
    RunFiles run;
    run.make_way_for(kName);
    faulty.set_fault({.operation = 1, .lasting = true});
  }
  faulty.clear_fault();
  EXPECT_EQ(files.get(u"C:\\WORK\\a.txt.kavo-old"), "old");
}

TEST_F(RunFilesTest, ScratchFilesGoWhenTheRunFails) {
  std::u16string scratch;
  {
    RunFiles run;
    scratch = run.add_scratch(u"htm");
    EXPECT_TRUE(scratch.starts_with(u"C:\\TEMP\\MOR"));
    EXPECT_TRUE(scratch.ends_with(u".htm"));
    files.put(scratch, "new");
  }
  EXPECT_FALSE(files.has(scratch));
}

TEST_F(RunFilesTest, NamesOfOneFileAreTheSame) {
  EXPECT_TRUE(is_same_file(u"C:\\work\\A.txt", u"a.TXT"));
  EXPECT_FALSE(is_same_file(u"C:\\work\\a.txt", u"b.txt"));
  files.put(kName, "");
  files.add_folder(u"C:\\WORK\\folder");
  EXPECT_TRUE(is_file(kName));
  EXPECT_FALSE(is_file(u"C:\\WORK\\folder"));
  EXPECT_FALSE(is_file(u"C:\\WORK\\nothing"));
}

}  // namespace
}  // namespace kavo::test
