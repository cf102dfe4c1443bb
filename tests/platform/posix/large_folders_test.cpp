// Names in a large folder, where letters of any case mean one file, whoever changes the folder.
#include "platform/posix/large_folders.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <random>

#include "platform/files.h"
#include "platform/ports.h"
#include "platform/posix/paths.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

class LargeFolder : public testing::Test {
 protected:
  LargeFolder() {
    for (int i = 0; i < 128; ++i) touch("filler" + std::to_string(i));
    keep(host(""));
  }
  // As if the folder's names had been listed for long enough.
  static void keep(const std::string& path) { note_listing(path, kNamesWorthKeeping); }
  // The path for changes that bypass the port, as another program makes them.
  std::string host(const std::string& name) const { return path_to_host(folder.path(u"")) + name; }
  void touch(const std::string& name) const { std::ofstream(host(name)) << name; }
  void drop(const std::string& name) const { ::unlink(host(name).c_str()); }
  void move(const std::string& from, const std::string& to) const { std::rename(host(from).c_str(), host(to).c_str()); }
  // The name that the port finds, "" for none.
  std::string found(const std::string& name) const {
    const std::string resolved = resolve(path_from_host(host(name)));
    return ::access(resolved.c_str(), F_OK) == 0 ? split_host_path(resolved).name : "";
  }
  bool is_kept() const { return spellings_in_large_folder(path_to_host(folder.path(u"")), "x").has_value(); }
  TempFolder folder;
};

TEST_F(LargeFolder, ChangesOfOthersAreSeenAtOnce) {
  EXPECT_EQ(found("page.htm"), "");
  ASSERT_TRUE(is_kept()) << "TMPDIR must name a folder on a volume of this machine, whose changes the system reports";
  touch("PAGE.htm");
  EXPECT_EQ(found("page.htm"), "PAGE.htm");
  touch("Page.HTM");
  EXPECT_EQ(found("page.htm"), "PAGE.htm") << "the first one in the order of bytes";
  drop("PAGE.htm");
  EXPECT_EQ(found("page.htm"), "Page.HTM");
  move("filler1", "Page.HTM");
  EXPECT_EQ(found("page.htm"), "Page.HTM") << "renamed over it";
  EXPECT_EQ(found("FILLER1"), "");
  move("Page.HTM", "other");
  EXPECT_EQ(found("page.htm"), "");
  EXPECT_EQ(found("OTHER"), "other");
  ::mkdir(host("Sub").c_str(), 0700);
  EXPECT_EQ(found("SUB"), "Sub");
  EXPECT_TRUE(is_kept());
}

// Scratch folders come and go under one name, and each is asked many times.
TEST_F(LargeFolder, AFolderIsKeptWhenItsListingsHaveTakenLongAndItsSuccessorIsNotTakenForIt) {
  const std::string small = host("small/");
  const auto is_small_kept = [&] { return spellings_in_large_folder(small, "x").has_value(); };
  for (int round = 0; round < 3; ++round) {
    ::mkdir(small.c_str(), 0700);
    EXPECT_EQ(found("small/page"), "") << round;
    EXPECT_TRUE(round != 0 || !is_small_kept());
    for (std::size_t listed = 0; round == 0 && listed < kNamesWorthKeeping; listed += kNamesOfOneListing)
      EXPECT_EQ(found("small/page"), "");
    EXPECT_TRUE(is_small_kept()) << round;
    touch("small/Page");
    EXPECT_EQ(found("small/page"), "Page") << round;
    drop("small/Page");
    EXPECT_EQ(found("small/page"), "") << round;
    ::rmdir(small.c_str());
    EXPECT_FALSE(is_small_kept()) << round;
  }
}

TEST_F(LargeFolder, ChangesOfAnotherProcessAreSeenAtOnce) {
  EXPECT_EQ(found("made.txt"), "");
  for (int round = 0; round < 20; ++round) {
    const pid_t child = ::fork();
    if (child == 0) {
      std::FILE* const file = std::fopen(host("MADE.txt").c_str(), "w");
      std::fclose(file);
      ::_exit(0);
    }
    ::waitpid(child, nullptr, 0);
    ASSERT_EQ(found("made.txt"), "MADE.txt") << round;
    drop("MADE.txt");
    ASSERT_EQ(found("made.txt"), "") << round;
  }
}

