// The file system as a run sees it. The run sees its own changes at once, while the real files stay as they are.
//
// Each written file is in a numbered folder below the run's scratch folder and has its own name there, so that other
// programs that read it see the right name. A later write makes another scratch file and never changes an older one, so
// a copy of the view is enough to go back to an earlier state. Four kinds of paths lead to the real files: those in the
// scratch folder, files directly in the temporary folder (they are noted), files in a work folder there, and names that
// the run has borrowed.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/case_fold.h"
#include "platform/files.h"

namespace kavo {

// The path of a numbered folder, from 1 on.
std::u16string numbered_scratch_folder(const std::u16string& scratch, std::size_t number);

class StagedFiles final : public FileSystem {
 public:
  // A name whose file differs from the real one.
  struct Entry {
    std::u16string path;     // absolute
    std::u16string scratch;  // the new file, absolute; "" when the name is gone
  };
  struct View {
    std::map<std::u16string, Entry, LessIgnoringCase> entries;   // by absolute path
    std::map<std::u16string, bool, LessIgnoringCase> read_only;  // real files whose attribute differs
  };
  struct Needs {
    std::function<void()> scratch_folder;                          // makes it, before the first file is put there
    std::function<void(std::u16string_view path)> temporary_file;  // notes a temporary file before it is made
  };

  // `folder` is the scratch folder, absolute and without "\" at its end. The real file system must outlive the object.
  StagedFiles(FileSystem& real, std::u16string folder, Needs needs);

  FileSystem& real() const { return real_; }
  const View& view() const { return view_; }
  void view(View view) { view_ = std::move(view); }

  // The real path under which other modules and programs read a file of the view; the path itself for a real one.
  std::u16string path_to_read(std::u16string_view path) const;
  // The same for a file that they write. What they write there becomes the new file with that name. Throws `failure` 75
  // for a folder.
  std::u16string path_to_write(std::u16string_view path);
  // A path in the scratch folder that is free and ends with this name.
  std::u16string scratch_path(std::u16string_view name);
  // How many numbered folders there are in the scratch folder. They are made when they are needed.
  std::size_t numbered_folders() const { return numbered_folders_; }
  // Takes over a scratch folder that has this many of them, all empty.
  void numbered_folders(std::size_t count) { numbered_folders_ = count; }

  // While a name is borrowed, it means the real file.
  void borrow(std::u16string_view path);
  void give_back(std::u16string_view path);

  std::unique_ptr<File> open(std::u16string_view path, Access access) override;
  std::optional<FileInfo> info(std::u16string_view path) override;
  std::optional<FileIdentity> identity(std::u16string_view path) override;
  std::vector<std::u16string> find(std::u16string_view pattern) override;
  void make_folder(std::u16string_view path) override { real_.make_folder(path); }
  void remove_folder(std::u16string_view path) override { real_.remove_folder(path); }
  void remove_file(std::u16string_view path) override;
  void rename_file(std::u16string_view from, std::u16string_view to) override;
  // The second name is a copy.
  void link_file(std::u16string_view path, std::u16string_view second_name) override;
  // Does nothing. The new files are forced onto the disk when they are put in place.
  void flush(const std::vector<std::u16string>&) override {}
  void set_read_only(std::u16string_view path, bool read_only) override;
  std::unique_ptr<FileLock> lock(std::u16string_view path) override { return real_.lock(path); }
  std::u16string link_target(std::u16string_view path) override;
  void take_permissions(std::u16string_view path, std::u16string_view model, Permissions which) override;
  // A run in a work folder keeps its temporary files there, so that they are deleted with the folder however the run
  // ends.
  std::u16string temporary_folder() override;
  std::u16string absolute(std::u16string_view path) override { return full_path(path); }
  // A place in the scratch folder, so that the rename at the end only changes the view. A new file that is there anyway
  // is written under its own name. Throws `failure` 76 when the folder of `path` does not exist.
  std::u16string draft_path(std::u16string_view path, bool replaces) override;

 private:
  using Entries = decltype(View::entries);

  std::u16string full_path(std::u16string_view path) const;
  bool passes_through(const std::u16string& path) const;
  bool is_temporary(const std::u16string& path) const;
  std::u16string work_folder_of(const std::u16string& path) const;
  bool is_in_other_work_folder(const std::u16string& path) const;
  // The real path of a view's name for reading: a scratch file, or the real one. Throws 53 for a name that is gone.
  std::u16string existing(std::u16string_view path) const;
  void check_replaceable(const std::u16string& path, const std::optional<FileInfo>& old);
  void check_folder_of(const std::u16string& path);
  // Makes the name mean the scratch file, or nothing ("").
  void set(const std::u16string& path, std::u16string scratch);
  std::u16string copy_into_scratch(const std::u16string& path);

  FileSystem& real_;
  std::u16string folder_;
  std::u16string current_folder_;    // of the program, with "\" at its end
  std::u16string temporary_folder_;  // with "\" at its end
  Needs needs_;
  View view_;
  std::vector<std::u16string> borrowed_;
  std::set<std::u16string, LessIgnoringCase> taken_;  // places in the scratch folder
  std::size_t numbered_folders_ = 0;                  // how many numbered folders there are
};

}  // namespace kavo
