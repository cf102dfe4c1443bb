// The folders that a run makes for its results. Those that are empty at its end are removed, so that a run that fails
// leaves nothing.
#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

namespace kavo {

class MadeFolders {
 public:
  MadeFolders() = default;
  // Removes those that are empty.
  ~MadeFolders();
  MadeFolders(const MadeFolders&) = delete;
  MadeFolders& operator=(const MadeFolders&) = delete;

  // Makes a folder (a core path) and those above it, with the permissions of any new folder. Throws `failure`.
  void make(std::u16string_view folder);

 private:
  std::vector<std::filesystem::path> made_;  // those above first
};

}  // namespace kavo
