// A clock that moves only when the test moves it, and by sleeping.
#pragma once

#include "platform/clock.h"

namespace kavo::test {

class FakeClock : public Clock {
 public:
  double now = 0;
  double slept = 0;
  std::uint64_t next_seed = 1;

  double seconds() override { return now; }
  void sleep(double seconds) override {
    now += seconds;
    slept += seconds;
  }
  std::uint64_t seed() override { return next_seed++; }
};

}  // namespace kavo::test
