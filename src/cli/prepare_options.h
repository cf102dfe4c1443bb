// The options of kavo prepare: all that bilingual documents depend on besides their source.
#pragma once

#include <CLI/App.hpp>
#include <cstdint>
#include <string>
#include <vector>

#include "cli/folder_options.h"

namespace kavo {

class PrepareOptions {
 public:
  void add_to(CLI::App& app);

  std::vector<std::u16string> targets() const;
  // A line NAME=VALUE for each, as RunLanguages takes them. Throws `failure` for values that contradict each other.
  std::u16string filter_options() const;
  // The code page of rebuilt documents, 0 for the default. An option for this language has precedence over one for all
  // languages.
  std::int32_t target_code_page(const std::u16string& language) const;
  // A checksum of everything but the source that the bilingual documents of a language depend on, settings included.
  std::string checksum(const std::u16string& language) const;

  std::string source;  // the language
  std::string target;  // languages, with commas between
  FolderOptions folders;
  std::string output_folder;
  bool overwrite = false;
  bool no_repair = false;
  bool fresh = false;

 private:
  std::vector<std::string> target_code_pages_;  // "932", "JA=932"
  std::string scripts_;
  std::string paragraphs_;
  std::vector<std::string> filter_options_;
};

}  // namespace kavo
