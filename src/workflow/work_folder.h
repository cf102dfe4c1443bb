// A scratch folder of the command. It is removed with everything in it.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "platform/files.h"

namespace kavo {

class WorkFolder {
 public:
  // Makes a new folder in the user's temporary folder, accessible only to this user where the system supports that.
  // First removes what killed runs have left, and reports it on standard error. Throws `failure`.
  WorkFolder();
  // Reports on standard error what cannot be removed.
  ~WorkFolder();
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;

  // Makes a sub-folder with that name and returns its core path. Throws `failure`.
  std::u16string make(std::string_view name) const;

 private:
  std::filesystem::path path_;
  std::unique_ptr<FileLock> lock_;
};

}  // namespace kavo
