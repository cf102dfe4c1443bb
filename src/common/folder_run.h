// One run's work on the documents of a folder: all of it takes place, or none.
//
// While a FolderRun lives, the thread's files port is a StagedFiles: the converters and filters below it write under the
// names that they mean, and nothing real changes. commit() puts all of it in place; without it everything is as it was.
// One run at a time works in a folder; another one waits. Scratch files lie in the sub-folder ".kavo-run", with a
// journal: when a run is killed, the next one in that folder finishes what was being put in place, or removes what was
// not, before it begins.
//
// A FolderRun inside another one of the thread is a part of it: what it commits takes place with the outer one.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace kavo {

class FolderRun {
 public:
  // A sentence for the user: what a killed run left, that another run is waited for, what could not be cleaned up.
  using Report = std::function<void(const std::u16string& message)>;

  // Works in the folder of `document`, whose permissions new files get (it need not exist). Throws `failure` 76 for a
  // folder that does not exist, 70 when another run has it for longer than a minute, 18 when the user interrupts the
  // waiting, and what the clean-up behind a killed run meets.
  explicit FolderRun(std::u16string_view document, Report report = {});
  // Without commit() before it: everything is as it was. Never throws; what cannot be cleaned up is reported.
  ~FolderRun();
  FolderRun(const FolderRun&) = delete;
  FolderRun& operator=(const FolderRun&) = delete;

  // Puts everything in place. Throws `failure`, which names the file: everything is then as it was.
  void commit();

  // For files that other modules and programs read or write, which know real files only; see StagedFiles.
  std::u16string path_to_read(std::u16string_view path) const;
  std::u16string path_to_write(std::u16string_view path);
  std::u16string scratch_path(std::u16string_view name);
  // Frees a name for a real file that the run makes on its way, until the FolderRun is destroyed: then that file goes
  // and one that was there before is back, whatever becomes of the run. Throws `failure` 75 for a folder and 70 for a name that the outer run has borrowed.
  void borrow(std::u16string_view path);
  // A real file of the run's own, which others have made: it goes when the outermost run ends.
  void note_temporary_file(std::u16string_view path);

  // What a message says about scratch files, said about the files that the user knows.
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
