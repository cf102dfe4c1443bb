// One run of a verb over its files: in this process, in several, or as one of several.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cli/exit_code.h"
#include "cli/progress_bar.h"
#include "cli/verb.h"
#include "cli/watched_files.h"

namespace kavo {

// The options that every verb has, and the arguments that set them.
struct RunOptions {
  std::vector<std::string> files;
  std::string code_page;
  bool json = false;
  bool quiet = false;
  bool no_project = false;
  ProgressBar::Mode progress = ProgressBar::Mode::kAuto;
  std::size_t jobs = 0;  // number of processes; 0 for as many as there are cores, if there is enough work
  bool is_worker = false;
  std::vector<std::string> arguments;  // the arguments after the program's name
};

// The verb and its group.
std::string full_name(const VerbEntry& entry);

// Throws `interruption`, and `failure` for what ends the whole run.
ExitCode run_verb(Verb& verb, const VerbEntry& entry, const RunOptions& options, WatchedFiles& watched);
// Runs as a worker: files and what belongs to them come from standard input, outcomes go to standard output
// (workers.h).
ExitCode run_share(Verb& verb, const VerbEntry& entry, WatchedFiles& watched);

}  // namespace kavo
