// Links, permissions and devices, which only the real file system has.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "common/block_reader.h"
#include "common/commit_together.h"
#include "common/pending_file.h"
#include "platform/failure.h"
#include "platform/files.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

class ReplacedFilesTest : public testing::Test {
 protected:
  std::string host(std::u16string_view name) const { return path_to_host(folder.path(name)); }
  void link(const std::string& target, std::u16string_view name) const {
    ASSERT_EQ(::symlink(target.c_str(), host(name).c_str()), 0);
  }
  bool is_link(std::u16string_view name) const {
    struct stat status;
    return ::lstat(host(name).c_str(), &status) == 0 && S_ISLNK(status.st_mode);
  }
  unsigned mode(std::u16string_view name) const {
    struct stat status;
    return ::stat(host(name).c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
  }
  void write_new(std::u16string_view name) const {
    PendingFile file(folder.path(name));
    file.write("new");
    file.commit();
  }

  TempFolder folder;
};

TEST_F(ReplacedFilesTest, ALinkStaysALinkAndItsFileIsReplaced) {
  folder.write(u"real\\page.htm", "old");
  link("real/page.htm", u"link.htm");
  link(host(u"link.htm"), u"second.htm");
  write_new(u"second.htm");
  EXPECT_TRUE(is_link(u"link.htm"));
  EXPECT_TRUE(is_link(u"second.htm"));
  EXPECT_EQ(folder.read(u"real\\page.htm"), "new");
  EXPECT_EQ(folder.entry_count(), 3u) << "nothing is left beside the links";
}

TEST_F(ReplacedFilesTest, ALinkToNothingGetsItsFile) {
  link("later.htm", u"link.htm");
  write_new(u"link.htm");
  EXPECT_TRUE(is_link(u"link.htm"));
  EXPECT_EQ(folder.read(u"later.htm"), "new");
}

TEST_F(ReplacedFilesTest, LinksInACircleAreRefused) {
  link("b", u"a");
  link("a", u"b");
  EXPECT_THROW(write_new(u"a"), failure);
  EXPECT_TRUE(is_link(u"a"));
}

TEST_F(ReplacedFilesTest, TheNewFileHasTheOldOnesPermissions) {
  for (const unsigned wanted : {0600u, 0640u, 0664u}) {
    folder.write(u"page.htm", "old");
    ASSERT_EQ(::chmod(host(u"page.htm").c_str(), wanted), 0);
    write_new(u"page.htm");
    EXPECT_EQ(mode(u"page.htm"), wanted);
  }
}

TEST_F(ReplacedFilesTest, AReadOnlyFileIsReplacedByAWritableOne) {
  folder.write(u"page.htm", "old");
  ASSERT_EQ(::chmod(host(u"page.htm").c_str(), 0440), 0);
  write_new(u"page.htm");
  EXPECT_EQ(folder.read(u"page.htm"), "new");
  EXPECT_EQ(mode(u"page.htm"), 0640u);
}

TEST_F(ReplacedFilesTest, FilesCommittedTogetherKeepPermissionsAndWhatAKilledRunLeft) {
  for (const std::u16string_view name : {u"page.htm", u"page.scr"}) {
    folder.write(name, "old");
    ASSERT_EQ(::chmod(host(name).c_str(), 0600), 0);
    folder.write(std::u16string(name) + u".kavo-old", "left by a killed run");
  }
  PendingFile page(folder.path(u"page.htm"));
  PendingFile script(folder.path(u"page.scr"));
  page.write("new page");
  script.write("new script");
  commit_together({&script, &page});
  EXPECT_EQ(folder.read(u"page.htm"), "new page");
  EXPECT_EQ(folder.read(u"page.scr"), "new script");
  for (const std::u16string_view name : {u"page.htm", u"page.scr"}) {
    EXPECT_EQ(mode(name), 0600u);
    EXPECT_EQ(folder.read(std::u16string(name) + u".kavo-old"), "left by a killed run");
  }
  EXPECT_EQ(folder.entry_count(), 4u);
}

TEST_F(ReplacedFilesTest, APipeIsNotReplaced) {
  ASSERT_EQ(::mkfifo(host(u"pipe").c_str(), 0600), 0);
  folder.write(u"page.htm", "text");
  EXPECT_THROW(write_new(u"pipe"), failure);
  EXPECT_THROW(replace_file(folder.path(u"page.htm"), folder.path(u"pipe")), failure);
  struct stat status;
  ASSERT_EQ(::stat(host(u"pipe").c_str(), &status), 0);
  EXPECT_TRUE(S_ISFIFO(status.st_mode));
  EXPECT_EQ(folder.entry_count(), 2u);
}

TEST_F(ReplacedFilesTest, APipeIsNoDocument) {
  ASSERT_EQ(::mkfifo(host(u"pipe").c_str(), 0600), 0);
  EXPECT_THROW(BlockReader(folder.path(u"pipe")), failure) << "at once, without waiting for a writer";
}

TEST_F(ReplacedFilesTest, WhatOthersMayNotReadTheyMayNotReadWhileItIsWritten) {
  folder.write(u"page.htm", "old");
  ASSERT_EQ(::chmod(host(u"page.htm").c_str(), 0600), 0);
  const PendingFile file(folder.path(u"page.htm"));
  struct stat status;
  ASSERT_EQ(::stat(path_to_host(file.temporary_path()).c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0600u);
}

TEST_F(ReplacedFilesTest, MovingAFileKeepsItsOwnPermissions) {
  folder.write(u"a.htm", "moved");
  folder.write(u"b.htm", "old");
  ASSERT_EQ(::chmod(host(u"a.htm").c_str(), 0600), 0);
  replace_file(folder.path(u"a.htm"), folder.path(u"b.htm"));
  EXPECT_EQ(folder.read(u"b.htm"), "moved");
  EXPECT_EQ(mode(u"b.htm"), 0600u);
}

}  // namespace
}  // namespace kavo::test
