// Many files in several processes: the command starts itself, gives each worker its share of the files, and gets the
// outcome of each file as one line of JSON.
//
// Workers are processes because documents are converted by components that live on one thread, and because the settings
// of a run (the font map of a folder) are the user's: each worker has its own view of them.
#pragma once

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "cli/verb.h"
#include "platform/child_process.h"

namespace kavo {

// Work for one process: places in Verb::files, in order.
using Job = std::vector<std::size_t>;

struct FileOutcome {
  Outcome outcome;
  double seconds = 0;
};

class Workers {
 public:
  // Shares the jobs out and starts up to `count` processes with these arguments (and --worker). The verb has found its
  // files. Throws `failure` when no process can be started, and for names that are no Unicode.
  Workers(const Verb& verb, const std::vector<Job>& jobs, std::size_t count, std::vector<std::string> arguments);
  // Interrupts those that still work, and waits for them.
  ~Workers();
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  // Waits for the outcome of a file. A worker that ended before it is the file's failure. Throws `interruption`.
  FileOutcome outcome_of(std::size_t file);

 private:
  struct Worker {
    std::unique_ptr<ChildProcess> process;
    std::vector<std::size_t> files;
    std::thread reader;
  };
  void read(Worker& worker);
  void note(std::size_t file, FileOutcome outcome);

  std::vector<std::unique_ptr<Worker>> workers_;
  std::mutex mutex_;
  std::condition_variable news_;
  std::map<std::size_t, FileOutcome> outcomes_;  // that nobody asked for yet
  bool was_interrupted_ = false;                 // a worker was, by its own Ctrl+C
};

// For Verb::jobs(): only one run at a time works in a folder, so the documents of a folder (core paths) are one job.
// Those for which `is_office` is true are one job with all of their folders, since they share one engine.
std::vector<Job> jobs_by_folder(const std::vector<std::u16string>& documents, const std::vector<bool>& is_office);
// Paths in a share.
nlohmann::ordered_json path_list(const std::vector<std::u16string>& paths);
std::vector<std::u16string> paths_in(const nlohmann::ordered_json& list);

// The worker's side: its share, and the line for a file of it.
nlohmann::ordered_json read_share();
std::string line_of(std::size_t file, const Outcome& outcome, double seconds);

}  // namespace kavo
