// Settings that two programs change at once, that another program holds, and that cannot be written; and a reader that
// goes before the command is done.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <thread>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "support/system.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

class SharedSettings : public testing::Test {
 protected:
  SharedSettings() { use(folder.path(u"config")); }
  ~SharedSettings() override { setenv("KAVO_CONFIG_FOLDER", saved_.c_str(), 1); }
  static void use(std::u16string_view config) { setenv("KAVO_CONFIG_FOLDER", path_to_host(config).c_str(), 1); }
  TempFolder folder;

 private:
  std::string saved_ = std::getenv("KAVO_CONFIG_FOLDER");
};

TEST_F(SharedSettings, TwoThatAreChangedAtOnceAreBothKept) {
  for (int round = 0; round < 40; ++round) {
    run_kavo({"settings", "mif.split=none", "mif.objects=on"});
    std::thread other([] { run_kavo({"settings", "mif.objects=off"}); });
    run_kavo({"settings", "mif.split=both"});
    other.join();
    ASSERT_EQ(run_kavo({"settings", "mif.split", "mif.objects"}).output, "mif.split=both\nmif.objects=off\n") << round;
  }
}

TEST_F(SharedSettings, ThatAnotherProgramHoldsCanBeInterrupted) {
  ASSERT_EQ(run_kavo({"settings", "mif.split=both"}).code, 0);
  const int lock = open(path_to_host(folder.path(u"config\\registry.lock")).c_str(), O_RDWR);
  ASSERT_EQ(flock(lock, LOCK_EX), 0);
  const auto ran = run_kavo_interrupted({"settings", "mif.split=none"}, [] { usleep(300'000); });
  close(lock);
  EXPECT_EQ(ran->code, 130);
  EXPECT_EQ(run_kavo({"settings", "mif.split"}).output, "mif.split=both\n");
}

TEST_F(SharedSettings, ThatCannotBeWrittenAreNamedAndNoDocumentFailsForThem) {
  folder.write(u"file", "in the way of a folder");
  folder.write(u"a.txt", "One\n");
  use(folder.path(u"file\\config"));
  const Ran settings = run_kavo({"settings", "mif.split=both"});
  EXPECT_EQ(settings.code, 1);
  EXPECT_NE(settings.errors.find(path_to_host(folder.path(u"file\\config\\registry.json"))), std::string::npos)
      << settings.errors;
  ASSERT_EQ(run_kavo({"prepare", "a.txt", "--source", "EN", "--target", "FR"}, &folder).code, 0);
  const Ran rebuilt = run_kavo({"rebuild", "a_txt_FR.tud"}, &folder);
  EXPECT_EQ(rebuilt.code, 0) << rebuilt.errors;
}

TEST_F(SharedSettings, ThatCannotBeReadAreNamed) {
  folder.make_folder(u"config\\registry.json");
  for (const char* word : {"mif.split", "mif.split=both"}) {
    const Ran ran = run_kavo({"settings", word});
    EXPECT_EQ(ran.code, 1) << word;
    EXPECT_NE(ran.errors.find(path_to_host(folder.path(u"config\\registry.json"))), std::string::npos) << ran.errors;
  }
}

TEST(Reader, ThatGoesEarlyInterruptsNothing) {
  const TempFolder folder;
  std::string command = "cd '" + path_to_host(folder.path()) + "' && { " KAVO_PROGRAM " html protect";
  for (int i = 0; i < 20; ++i) {
    const std::string name = "page" + std::to_string(i) + ".asp";
    folder.write(path_from_host(name), "<% x %>");
    command += " " + name;
  }
  command += "; echo $? > code; } 2> errors | true";
  ASSERT_EQ(std::system(command.c_str()), 0);
  EXPECT_EQ(folder.read(u"code"), "0\n");
  EXPECT_EQ(folder.read(u"errors"), "");
  EXPECT_TRUE(folder.exists(u"page19_asp.htm")) << "the work goes on";
}

}  // namespace
}  // namespace kavo::test
