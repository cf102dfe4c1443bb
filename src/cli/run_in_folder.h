// Runs one step of a verb as one run: all files that it writes get their names together, or everything stays as it was.
#pragma once

#include <functional>
#include <string>

#include "cli/verb.h"

namespace kavo {

// Runs a step that works in the folder of `place`, or in no folder when `place` is empty. A step that throws, or whose
// outcome is a failure, leaves the folder as it was. The run's own messages (an earlier run was finished, something
// could not be removed) are added to `reports`. Throws what the step and FolderRun throw.
Outcome run_in_folder(const std::u16string& place, MessageList& reports, const std::function<Outcome()>& step);

}  // namespace kavo
