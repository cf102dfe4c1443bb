#include "platform/clock.h"

#include <chrono>
#include <random>
#include <thread>

#include "platform/adapters.h"

namespace kavo {
namespace {

class PosixClock final : public Clock {
 public:
  double seconds() override {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
  }

  void sleep(double seconds) override {
    if (seconds > 0) std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
  }

  std::uint64_t seed() override {
    thread_local std::random_device system_source;  // opening it costs more than asking it
    return std::uint64_t{system_source()} << 32 | system_source();
  }
};

}  // namespace

Clock& system_clock() {
  static PosixClock clock;
  return clock;
}

}  // namespace kavo
