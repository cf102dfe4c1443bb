#include "cli/memory_reserve.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

#include "platform/failure.h"

namespace kavo {
namespace {

constexpr std::size_t kReserve = 1 << 20;  // bytes

std::atomic<void*> reserve{nullptr};
std::atomic<bool> ran_out{false};
char current_file[4096] = "";  // a copy, because the original is gone when a handler reports it

// The new-handler. It is called when an allocation fails; the allocation is tried again when it returns.
void give_up_reserve() {
  ran_out = true;
  void* const kept = reserve.exchange(nullptr);
  if (kept == nullptr) throw std::bad_alloc();
  std::free(kept);
}

void tell(const char* reason) noexcept {
  std::fprintf(stderr, "%s: %s\n", current_file[0] ? current_file : "kavo", reason);
}

[[noreturn]] void end_program() noexcept {
  const char* reason = "internal error";
  try {
    if (const std::exception_ptr thrown = std::current_exception()) std::rethrow_exception(thrown);
  } catch (const std::bad_alloc&) {
    reason = kNotEnoughMemory;
  } catch (...) {
    // The name is then used as it is.
  }
  tell(ran_out ? kNotEnoughMemory : reason);
  std::_Exit(1);
}

// Set up before any other object of the program, because some of them allocate.
struct Prepared {
  Prepared() noexcept {
    keep_memory_back();
    std::set_new_handler(give_up_reserve);
    std::set_terminate(end_program);
  }
};
[[gnu::init_priority(101)]] const Prepared prepared;

}  // namespace

void keep_memory_back() noexcept {
  if (reserve == nullptr) reserve = std::malloc(kReserve);
}

void throw_if_memory_ran_out() {
  if (ran_out.exchange(false)) throw std::bad_alloc();
}

void working_on(const char* file) noexcept { std::snprintf(current_file, sizeof current_file, "%s", file); }

void tell_no_memory() noexcept { tell(kNotEnoughMemory); }

}  // namespace kavo
