// "Errors trapped": runs steps one after the other whatever fails, and keeps the last error number until it is
// cleared, as the contract of the Office conversions asks.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "platform/failure.h"

namespace kavo {

class error_state {
 public:
  std::int32_t number() const { return number_; }
  const std::u16string& description() const { return description_; }
  void clear() {
    number_ = 0;
    description_.clear();
  }

  // Runs a step; true when it did not fail. An interruption by the user is not trapped.
  template <class Step>
  bool run(Step&& step) {
    try {
      std::forward<Step>(step)();
      return true;
    } catch (const failure& reason) {
      if (reason.is(FailureNumber::kInterrupted)) throw;
      number_ = reason.number();
      description_ = reason.description();
      return false;
    }
  }

 private:
  std::int32_t number_ = 0;
  std::u16string description_;
};

}  // namespace kavo
