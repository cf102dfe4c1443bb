// Several processes give the same results as one process, and every run comes to an end, however it is ended.
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>

#include "cli/site_test.h"

namespace kavo::test {
namespace {

// Ends the test program when a command does not end. Otherwise nobody would notice for half an hour.
class TimeLimit {
 public:
  TimeLimit() : watch_([this] { wait(); }) {}
  ~TimeLimit() {
    {
      const std::lock_guard guard(mutex_);
      is_over_ = true;
    }
    over_.notify_all();
    watch_.join();
  }

 private:
  void wait() {
    constexpr auto kLongest = std::chrono::minutes(4);
    std::unique_lock lock(mutex_);
    if (over_.wait_for(lock, kLongest, [this] { return is_over_; })) return;
    std::fputs("a run in several processes does not end\n", stderr);
    std::_Exit(1);
  }
  std::mutex mutex_;
  std::condition_variable over_;
  bool is_over_ = false;
  std::thread watch_;
};

constexpr int kBooks = 3, kNumbers = 4;

class Jobs : public SiteTest {
 protected:
  void SetUp() override {
    for (int book = 0; book < kBooks; ++book)
      for (int number = 0; number < kNumbers; ++number) {
        const std::string n = std::to_string(number), place = "site/part" + std::to_string(book) + "/";
        put(place + "page" + n + ".asp",
            "<html><body><p>Page " + n + " is open</p><% MsgBox \"Hello there\" %></body></html>\r\n");
        put(place + "notes" + n + ".txt", "One " + n + "\nTwo\n");
        put(place + "book" + n + ".mif",
            "<MIFFile 7.00>\r\n<VariableFormats \r\n <VariableFormat \r\n  <VariableName `Product'>\r\n"
            "  <VariableDef `Apple'>\r\n >\r\n>\r\n<TextFlow \r\n <Para \r\n  <ParaLine \r\n   <String `Text'>\r\n"
            "  >\r\n >\r\n>\r\n");
      }
    put("site/bad/broken.rtf", "no RTF");
    put("site/bad/good.txt", "One\n");
  }
  Ran prepare_in(const std::string& output, const std::string& jobs) const {
    return kavo(
        {"prepare", "site", "-r", "--output-dir", output, "--source", "EN-US", "--target", "FR,DE", "--jobs", jobs});
  }

