// A scratch folder of the command, which goes with all it holds.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "platform/files.h"

namespace kavo {

class WorkFolder {
 public:
  // A new folder in the user's temporary one, for this user only where the system tells users apart. What killed runs
  // have left there goes first, with a word on standard error. Throws `failure`.
  WorkFolder();
  // Tells on standard error what cannot be removed.
  ~WorkFolder();
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;

  // Makes a folder of that name in it and returns its core path. Throws `failure`.
  std::u16string make(std::string_view name) const;

 private:
  std::filesystem::path path_;
  std::unique_ptr<FileLock> lock_;
};

}  // namespace kavo
