#include "cli/run_in_folder.h"

#include <cstdio>
#include <optional>
#include <utility>

#include "common/folder_run.h"
#include "platform/failure.h"
#include "platform/unicode.h"

namespace kavo {
namespace {

Outcome outcome_of(const failure& reason) {
  Outcome outcome;
  outcome.ending = Outcome::kFailed;
  outcome.result = 1;
  outcome.messages.push_back({reason.description()});
  outcome.details["error"] = reason.number();
  return outcome;
}

}  // namespace

Outcome run_in_folder(const std::u16string& place, const std::function<Outcome()>& step) {
  MessageList reports;
  Outcome outcome;
  try {
    std::optional<FolderRun> run;
    if (!place.empty()) run.emplace(place, [&](const std::u16string& text) { reports.push_back({text}); });
    outcome = step();
    if (run && outcome.ending != Outcome::kFailed) run->commit();
  } catch (const failure& reason) {
    if (reason.is(FailureNumber::kInterrupted)) {
      for (const Message& report : reports) std::fprintf(stderr, "kavo: %s\n", to_utf8(report.text).c_str());
      throw;
    }
    outcome = outcome_of(reason);
  }
  outcome.messages.insert(outcome.messages.begin(), reports.begin(), reports.end());
  for (Message& message : outcome.messages) message.text = FolderRun::without_scratch_folder(message.text);
  return outcome;
}

}  // namespace kavo
