// The project: kavo.json in the current folder or one above it says what the command line need not.
#pragma once

#include <CLI/App.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/folder_options.h"
#include "cli/placed_json.h"
#include "workflow/project_keys.h"
#include "platform/registry.h"

namespace kavo {

// An error in it is reported with the file and the line, and with the nearest known key or the values that are allowed.
class ProjectFile {
 public:
  // The file of the current folder or of the nearest one above it, up to the user's home or the top. Nothing when there
  // is none. Throws `failure` for a file that cannot be read.
  static std::optional<ProjectFile> find();
  // `folder` is what stands before its paths: "" or "../". Throws `failure` 5 for anything that the file may not hold.
  ProjectFile(std::string_view text, std::string folder);

  // The options of the verb that the command line did not choose. Throws `failure` 5 for a value that an option refuses.
  void complete(CLI::App& app, std::string_view verb) const;
  // "../kavo.json"
  std::string name() const { return folder_ + std::string(kProjectFile); }
  // Its folders for a verb.
  ProjectFolders folders(std::string_view verb) const;
  // Stores what the project sets in ports().registry, which is that of the project then. Throws `failure` 5 for a value
  // that a setting cannot have.
  void store_settings() const;

 private:
  void check(const ProjectKey& key, const nlohmann::ordered_json& value) const;
  void check_settings(const std::string& pointer, const nlohmann::ordered_json& settings, const std::string& group)
      const;
  std::vector<std::string> texts(const ProjectKey& key) const;
  std::string path(const std::string& written) const;
  [[noreturn]] void refuse(const std::string& pointer, const std::string& problem) const;

  std::string folder_;
  PlacedJson json_;
};

}  // namespace kavo
