// The files that a run writes: a run that fails leaves every folder as it was.
//
// An old file of a name is kept aside as "<name>.kavo-old" until the run has succeeded, because converters and filters
// of others may write straight onto a name. A program that is killed in between leaves the old file whole under that
// name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kavo {

class RunFiles {
 public:
  RunFiles() = default;
  // Unless keep() was called: removes what the run has written and puts the old files back. One that cannot be put back
  // stays whole under its other name.
  ~RunFiles();
  RunFiles(const RunFiles&) = delete;
  RunFiles& operator=(const RunFiles&) = delete;

  // A file that the run has written, or will write where nothing is.
  void add(std::u16string_view path);
  // A name in the temporary folder for a file that the run writes on its way; the run removes it when it fails.
  std::u16string add_scratch(std::u16string_view extension);
  // The name is free afterwards: a file of that name is moved aside, read-only or not. Throws `failure` when it cannot
  // be moved (another program has it open, it is a folder); it is then where it was.
  void make_way_for(std::u16string_view path);
  // The same for a file that the run writes on its way: the name is as it was when the run ends, however that is.
  void borrow(std::u16string_view path);
  // The same for a writer that is to find the old file and decides itself what becomes of it: a copy is kept aside.
  void keep_copy_of(std::u16string_view path);
  // The run has succeeded: its files stay, the old ones go.
  void keep();

 private:
  struct Entry {
    std::u16string path;
    std::u16string old;  // where the file that was there is now, "" when there was none
    bool is_new;         // whatever has the name now was written by the run
    bool is_borrowed = false;
  };
  static void put_back(const Entry& entry);

  std::vector<Entry> entries_;
};

// True for a file, false for a folder and for nothing.
bool is_file(std::u16string_view path);
// True when both names mean one file. Throws `failure` for a name that cannot be.
bool is_same_file(std::u16string_view a, std::u16string_view b);
// Throws `failure` 58 when the folder holds another file whose name differs in letter case only, as some systems allow:
// to all that is named after the two they are one.
void refuse_twin(std::u16string_view path);

}  // namespace kavo
