// Runs that follow each other, as in a command that is given many documents.
//
// Locking a folder, and making and removing a scratch folder there, takes as long as writing a small document. While a
// RunSeries lives, a run of this thread that has ended leaves the lock and the scratch folder, empty but for an empty
// journal, to the next run in that folder. Every two seconds it lets others have the folder.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "common/run_recovery.h"
#include "platform/files.h"

namespace kavo {

class RunSeries {
 public:
  // Reports a scratch folder that could not be removed.
  explicit RunSeries(RunReport report);
  // Gives the folder up.
  ~RunSeries();
  RunSeries(const RunSeries&) = delete;
  RunSeries& operator=(const RunSeries&) = delete;

  // The series of this thread, null when there is none. Within another series it is the outer one.
  static RunSeries* current();

  // What one run leaves to the next.
  struct Kept {
    std::u16string scratch;          // the scratch folder, with one numbered folder and a journal
    std::unique_ptr<FileLock> lock;  // of the folder that it is in; null where the volume has no locks
  };

  // For a run that begins: what the last one left, if it worked with this scratch folder. Otherwise that folder is given
  // up, since documents come folder by folder. Never throws.
  std::optional<Kept> take(FileSystem& files, const std::u16string& scratch) noexcept;
  // For a run that ends: keeps its scratch folder, which must be as leave_empty() left it, and the lock.
  // After two seconds it gives them up and waits for a moment.
  void keep(FileSystem& files, Kept kept);
  // Removes the scratch folder and unlocks the folder that it is in. Never throws.
  void give_up(FileSystem& files) noexcept;

 private:
  RunReport report_;
  std::optional<Kept> kept_;
  std::optional<double> since_;  // seconds of the clock, when the folder was first kept
};

// Empties a scratch folder that has this many numbered folders, at least one, for the next run. Throws `failure`.
void leave_empty(FileSystem& files, const std::u16string& scratch, std::size_t numbered_folders);

}  // namespace kavo
