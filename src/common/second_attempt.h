// For clean-up that must not be lost to a passing problem.
#pragma once

#include <exception>

namespace kavo {

// Runs a step, and runs it a second time if it fails, because the problem may be over by then. Throws what the second
// attempt throws.
template <class Step>
auto with_second_attempt(Step&& step) {
  try {
    return step();
  } catch (const std::exception&) {
    return step();
  }
}

}  // namespace kavo
