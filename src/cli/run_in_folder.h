// One step of a verb as one run: all that it writes takes its name together, or everything is as it was.
#pragma once

#include <functional>

#include "cli/verb.h"

namespace kavo {

// Runs a step that works in the folder of `place`; one that works in none when `place` is empty. A step whose outcome is
// a failure leaves the folder as it was. What the run itself has to say (a killed run's work was finished, something
// could not be cleaned up) comes in front of the outcome's messages. Throws `failure` 18 when the user interrupts; any
// other failure is the outcome.
Outcome run_in_folder(const std::u16string& place, const std::function<Outcome()>& step);

}  // namespace kavo
