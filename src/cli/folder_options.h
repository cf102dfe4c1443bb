// The options of every verb that takes folders. They choose which of the files count.
#pragma once

#include <CLI/App.hpp>
#include <string>
#include <vector>

#include "workflow/folder_files.h"

namespace kavo {

// The folders of the project that the command works in, if any (core paths).
struct ProjectFolders {
  std::vector<std::u16string> trees;    // with the files that the verb works on
  std::vector<std::u16string> outputs;  // with what preparing and rebuilding make
};

class FolderOptions {
 public:
  void add_to(CLI::App& app);
  // What the project adds, before selection() is asked: its folders (see FolderSelection).
  void project_folders(ProjectFolders folders) { project_ = std::move(folders); }
  FolderSelection selection() const;
  // The bilingual documents among the given files and in the given folders, in one of these languages (none given: in
  // any).
  std::vector<FolderFile> bilingual_documents(const std::vector<std::u16string>& given,
                                              const std::vector<std::string>& languages = {}) const;

 private:
  bool recursive_ = false;
  std::vector<std::string> include_;
  std::vector<std::string> exclude_;
  ProjectFolders project_;
};

// A folder's name with the language in the place of "{lang}".
std::string for_language(std::string folder, const std::string& language);

std::vector<std::u16string> paths_of(const std::vector<FolderFile>& files);

}  // namespace kavo
