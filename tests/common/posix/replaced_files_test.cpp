// Links, permissions and devices, which only the real file system has.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "common/block_reader.h"
#include "common/folder_run.h"
#include "common/pending_file.h"
#include "platform/failure.h"
#include "platform/ports.h"
#include "support/failures.h"
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

TEST_F(ReplacedFilesTest, AReadOnlyFileIsReplacedByAReadOnlyOne) {
  folder.write(u"page.htm", "old");
  ASSERT_EQ(::chmod(host(u"page.htm").c_str(), 0440), 0);
  write_new(u"page.htm");
  EXPECT_EQ(folder.read(u"page.htm"), "new");
  EXPECT_EQ(mode(u"page.htm"), 0440u) << "a read-only document stays one";
}

TEST_F(ReplacedFilesTest, FilesOfARunKeepPermissionsAndNewOnesGetThoseOfTheDocument) {
  folder.write(u"page.htm", "old");
  folder.write(u"page.asp", "document");
  ASSERT_EQ(::chmod(host(u"page.htm").c_str(), 0604), 0);
  ASSERT_EQ(::chmod(host(u"page.asp").c_str(), 0700), 0);
  {
    FolderRun run(folder.path(u"page.asp"));
    write_new(u"page.htm");
    write_new(u"page.scr");
    struct stat status;
    ASSERT_EQ(::stat(host(u".kavo-run").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0700u) << "nobody else reads it while it is written";
    run.commit();
  }
  EXPECT_EQ(folder.read(u"page.htm"), "new");
  EXPECT_EQ(mode(u"page.htm"), 0604u);
  EXPECT_EQ(mode(u"page.scr"), 0600u) << "nobody may run it";
  EXPECT_EQ(folder.entry_count(), 3u);
}

TEST_F(ReplacedFilesTest, ACopyIsAsPrivateAsItsSource) {
  folder.write(u"page.asp", "document");
  folder.write(u"old.asp", "old");
  ASSERT_EQ(::chmod(host(u"page.asp").c_str(), 0700), 0);
  ASSERT_EQ(::chmod(host(u"old.asp").c_str(), 0644), 0);
  for (const auto* name : {u"new.asp", u"old.asp"}) copy_file(folder.path(u"page.asp"), folder.path(name));
  EXPECT_EQ(mode(u"new.asp"), 0600u) << "nobody may run it";
  EXPECT_EQ(mode(u"old.asp"), 0644u) << "what is replaced keeps its own";
  folder.make_folder(u"work");
  {
    FolderRun run(folder.path(u"work\\page.asp"));
    copy_file(folder.path(u"page.asp"), folder.path(u"work\\page.asp"));
    write_new(u"work\\page.scr");
    run.commit();
  }
  for (const auto* name : {u"work\\page.asp", u"work\\page.scr"}) EXPECT_EQ(mode(name), 0600u);
}

TEST_F(ReplacedFilesTest, ARunReplacesWhatALinkLeadsTo) {
  folder.write(u"other\\page.htm", "old");
  link("other/page.htm", u"page.htm");
  {
    FolderRun run(folder.path(u"page.htm"));
    write_new(u"page.htm");
    write_new(u"page.scr");
    run.commit();
  }
  EXPECT_EQ(folder.read(u"other\\page.htm"), "new");
  EXPECT_TRUE(is_link(u"page.htm"));
}

TEST_F(ReplacedFilesTest, OneRunAtATimeWorksInAFolder) {
  folder.write(u"page.htm", "old");
  std::atomic<bool> first_has_it{false};
  std::atomic<bool> first_is_done{false};
  std::thread first([&] {
    FolderRun run(folder.path(u"page.htm"));
    first_has_it = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(1200));
    write_new(u"page.htm");
    run.commit();
    first_is_done = true;
  });
  while (!first_has_it) std::this_thread::yield();
  std::vector<std::u16string> reports;
  {
    FolderRun second(folder.path(u"page.htm"), [&](const std::u16string& text) { reports.push_back(text); });
    EXPECT_TRUE(first_is_done);
    EXPECT_EQ(folder.read(u"page.htm"), "new");
  }
  first.join();
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_NE(reports[0].find(u"Waiting for another run"), std::u16string::npos);
}

TEST_F(ReplacedFilesTest, ALinkThatAnotherUserMadeInAFolderForEverybodyIsNotFollowed) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can give a link to another user";
  ASSERT_EQ(::chmod(host(u".").c_str(), 01777), 0);
  link("elsewhere", u"page.htm");
  EXPECT_NO_THROW(ports().files->link_target(folder.path(u"page.htm")));
  ASSERT_EQ(::lchown(host(u"page.htm").c_str(), 12345, 12345), 0);
  EXPECT_EQ(failure_number([&] { ports().files->link_target(folder.path(u"page.htm")); }), 70);
  EXPECT_THROW(write_new(u"page.htm"), failure);
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

TEST_F(ReplacedFilesTest, APipeIsNotADocument) {
  ASSERT_EQ(::mkfifo(host(u"pipe").c_str(), 0600), 0);
  EXPECT_THROW(BlockReader(folder.path(u"pipe")), failure) << "at once, without waiting for a writer";
}

TEST_F(ReplacedFilesTest, AFileThatIsBeingWrittenIsAsPrivateAsItsTarget) {
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
