// One step of a verb as one run: all that it writes takes its name together, or everything is as it was.
#pragma once

#include <functional>
#include <string>

#include "cli/verb.h"

namespace kavo {

// Runs a step that works in the folder of `place`; one that works in none when `place` is empty. A step that throws, or
// whose outcome is a failure, leaves the folder as it was. What the run itself has to say (a killed run's work was
// finished, something could not be cleaned up) is added to `reports`. Throws what the step and FolderRun throw.
Outcome run_in_folder(const std::u16string& place, MessageList& reports, const std::function<Outcome()>& step);

}  // namespace kavo
