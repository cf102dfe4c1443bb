#include "cli/run_in_folder.h"

#include <optional>

#include "common/folder_run.h"

namespace kavo {

Outcome run_in_folder(const std::u16string& place, MessageList& reports, const std::function<Outcome()>& step) {
  if (place.empty()) return step();
  FolderRun run(place, [&](const std::u16string& text) { reports.push_back({text}); });
  Outcome outcome = step();
  if (outcome.ending != Outcome::kFailed)
    run.commit();
  else
    outcome.produced.clear();  // the run removes them
  return outcome;
}

}  // namespace kavo
