#include "cli/folder_options.h"

#include <algorithm>

#include "driver/tud_name.h"
#include "platform/files.h"
#include "platform/unicode.h"

namespace kavo {

void FolderOptions::add_to(CLI::App& app) {
  app.add_flag("-r,--recursive", recursive_, "In a folder: also work on the files of its sub-folders");
  app.add_option("--include", include_, "In a folder: only files that a pattern selects: \"*.asp\", \"shop/**/*.htm\"")
      ->type_name("PATTERN")
      ->allow_extra_args(false);
  app.add_option("--exclude", exclude_, "In a folder: no files that a pattern selects: \"drafts\", \"*.bak\"")
      ->type_name("PATTERN")
      ->allow_extra_args(false);
}

FolderSelection FolderOptions::selection() const {
  FolderSelection selection{.recursive = recursive_, .include = {}, .exclude = {}};
  selection.leave_out = project_.outputs;
  selection.trees = project_.trees;
  for (const std::string& pattern : include_) selection.include.push_back(to_utf16(pattern));
  for (const std::string& pattern : exclude_) selection.exclude.push_back(to_utf16(pattern));
  return selection;
}

std::vector<FolderFile> FolderOptions::bilingual_documents(const std::vector<std::u16string>& given,
                                                           const std::vector<std::string>& languages) const {
  const auto is_wanted = [&](const std::u16string& path) {
    return is_bilingual_name(path) &&
           (languages.empty() || std::ranges::any_of(languages, [&](const std::string& language) {
              return equal_ignoring_ascii_case(TudName(path).language(), to_utf16(language));
            }));
  };
  return files_meant(given, selection(), is_wanted);
}

std::string for_language(std::string folder, const std::string& language) {
  constexpr std::string_view kLanguage = "{lang}";
  for (std::size_t at; (at = folder.find(kLanguage)) != std::string::npos;)
    folder.replace(at, kLanguage.size(), language);
  return folder;
}

std::vector<std::u16string> paths_of(const std::vector<FolderFile>& files) {
  std::vector<std::u16string> paths;
  paths.reserve(files.size());
  for (const FolderFile& file : files) paths.push_back(file.path);
  return paths;
}

}  // namespace kavo
