// Port: time and chance.
#pragma once

#include <cstdint>

namespace kavo {

class Clock {
 public:
  virtual ~Clock() = default;
  virtual double seconds() = 0;  // monotonic, from an arbitrary start
  virtual void sleep(double seconds) = 0;
  // A seed that two processes started in the same moment do not share (the system's random source).
  virtual std::uint64_t seed() = 0;
};

}  // namespace kavo
