// Takes the time from the performance counter and random seeds from the system's generator.
#include "platform/clock.h"

#include <windows.h>
// windows.h first.
#include <bcrypt.h>

#include <cmath>

#include "platform/adapters.h"
#include "platform/failure.h"
#include "platform/win32/system_error.h"

namespace kavo {
namespace {

class WindowsClock final : public Clock {
 public:
  double seconds() override {
    LARGE_INTEGER ticks;
    LARGE_INTEGER frequency;
    QueryPerformanceCounter(&ticks);
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(ticks.QuadPart) / static_cast<double>(frequency.QuadPart);
  }

  void sleep(double seconds) override {
    if (seconds > 0) Sleep(static_cast<DWORD>(std::lround(seconds * 1000.0)));
  }

  std::uint64_t seed() override {
    std::uint64_t value = 0;
    const NTSTATUS status =
        BCryptGenRandom(nullptr, reinterpret_cast<PUCHAR>(&value), sizeof value, BCRYPT_USE_SYSTEM_PREFERRED_RNG);
    if (status < 0) throw failure(FailureNumber::kDeviceError, system_text(static_cast<DWORD>(status)));
    return value;
  }
};

}  // namespace

Clock& system_clock() {
  static WindowsClock clock;
  return clock;
}

}  // namespace kavo
