// Works on many files in several processes. The command starts itself, gives each worker its share of the files, and
// receives the outcome of each file as one line of JSON.
//
// Workers are processes because the components that convert documents belong to one thread, and because each run
// changes the user's settings (the font map of a folder): each worker has its own view of them.
//
// The parent writes two lines to a worker: its share and, when all workers are ready, a word to begin. The worker
// writes a line when it is ready and one for each file. Each worker locks the folders that it works in, as a separate
// command would. The parent locks none meanwhile.
#pragma once

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "cli/verb.h"
#include "platform/child_process.h"

namespace kavo {

// Work for one process: indexes into Verb::files, in order.
using Job = std::vector<std::size_t>;

struct FileOutcome {
  Outcome outcome;
  double seconds = 0;
};

class Workers {
 public:
  // Distributes the jobs and starts up to `count` processes with these arguments (and --worker). The verb must have
  // found its files. Throws `failure` when no process can be started.
  Workers(const Verb& verb, const std::vector<Job>& jobs, std::size_t count, std::vector<std::string> arguments);
  // Interrupts those that still work, and waits for them; ends those that do not stop.
  ~Workers();
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  // Waits for the outcome of a file. If the worker ended in the middle of it, the file has failed, and another worker
  // takes the rest. Throws `interruption`, and `failure` as the constructor does.
  FileOutcome outcome_of(std::size_t file);

  // True when the names of the files can be passed to another process. JSON holds only Unicode.
  static bool can_share(const Verb& verb);

 private:
  struct Worker {
    std::unique_ptr<ChildProcess> process;
    std::vector<std::size_t> files;   // not done yet, in the order of work
    std::optional<std::size_t> done;  // the last one that is
    std::thread reader;
    bool is_ready = false;   // the worker has read what it needs
    bool is_waiting = true;  // for the word to begin
    bool has_ended = false;
  };
  // What a worker that ended too early has left: the file that it worked on, the one before it, whose folder it may have
  // kept, and those after it.
  struct Lost {
    std::optional<std::size_t> before;
    std::size_t file;
    std::vector<std::size_t> rest;
  };
  Workers(const Verb& verb, std::vector<std::string> arguments) : verb_(verb), arguments_(std::move(arguments)) {}
  void start(std::vector<std::size_t> share);
  void read(Worker& worker);
  void note_end(Worker& worker);
  void let_begin();
  void note(std::size_t file, FileOutcome outcome);
  void replace(const std::vector<Lost>& lost);
  void settle_folder_of(std::size_t file) const;
  bool all_ended() const;

  const Verb& verb_;
  std::vector<std::string> arguments_;
  std::vector<std::unique_ptr<Worker>> workers_;
  std::mutex mutex_;  // for what the readers change
  std::condition_variable news_;
  std::map<std::size_t, FileOutcome> outcomes_;  // outcomes that nobody has asked for yet
  std::vector<Lost> lost_;
  std::size_t not_ready_ = 0;     // workers that still read what they need
  bool was_interrupted_ = false;  // a worker was interrupted, by its own Ctrl+C
};

// True when an Office program must read a document of this type (a code of common/file_type.h).
bool needs_office(std::int32_t type);
// For Verb::jobs(): only one run at a time works in a folder, so the documents of a folder (core paths) are one job.
// Those for which `is_office` is true are one job with all of their folders, since they share one engine.
std::vector<Job> jobs_by_folder(const std::vector<std::u16string>& documents, const std::vector<bool>& is_office);
// The paths in JSON, for a share.
nlohmann::ordered_json path_list(const std::vector<std::u16string>& paths);
std::vector<std::u16string> paths_in(const nlohmann::ordered_json& list);

// The worker's side: its share; the wait until all workers have read what they need, since none may see what another
// one has changed; and the line for a file. The first two throw `interruption` when the parent is gone.
nlohmann::ordered_json read_share();
void wait_for_others();
std::string line_of(std::size_t file, const Outcome& outcome, double seconds);

}  // namespace kavo
