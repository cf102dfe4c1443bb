// One run of a verb over its files.
#pragma once

#include <string>
#include <vector>

#include "cli/exit_code.h"
#include "cli/progress_bar.h"
#include "cli/verb.h"
#include "cli/watched_files.h"

namespace kavo {

// What every verb can be told, and how it was told.
struct RunOptions {
  std::vector<std::string> files;
  std::string code_page;
  bool json = false;
  bool quiet = false;
  bool no_project = false;
  ProgressBar::Mode progress = ProgressBar::Mode::kAuto;
};

// The verb and its group.
std::string full_name(const VerbEntry& entry);

// Throws `interruption`, and `failure` for what ends the whole run.
ExitCode run_verb(Verb& verb, const VerbEntry& entry, const RunOptions& options, WatchedFiles& watched);

}  // namespace kavo