 private:
  TimeLimit limit_;
};

std::string with_one_name(std::string text, const std::string& name) {
  for (std::size_t at; (at = text.find(name)) != std::string::npos;) text.replace(at, name.size(), "OUT");
  return text;
}

TEST_F(Jobs, GiveTheSameDocumentsMessagesAndResults) {
  const Ran one = prepare_in("alone", "1"), three = prepare_in("shared", "3");
  EXPECT_EQ(one.code, 1) << "one document is broken";
  EXPECT_EQ(three.code, one.code) << three.errors;
  EXPECT_EQ(with_one_name(three.output, "shared"), with_one_name(one.output, "alone"));
  EXPECT_EQ(with_one_name(three.errors, "shared"), with_one_name(one.errors, "alone"));
  const auto alone = tree("alone"), shared = tree("shared");
  ASSERT_GT(alone.size(), 100u);
  ASSERT_EQ(shared.size(), alone.size());
  for (const auto& [name, bytes] : alone) EXPECT_TRUE(shared.contains(name)) << name;
  EXPECT_EQ(shared.at("manifest.json"), alone.at("manifest.json"));

  for (const char* const output : {"alone", "shared"}) EXPECT_EQ(kavo({"pseudo", output, "-r", "-q"}).code, 0);
  const Ran rebuilt_alone = kavo({"rebuild", "alone", "-r", "--output-dir", "alone-{lang}", "--jobs", "1"});
  const Ran rebuilt_shared = kavo({"rebuild", "shared", "-r", "--output-dir", "shared-{lang}", "--jobs", "3"});
  EXPECT_EQ(rebuilt_alone.code, 0) << rebuilt_alone.errors;
  EXPECT_EQ(with_one_name(rebuilt_shared.output, "shared"), with_one_name(rebuilt_alone.output, "alone"));
  ASSERT_GT(tree("alone-FR").size(), 30u);
  EXPECT_EQ(tree("shared-FR"), tree("alone-FR"));
  EXPECT_EQ(tree("shared-DE"), tree("alone-DE"));
}

// A worker that is fast must not take a text away before another one has looked it up.
TEST_F(Jobs, LookUpTheTranslationsThatWereThereWhenTheRunBegan) {
  for (const char* const output : {"alone", "shared"}) {
    ASSERT_EQ(prepare_in(output, "1").code, 1);
    ASSERT_EQ(kavo({"pseudo", output, "-r", "-q"}).code, 0);
  }
  put("site/part0/notes0.txt", "Three\n");
  put("site/part2/notes3.txt", "One 0\nTwo\n");
  const Ran one = prepare_in("alone", "1"), three = prepare_in("shared", "3");
  EXPECT_TRUE(holds(three.output + three.errors, "moved")) << three.errors;
  EXPECT_EQ(with_one_name(three.output, "shared"), with_one_name(one.output, "alone"));
  EXPECT_EQ(with_one_name(three.errors, "shared"), with_one_name(one.errors, "alone"));
}

TEST_F(Jobs, GiveTheSameLinesOfJson) {
  const auto lines = [](const Ran& ran) {
    std::vector<nlohmann::json> all;
    std::istringstream text(ran.output);
    for (std::string line; std::getline(text, line);) {
      all.push_back(nlohmann::json::parse(line));
      all.back().erase("seconds");
    }
    return all;
  };
  ASSERT_EQ(prepare_in("work", "3").code, 1);
  for (const std::vector<std::string>& verb : std::vector<std::vector<std::string>>{
           {"prepare", "site", "-r", "--output-dir", "work", "--source", "EN-US", "--target", "FR,DE", "--overwrite"},
           {"verify", "site", "-r"}}) {
    std::vector<std::string> alone = verb, shared = verb;
    alone.insert(alone.end(), {"--json", "--jobs", "1"});
    shared.insert(shared.end(), {"--json", "--jobs", "3"});
    const auto expected = lines(kavo(alone));
    EXPECT_GT(expected.size(), 35u) << verb.front();
    EXPECT_EQ(lines(kavo(shared)), expected) << verb.front();
  }
}

TEST_F(Jobs, StopTogetherAndLeaveTheFoldersSettled) {
  const std::vector<std::string> command{"prepare",
                                         path("site").string(),
                                         "-r",
                                         "--output-dir",
                                         path("work").string(),
                                         "--source",
                                         "EN-US",
                                         "--target",
                                         "FR,DE",
                                         "--jobs",
                                         "2"};
  const auto first_is_done = [&] {
    for (int tries = 0; tries < 6000 && !has("work/part0/page0_asp_htm_FR.tud"); ++tries)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
  };
  const std::optional<Ran> stopped = run_kavo_interrupted(command, first_is_done);
  if (!stopped)
    GTEST_SKIP() << "Windows sends Ctrl+C to every program of the console, so it would end this test with the command";
  // A quick machine may be done already.
  EXPECT_TRUE(stopped->code == 130 || stopped->code == 1) << stopped->code << stopped->errors;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path("work")))
    EXPECT_FALSE(holds(entry.path().filename().string(), ".kavo-run")) << entry.path();
  EXPECT_EQ(kavo(command).code, 1) << "one document is broken";
  EXPECT_EQ(prepare_in("alone", "1").code, 1);
  EXPECT_EQ(tree("work").size(), tree("alone").size());
}

TEST_F(Jobs, SomethingOtherThanANumberIsWrongUsage) {
  for (const char* const number : {"0", "-1", "many"}) EXPECT_EQ(prepare_in("work", number).code, 2) << number;
}

}  // namespace
}  // namespace kavo::test
