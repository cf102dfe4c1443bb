// The flag that process_messages() checks. A lock-free atomic, because the command sets it in a signal handler.
#include <atomic>

#include "platform/desktop.h"
#include "platform/failure.h"

namespace kavo {
namespace {

std::atomic<bool> interrupt_flag{false};
static_assert(std::atomic<bool>::is_always_lock_free);

}  // namespace

void request_interrupt() noexcept { interrupt_flag.store(true); }

bool interrupt_requested() noexcept { return interrupt_flag.load(); }

void throw_if_interrupted() {
  if (interrupt_flag.exchange(false)) throw interruption();
}

}  // namespace kavo
