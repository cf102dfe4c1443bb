// The `Progress` event of a converter: raised when the percentage grows, after which the host may repaint.
#pragma once

#include <cstdint>
#include <functional>

namespace kavo {

class ProgressEvent {
 public:
  using Handler = std::function<void(std::int16_t percent)>;

  void handler(Handler handler) { handler_ = std::move(handler); }
  // Call it before each run, so that the next percentage is reported whatever it is.
  void restart() { last_ = -1; }
  // Raises the event when `percent` exceeds the last one reported, then lets the host process its pending messages.
  // Throws what that throws (`interruption` when the user interrupts).
  void report(std::int16_t percent);

 private:
  Handler handler_;
  std::int16_t last_ = -1;
};

}  // namespace kavo
