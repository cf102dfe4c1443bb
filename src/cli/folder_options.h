// The options of every verb that takes folders: which of their files are meant.
#pragma once

#include <CLI/App.hpp>
#include <string>
#include <vector>

#include "workflow/folder_files.h"

namespace kavo {

class FolderOptions {
 public:
  void add_to(CLI::App& app);
  FolderSelection selection() const;
  // The bilingual documents that the given files and folders stand for, in one of these languages (none: in any).
  std::vector<FolderFile> bilingual_documents(const std::vector<std::u16string>& given,
                                              const std::vector<std::string>& languages = {}) const;

 private:
  bool recursive_ = false;
  std::vector<std::string> include_;
  std::vector<std::string> exclude_;
};

std::vector<std::u16string> paths_of(const std::vector<FolderFile>& files);

}  // namespace kavo
