// How a step of the driver fails. Both are failures, so that a step's caller need not know them.
#pragma once

#include <string>
#include <utility>

#include "platform/failure.h"

namespace kavo {

// A component of the suite answered an operation with another status than 0. The description is what it says about it.
// What a component raises is a plain `failure`, because the contract lets that through to the host.
class refusal : public failure {
 public:
  explicit refusal(std::u16string description) : failure(FailureNumber::kInvalidCall, std::move(description)) {}
};

// A step failed, and its observer has received the reasons. A converter reports several, so that one description would
// not hold them.
class reported_failure : public failure {
 public:
  reported_failure() : failure(FailureNumber::kInvalidCall, u"") {}
};

}  // namespace kavo
