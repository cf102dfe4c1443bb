// Runs that follow each other, as in a command that is given many documents.
//
// Making and removing a scratch folder takes as long as writing a small document. While a RunSeries lives, a run of this
// thread that has ended leaves its scratch folder behind, idle: without a file but an empty journal. The next run in
// that folder takes it over. Nothing is locked between the runs, so another program may remove an idle folder at any
// time, or take it over itself.
#pragma once

#include <cstddef>
#include <string>

#include "common/run_recovery.h"
#include "platform/files.h"

namespace kavo {

class RunSeries {
 public:
  // Reports an idle folder that could not be removed.
  explicit RunSeries(RunReport report);
  // Removes the idle folder.
  ~RunSeries();
  RunSeries(const RunSeries&) = delete;
  RunSeries& operator=(const RunSeries&) = delete;

  // The series of this thread, null when there is none. Within another series it is the outer one.
  static RunSeries* current();

  // For a run that begins: removes the idle folder unless it is this one, since documents come folder by folder. Never
  // throws.
  void begin(FileSystem& files, const std::u16string& scratch) noexcept;
  // For a run that ends and holds the folder's lock: makes the scratch folder idle, which has this many numbered
  // folders. Throws `failure`.
  void leave(FileSystem& files, const std::u16string& scratch, std::size_t numbered_folders);

 private:
  void remove_idle(FileSystem& files) noexcept;

  RunReport report_;
  bool is_outermost_;
  std::u16string idle_;  // the scratch folder that was left, "" for none
};

// True for a scratch folder that a series left: nothing is lost with it. The caller holds the folder's lock. Throws
// `failure`.
bool is_idle(FileSystem& files, const std::u16string& scratch);

}  // namespace kavo
