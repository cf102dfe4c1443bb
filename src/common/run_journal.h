// What a run is about to do to real files, written down before it does it, so that the next run can finish or undo what
// a killed one began.
//
// The journal lies in the run's scratch folder and is replaced as a whole: it is there in one of its states or not at
// all. Promised against a run that is killed, not against a power cut. Paths are absolute.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace kavo {

struct RunJournal {
  enum class State {
    kWorking,  // nothing has taken its final name
    kPlacing,  // all new files are complete and take their names
    kUndoing,  // one could not: the old files come back
  };
  // A name that the run uses for a file of its own while it works.
  struct Borrowed {
    std::u16string path;
    std::u16string aside;  // where the file of that name waits, "" when there was none
  };
  // A name whose file the run replaces or removes.
  struct Change {
    std::u16string path;
    std::u16string scratch;  // the new file, "" for none
    std::u16string aside;    // a second name of the old file, "" when there was none
  };

  State state = State::kWorking;
  std::vector<Borrowed> borrowed;
  std::vector<Change> changes;
  std::vector<std::u16string> temporary_files;  // of the run's own, outside of its scratch folder
};

// Throws `failure`: the old journal is then still there.
void write_journal(FileSystem& files, const std::u16string& folder, const RunJournal& journal);
// Throws `failure` when it cannot be read, 5 when it is damaged, 53 when there is none.
RunJournal read_journal(FileSystem& files, const std::u16string& folder);

// The steps that both a run and the one that cleans up behind it take. Each can be taken again after it was broken off.
void place(FileSystem& files, const RunJournal::Change& change);
void undo(FileSystem& files, const RunJournal::Change& change);
void give_back(FileSystem& files, const RunJournal::Borrowed& borrowed);
void remove_if_there(FileSystem& files, const std::u16string& path);
// Removes a folder with all that it holds; nothing when there is none.
void remove_tree(FileSystem& files, const std::u16string& folder);

}  // namespace kavo
