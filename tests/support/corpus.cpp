#include "support/corpus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "common/block_reader.h"
#include "platform/case_fold.h"
#include "platform/files.h"
#include "platform/unicode.h"
#include "support/system.h"

namespace kavo::test {

namespace fs = std::filesystem;

std::optional<std::u16string> corpus_folder() {
  const char* named = std::getenv("KAVO_CORPUS");
  const std::u16string folder = path_from_host(named && *named ? named : KAVO_DEFAULT_CORPUS);
  std::error_code ignored;
  return fs::is_directory(to_filesystem_path(folder), ignored) ? std::optional(folder) : std::nullopt;
}

std::vector<std::u16string> corpus_files(std::u16string_view kind,
                                         std::initializer_list<std::u16string_view> extensions) {
  std::vector<std::u16string> paths;
  const std::optional<std::u16string> corpus = corpus_folder();
  if (!corpus) return paths;
  const std::u16string folder = *corpus + u'\\' + std::u16string(kind);
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(to_filesystem_path(folder), error)) {
    if (!entry.is_regular_file()) continue;
    std::u16string extension = entry.path().extension().u16string();
    if (extension.starts_with(u'.')) extension.erase(0, 1);
    const bool wanted =
        extensions.size() == 0 || std::any_of(extensions.begin(), extensions.end(), [&](std::u16string_view candidate) {
          return equal_ignoring_case(extension, candidate);
        });
    if (wanted) paths.push_back(folder + u'\\' + entry.path().filename().u16string());
  }
  if (paths.empty()) ADD_FAILURE() << "the corpus has no such documents: " << to_utf8(folder);
  std::sort(paths.begin(), paths.end());
  return paths;
}

std::string read_whole(std::u16string_view path) {
  std::string bytes;
  for (BlockReader reader(path); reader.more(); reader.consume(reader.window().size())) bytes += reader.window();
  return bytes;
}

}  // namespace kavo::test
