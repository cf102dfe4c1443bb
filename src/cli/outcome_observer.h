#pragma once

#include "cli/verb.h"
#include "driver/run_observer.h"

namespace kavo {

// Hands the progress of a run on and collects its messages in the outcome. Both must outlive the observer.
inline RunObserver outcome_observer(Outcome& outcome, const ProgressEvent::Handler& progress) {
  return {[&](std::u16string_view, int percent) { progress(static_cast<std::int16_t>(percent)); },
          [&](const Message& message) { outcome.messages.push_back(message); }};
}

}  // namespace kavo
