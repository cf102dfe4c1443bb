#include "platform/clock.h"

#include <gtest/gtest.h>

#include <set>

#include "platform/ports.h"

namespace kavo::test {
namespace {

TEST(ClockTest, SeedsDiffer) {
  std::set<std::uint64_t> seeds;
  for (int i = 0; i < 1000; ++i) seeds.insert(ports().clock->seed());
  EXPECT_EQ(seeds.size(), 1000u);
}

TEST(ClockTest, TimeDoesNotGoBack) {
  double last = ports().clock->seconds();
  for (int i = 0; i < 1000; ++i) {
    const double now = ports().clock->seconds();
    ASSERT_GE(now, last);
    last = now;
  }
}

TEST(ClockTest, SleepTakesItsTime) {
  const double before = ports().clock->seconds();
  ports().clock->sleep(0.03);
  EXPECT_GE(ports().clock->seconds() - before, 0.025);
  ports().clock->sleep(0);
  ports().clock->sleep(-1);
  EXPECT_LT(ports().clock->seconds() - before, 10) << "a negative time is none";
}

}  // namespace
}  // namespace kavo::test
