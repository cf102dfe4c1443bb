// The journal of a run: what it is about to do to real files, written down beforehand, so that the next run can finish
// or undo what a killed one began.
//
// The journal is a file in the run's scratch folder. Each new state of it is written behind the last one, and the last
// complete one counts, so a reader never finds half of a state. kPlacing counts only from the moment when the new files
// are on the disk and the journal has got another name.
//
// It protects the documents from a run that is killed. It protects them only partly from a power cut: a journal that
// names the user's files, and the new files, are on the disk before anything is changed, but the renames themselves are
// not forced onto the disk. Paths are absolute.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace kavo {

inline constexpr std::u16string_view kJournalName = u"journal";

struct RunJournal {
  enum class State {
    kWorking,  // nothing has taken its final name
    kPlacing,  // all new files are complete and take their names
    kUndoing,  // a new file could not take its name, so the old files come back
  };
  // A name that the run uses for a file of its own while it works.
  struct Borrowed {
    std::u16string path;
    std::u16string aside;  // where the user's file of that name waits, "" when there was none
  };
  // A name whose file the run replaces or removes.
  struct Change {
    std::u16string path;
    std::u16string scratch;  // the new file, "" when the name is only removed
    std::u16string aside;    // a second name of the old file, "" when there is no old file
  };

  State state = State::kWorking;
  std::vector<Borrowed> borrowed;
  std::vector<Change> changes;
  std::vector<std::u16string> temporary_files;  // of the run's own, outside of its scratch folder
};

// Adds a state to the journal in the scratch folder `folder`. One whose state is kPlacing has the new files flushed.
// Throws `failure`, and then the state before it counts still.
void write_journal(FileSystem& files, const std::u16string& folder, const RunJournal& journal);
// Reads the last complete state. A journal without any, because its run was killed or a power cut emptied it, reads as
// that of a run that has changed nothing. Throws `failure` when it cannot be read, 5 when it is damaged, 53 when there
// is none.
RunJournal read_journal(FileSystem& files, const std::u16string& folder);
// Empties the journal of a run that has nothing left to do. The emptied one reads as that of a run that has changed
// nothing. Throws `failure`.
void clear_journal(FileSystem& files, const std::u16string& folder);

// The steps that a run takes, or the next run when it cleans up after a killed one. Each can be repeated after it was
// interrupted. All throw `failure`.
//
// Gives the new file its name, or removes the name.
void place(FileSystem& files, const RunJournal::Change& change);
// Brings the old file back, or removes the new one.
void undo(FileSystem& files, const RunJournal::Change& change);
// Removes the run's file and gives the user's file its name back.
void give_back(FileSystem& files, const RunJournal::Borrowed& borrowed);
// Removes a file, read-only or not, if it exists.
void remove_if_there(FileSystem& files, const std::u16string& path);
// Removes a folder with everything in it, if it exists.
void remove_tree(FileSystem& files, const std::u16string& folder);

}  // namespace kavo