TEST_F(LargeFolder, ASearchForOneNameFindsItsSpellings) {
  FileSystem& files = *ports().files;
  const auto find = [&](const char16_t* name) { return files.find(folder.path(name)); };
  using Names = std::vector<std::u16string>;
  EXPECT_EQ(found("absent"), "");
  EXPECT_EQ(find(u"absent"), Names());
  EXPECT_EQ(find(u"filler3"), Names{u"filler3"});
  EXPECT_EQ(find(u"FILLER3"), Names{u"filler3"});
  touch("Filler3");
  EXPECT_EQ(find(u"filler3").size(), 2u);
  EXPECT_EQ(find(u"filler3*").size(), 12u) << "3 and 30 to 39, and Filler3";
  EXPECT_EQ(find(u"."), Names());
  EXPECT_EQ(find(u".."), Names());
}

TEST_F(LargeFolder, AFolderThatTookTheNameOfAnotherIsNotTakenForIt) {
  EXPECT_EQ(found("Sub"), "");
  const auto fill = [&](const std::string& name) {
    ::mkdir(host(name).c_str(), 0700);
    touch(name + "/filler");
    keep(host(name + "/"));
  };
  fill("a");
  touch("a/HERE");
  fill("b");
  EXPECT_EQ(resolve(path_from_host(host("a/absent"))), host("a/absent"));
  EXPECT_EQ(resolve(path_from_host(host("b/absent"))), host("b/absent"));
  EXPECT_EQ(resolve(path_from_host(host("a/here"))), host("a/HERE"));
  move("a", "c");
  move("b", "a");
  EXPECT_EQ(resolve(path_from_host(host("a/here"))), host("a/here"));
  EXPECT_EQ(resolve(path_from_host(host("c/here"))), host("c/HERE"));
}

TEST_F(LargeFolder, LostNotesAndManyFoldersDoNoHarm) {
  EXPECT_EQ(found("late"), "");
  // More notes than the system keeps.
  for (int i = 0; i < 9000; ++i) {
    touch("passing");
    drop("passing");
  }
  touch("LATE");
  EXPECT_EQ(found("late"), "LATE");
  EXPECT_EQ(found("passing"), "");
  for (int number = 0; number < 20; ++number) {
    const std::string name = "many" + std::to_string(number);
    ::mkdir(host(name).c_str(), 0700);
    keep(host(name + "/"));
    EXPECT_EQ(found(name + "/g"), "");
    touch(name + "/G");
    EXPECT_EQ(found(name + "/g"), "G");
  }
  EXPECT_TRUE(spellings_in_large_folder(host("many5/"), "x").has_value()) << "only the oldest ones are given up";
  EXPECT_EQ(found("late"), "LATE");
}

TEST_F(LargeFolder, AgreesWithTheListingAfterAnyChange) {
  const char* const names[] = {"alpha", "Alpha", "ALPHA", "beta", "Beta", "\xC3\xA4pfel", "\xC3\x84pfel"};
  std::mt19937 random(7);
  const auto any = [&] { return std::string(names[random() % std::size(names)]); };
  EXPECT_EQ(found("absent"), "");
  for (int step = 0; step < 3000; ++step) {
    switch (random() % 3) {
      case 0:
        touch(any());
        break;
      case 1:
        drop(any());
        break;
      default:
        move(any(), any());
    }
    const std::string wanted = any();
    std::string expected;
    if (::access(host(wanted).c_str(), F_OK) == 0) {
      expected = wanted;
    } else {
      for (const char* const name : {"ALPHA", "Alpha", "alpha", "Beta", "beta", "\xC3\x84pfel", "\xC3\xA4pfel"})
        if (expected.empty() && ::access(host(name).c_str(), F_OK) == 0 && (name[1] & ~0x20) == (wanted[1] & ~0x20))
          expected = name;
    }
    ASSERT_EQ(found(wanted), expected) << "step " << step;
  }
}

}  // namespace
}  // namespace kavo::test
