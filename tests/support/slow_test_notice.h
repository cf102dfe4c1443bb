// Names the test that a program hangs in: while one test runs for minutes, its name is written to standard error. The
// build's own time limit then ends the program, and its output says where.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <string>
#include <thread>

namespace kavo::test {

class SlowTestNotice final : public testing::EmptyTestEventListener {
 public:
  SlowTestNotice() : watcher_([this] { watch(); }) {}
  ~SlowTestNotice() override {
    {
      const std::lock_guard lock(mutex_);
      ended_ = true;
    }
    changed_.notify_one();
    watcher_.join();
  }

  void OnTestStart(const testing::TestInfo& test) override {
    set(std::string(test.test_suite_name()) + "." + test.name());
  }
  void OnTestEnd(const testing::TestInfo&) override { set(""); }

 private:
  static constexpr std::chrono::seconds kPatience{60};

  void set(std::string name) {
    {
      const std::lock_guard lock(mutex_);
      running_ = std::move(name);
      ++turn_;
    }
    changed_.notify_one();
  }

  void watch() {
    std::unique_lock lock(mutex_);
    while (!ended_) {
      const unsigned long turn = turn_;
      if (changed_.wait_for(lock, kPatience, [&] { return ended_ || turn_ != turn; }) || running_.empty()) continue;
      std::fprintf(stderr, "%s is still running\n", running_.c_str());
      std::fflush(stderr);
    }
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::string running_;
  unsigned long turn_ = 0;
  bool ended_ = false;
  std::thread watcher_;
};

}  // namespace kavo::test
