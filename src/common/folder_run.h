// One run's work on the documents of a folder: all of it takes effect, or nothing does.
//
// While a FolderRun lives, the thread's files port is a StagedFiles: converters and filters write under the final
// names, but no real file changes. commit() puts everything in place; without it, everything stays as it was. Only one
// run at a time works in a folder; others wait. Scratch files lie in the sub-folder ".kavo-run" with a journal. When a
// run is killed, the next one in that folder first finishes what was being put in place, or removes what was not.
//
// Runs that follow each other share a scratch folder and its lock: run_series.h.
//
// A FolderRun within another one of the same thread is a part of it: what it commits takes effect when the outer one
// commits.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "common/run_recovery.h"

namespace kavo {

class FileLock;

class FolderRun {
 public:
  // Gets a sentence for the user: what became of a killed run, that this one waits for another, or what could not be
  // cleaned up.
  using Report = RunReport;

  // Works in the folder of `document`. New files get the permissions of the document, which need not exist. Throws
  // `failure` 76 for a folder that does not exist, 70 when another run keeps it for longer than a minute, and any
  // number when the clean-up after a killed run fails; throws `interruption` when the user interrupts the wait.
  explicit FolderRun(std::u16string_view document, Report report = {});
  // Drops what was not committed. Never throws; what cannot be cleaned up is reported.
  ~FolderRun();
  FolderRun(const FolderRun&) = delete;
  FolderRun& operator=(const FolderRun&) = delete;

  // Puts everything in place. Throws `failure`, which names the file, and then everything is as it was.
  void commit();

  // For files that other modules and programs read or write, because they see real files only; see StagedFiles.
  std::u16string path_to_read(std::u16string_view path) const;
  std::u16string path_to_write(std::u16string_view path);
  std::u16string scratch_path(std::u16string_view name);
  // Frees a name for a real file that the run needs on its way. When the FolderRun is destroyed, that file is removed
  // and the one that had the name before is back, whatever becomes of the run. Throws `failure` 75 for a folder and 70
  // for a name that an outer run has borrowed.
  void borrow(std::u16string_view path);
  // Notes a real file that something else made for the run: it is removed when the outermost run ends.
  void note_temporary_file(std::u16string_view path);

  // Waits for a run that works in a folder, and cleans up after one that was stopped there: until then its files may
  // not belong together. For a step that decides by them what there is to do; no run begins while it keeps the lock.
  // nullptr for a folder that is not there. Throws as the constructor does.
  [[nodiscard]] static std::unique_ptr<FileLock> settle(std::u16string_view folder, const Report& report);

  // A message with the paths of scratch files replaced by those of the files that the user knows.
  static std::u16string without_scratch_folder(std::u16string_view text);

 private:
  class Work;
  struct Saved;

  std::shared_ptr<Work> work_;
  std::unique_ptr<Saved> saved_;
  bool is_outermost_;
  bool is_committed_ = false;
};

}  // namespace kavo
