// Runs steps one after another even if some fail, and keeps the last error number until it is cleared. The contract of
// the Office conversions requires this.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "platform/failure.h"

namespace kavo {

class error_state {
 public:
  std::int32_t number() const { return number_; }
  // The description of the first error since clear(). People are shown this one, because later errors often follow from
  // it.
  const std::u16string& first_description() const { return first_description_; }
  void clear() {
    number_ = 0;
    first_description_.clear();
  }

  // Runs a step; true when it did not fail. An interruption by the user is not trapped.
  template <class Step>
  bool run(Step&& step) {
    try {
      std::forward<Step>(step)();
      return true;
    } catch (const failure& reason) {
      if (number_ == 0) first_description_ = reason.description();
      number_ = reason.number();
      return false;
    }
  }

 private:
  std::int32_t number_ = 0;
  std::u16string first_description_;
};

}  // namespace kavo
