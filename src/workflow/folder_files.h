// Finds the files that a person means by naming a folder.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace kavo {

struct FolderFile {
  std::u16string path;
  // The path from the named folder. For a file that was named itself: its path from the tree that contains it, or else
  // its name.
  std::u16string relative;
};

struct FolderSelection {
  bool recursive = false;               // folders in folders, too
  std::vector<std::u16string> include;  // patterns (path_pattern.h); none for all files
  std::vector<std::u16string> exclude;
  std::vector<std::u16string> leave_out{};  // folders, whatever their names: those of the outputs
  // Folders whose files have their place in the tree even when they are named one by one.
  std::vector<std::u16string> trees{};
};

// Waits for a run that works in the folder, and cleans up after one that was killed there, with a message on standard
// error. No run begins there while the lock exists. Throws `failure`.
[[nodiscard]] std::unique_ptr<FileLock> settle_folder(std::u16string_view folder);

// The files of a folder in the order of their names, followed by those of its sub-folders. Names that begin with a dot
// are left out, and so is a folder that was seen already (through a link that leads back). Throws `failure` for a
// folder that cannot be read. Each folder is settled first.
std::vector<FolderFile> files_of_folder(std::u16string_view folder, const FolderSelection& selection);

// Replaces each given folder by its files that `accepts` takes. Given files stay. Throws `failure` 53 for a folder
// without such files.
using Accepts = std::function<bool(const std::u16string& path)>;
std::vector<FolderFile> files_meant(const std::vector<std::u16string>& given, const FolderSelection& selection,
                                    const Accepts& accepts);

// The documents of a tree that can be prepared: their type has a filter, and they were not made by preparing or
// rebuilding another one.
std::vector<FolderFile> sources_meant(const std::vector<std::u16string>& given, const FolderSelection& selection);

// The other files of a folder and its sub-folders: no documents, and nothing that this command made or reads.
std::vector<FolderFile> rest_of_folder(std::u16string_view folder, const FolderSelection& selection);

// Whether a name is that of a bilingual document.
bool is_bilingual_name(std::u16string_view path);

// "folder" and "a\b" give "folder\a\b".
std::u16string path_in(std::u16string_view folder, std::u16string_view relative);

}  // namespace kavo
