// Looking at what a call throws.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/failure.h"

namespace kavo::test {

// The failure that the call throws, or nothing. An interruption counts as the failure that hosts see.
template <typename Call>
std::optional<failure> failure_of(Call call) {
  try {
    call();
  } catch (const failure& error) {
    return error;
  } catch (const interruption& stop) {
    return as_failure(stop);
  }
  return std::nullopt;
}

// Its number, 0 when the call throws none. Also checks that a failure says what it is about.
template <typename Call>
std::int32_t failure_number(Call call) {
  const std::optional<failure> error = failure_of(call);
  if (!error) return 0;
  return error->description().empty() ? -1 : error->number();
}

}  // namespace kavo::test
