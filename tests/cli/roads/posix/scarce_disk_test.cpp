// A full disk and a read-only one, through the real command. Both are real: a small file system of the test's own, in a
// mount namespace of its own.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kPage = 4096;  // what a file takes at least, and at a time
constexpr const char* kSize = "size=1m";

void write_whole(const fs::path& path, std::string_view text) { write_file(path_from_host(path.string()), text); }

// In a user namespace of its own every user may mount; some systems do not allow even that.
bool enter_namespace() {
  static const bool entered = [] {
    const auto write = [](const char* path, const std::string& text) {
      const int file = open(path, O_WRONLY);
      const bool done = file >= 0 && ::write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
      if (file >= 0) close(file);
      return done;
    };
    const std::string user = std::to_string(getuid()), group = std::to_string(getgid());
    if (getuid() == 0) {
      if (unshare(CLONE_NEWNS) != 0) return false;
    } else {
      if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
      if (!write("/proc/self/setgroups", "deny") || !write("/proc/self/uid_map", "0 " + user + " 1") ||
          !write("/proc/self/gid_map", "0 " + group + " 1"))
        return false;
    }
    return mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
  }();
  return entered;
}

class ScarceDisk : public testing::Test {
 protected:
  void SetUp() override {
    folder_.make_folder(u"disk");
    disk = to_filesystem_path(folder_.path(u"disk"));
    if (!enter_namespace() || mount("tmpfs", disk.c_str(), "tmpfs", 0, kSize) != 0)
      GTEST_SKIP() << "no file system can be mounted here";
    mounted_ = true;
    fs::create_directory(work());
  }
  ~ScarceDisk() override {
    if (mounted_) umount(disk.c_str());
  }

  fs::path work() const { return disk / "work"; }
  std::string in_work(const char* name) const { return (work() / name).string(); }

  using Files = std::map<std::string, std::string>;
  Files all_files() const {
    Files files;
    for (const auto& entry : fs::directory_iterator(work()))
      files[entry.path().filename().string()] = read_file(path_from_host(entry.path().string()));
    return files;
  }
  void put(const Files& files) const {
    for (const auto& entry : fs::directory_iterator(work())) fs::remove(entry.path());
    for (const auto& [name, bytes] : files) write_whole(work() / name, bytes);
  }
  // Fills the disk except for this many pages.
  void leave_free(std::size_t pages) const {
    const fs::path filler = disk / "filler";
    fs::remove(filler);
    struct statvfs status;
    ASSERT_EQ(statvfs(disk.c_str(), &status), 0);
    const std::size_t free = status.f_bfree * status.f_bsize;
    write_whole(filler, std::string(free - pages * kPage, 'x'));
  }
  void make_read_only(bool is_read_only) const {
    const unsigned long flags = MS_REMOUNT | (is_read_only ? static_cast<unsigned long>(MS_RDONLY) : 0);
    ASSERT_EQ(mount(nullptr, disk.c_str(), nullptr, flags, kSize), 0);
  }

  // The documents of the road, and what each verb makes of them.
  struct Step {
    const char* verb;
    std::vector<std::string> arguments;
    Files before;
    Files after;
  };
  std::vector<Step> road() const {
    std::string page = "<html><body>\r\n";
    for (int i = 0; i < 200; ++i) page += "<p>Hello <%= name %>, this is paragraph " + std::to_string(i) + "</p>\r\n";
    page += "</body></html>\r\n";
    Files files{{"index.asp", page}};
    const std::string tud = in_work("index_asp_htm_FR.tud");
    std::vector<Step> steps{
        {"prepare", {"prepare", in_work("index.asp"), "--source", "EN-US", "--target", "FR"}, {}, {}},
        {"export", {"export", tud}, {}, {}},
        {"pseudo", {"pseudo", tud}, {}, {}},
        {"import", {"import", in_work("index_asp_htm_FR.xlf"), "--to", tud}, {}, {}},
        {"rebuild", {"rebuild", "--overwrite", tud}, {}, {}},
    };
    for (Step& step : steps) {
      // The import takes back what the pseudo translation has changed.
      if (step.verb == std::string("rebuild")) files["index_FR.asp"] = "an old target";
      put(files);
      step.before = files;
      const Ran ran = run_kavo(step.arguments);
      EXPECT_EQ(ran.code, 0) << step.verb << ran.errors;
      step.after = files = all_files();
      EXPECT_NE(step.after, step.before) << step.verb;
    }
    return steps;
  }

  fs::path disk;

 private:
  TempFolder folder_;
  bool mounted_ = false;
};

