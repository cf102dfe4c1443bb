// The project file: kavo.json in the current folder or above it holds options, so that the command line need not.
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
  // `folder` is put before its paths: "" or "../". Throws `failure` 5 for anything that is not allowed in the file.
  ProjectFile(std::string_view text, std::string folder);

  // Sets the verb's options that the command line does not set. Throws `failure` 5 for a value that an option refuses.
  void complete(CLI::App& app, std::string_view verb) const;
  // "../kavo.json"
  std::string name() const { return folder_ + std::string(kProjectFile); }
  // The project's folders for a verb.
  ProjectFolders folders(std::string_view verb) const;
  // Stores the project's settings in ports().registry, which must be the project's own. Throws `failure` 5 for a value
  // that a setting cannot have.
  void store_settings() const;

 private:
  void check(const ProjectKey& key, const nlohmann::ordered_json& value) const;
  void check_settings(const std::string& pointer, const nlohmann::ordered_json& settings, const std::string& group)
      const;
  void check_setting(const std::string& place, const std::string& group, const std::string& name,
                     const nlohmann::ordered_json& value) const;
  std::vector<std::string> texts(const ProjectKey& key) const;
  std::string path(const std::string& written) const;
  [[noreturn]] void refuse(const std::string& pointer, const std::string& problem) const;

  std::string folder_;
  PlacedJson json_;
};

}  // namespace kavo