// Tries every amount of space from none to enough. Whatever files there are must be complete.
TEST_F(ScarceDisk, NothingIsLostOnAFullDiskAndNoPartIsLeft) {
  for (const Step& step : road()) {
    int code = 1;
    std::size_t failures = 0;
    for (std::size_t pages = 0; code != 0 && pages < 100; ++pages) {
      SCOPED_TRACE(testing::Message() << step.verb << " with " << pages << " pages");
      fs::remove(disk / "filler");
      put(step.before);
      leave_free(pages);
      const Ran ran = run_kavo(step.arguments);
      code = ran.code;
      const Files left = all_files();
      if (code == 0) {
        EXPECT_EQ(left, step.after);
        break;
      }
      ++failures;
      EXPECT_EQ(code, 1);
      EXPECT_NE(ran.errors.find("No space left on device"), std::string::npos) << ran.errors;
      EXPECT_NE(ran.errors.find(in_work("")), std::string::npos) << ran.errors;
      for (const auto& [name, bytes] : step.before) EXPECT_TRUE(left.contains(name) && left.at(name) == bytes) << name;
      // When several files are made one after another, those that were finished stay.
      for (const auto& [name, bytes] : left)
        EXPECT_TRUE(step.before.contains(name) || (step.after.contains(name) && step.after.at(name) == bytes)) << name;
    }
    EXPECT_EQ(code, 0) << step.verb;
    EXPECT_GT(failures, 0u) << step.verb;
  }
}

// The document is elsewhere. Only the copies for the check are on this disk, and the user does not know them.
TEST_F(ScarceDisk, VerifyNamesTheDocumentWhenTheTemporaryFolderIsFull) {
  const TempFolder folder;
  std::string page = "<html><body>\r\n";
  for (int i = 0; i < 200; ++i) page += "<p>Hello <%= name %>, this is <b>paragraph " + std::to_string(i) + "</p>\r\n";
  folder.write(u"pages\\index.asp", page + "</body></html>\r\n");
  folder.write(u"note.txt", "Some text\r\n");
  folder.write(u"book.mif",
               "<MIFFile 7.00>\r\n<TextFlow \r\n <Para \r\n  <ParaLine \r\n   <String `Text'>\r\n  >\r\n >\r\n>\r\n");
  for (const std::string& name : {std::string("pages/index.asp"), std::string("note.txt"), std::string("book.mif")}) {
    int code = 1;
    std::size_t failures = 0;
    for (std::size_t pages = 0; code != 0 && pages < 200; pages += 3) {
      SCOPED_TRACE(testing::Message() << name << " with " << pages << " pages");
      fs::remove(disk / "filler");
      leave_free(pages);
      const Ran ran = run_kavo_with_temporary_folder({"verify", name}, work(), folder);
      code = ran.code;
      EXPECT_TRUE(all_files().empty());
      if (code == 0) break;
      ++failures;
      EXPECT_EQ(code, 1) << ran.output;
      EXPECT_NE(ran.errors.find(name), std::string::npos) << ran.errors;
      EXPECT_NE(ran.errors.find("No space left on device"), std::string::npos) << ran.errors;
      EXPECT_EQ(ran.errors.find('\\'), std::string::npos) << ran.errors;
    }
    EXPECT_EQ(code, 0) << name;
    EXPECT_GT(failures, 1u) << name;
  }
}

TEST_F(ScarceDisk, AReadOnlyFolderIsReportedAndStaysAsItIs) {
  for (const Step& step : road()) {
    SCOPED_TRACE(step.verb);
    put(step.before);
    make_read_only(true);
    const Ran ran = run_kavo(step.arguments);
    make_read_only(false);
    EXPECT_EQ(ran.code, 1);
    EXPECT_NE(ran.errors.find("Read-only file system"), std::string::npos) << ran.errors;
    EXPECT_NE(ran.errors.find(work().string()), std::string::npos) << ran.errors;
    EXPECT_EQ(all_files(), step.before);
  }
}

// The failure happens only when the new document takes its name. Everything must still be as it was.
TEST_F(ScarceDisk, ATargetThatCannotBeReplaced) {
  const Step rebuild = road().back();
  put(rebuild.before);
  write_whole(work() / "index_FR.asp", "in the way");
  const Files before = all_files();
  std::vector<std::string> arguments = rebuild.arguments;
  arguments.push_back("--json");
  // A mounted file cannot be replaced by another one.
  const std::string target = (work() / "index_FR.asp").string();
  ASSERT_EQ(::mount(target.c_str(), target.c_str(), nullptr, MS_BIND, nullptr), 0);
  const auto told = nlohmann::json::parse(run_kavo(arguments).output);
  ASSERT_EQ(::umount(target.c_str()), 0);
  EXPECT_EQ(told["result"], 1);
  EXPECT_EQ(told["messages"][0]["text"], target + ": Device or resource busy");
  EXPECT_EQ(all_files(), before);
}

}  // namespace
}  // namespace kavo::test
