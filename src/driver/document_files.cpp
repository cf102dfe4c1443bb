#include "driver/document_files.h"

#include <string>
#include <vector>

#include "common/path_parts.h"
#include "platform/case_fold.h"
#include "platform/failure.h"
#include "platform/formatted.h"
#include "platform/ports.h"

namespace kavo {

bool is_file(std::u16string_view path) {
  const auto info = ports().files->info(path);
  return info && !info->is_folder;
}

namespace {

// The folder may hold the name in other letters than it was given.
std::vector<std::u16string> spellings_of(std::u16string_view path) {
  const std::u16string name = file_name_of(path);
  std::vector<std::u16string> found = ports().files->find(path);
  std::erase_if(found, [&](const std::u16string& other) { return !equal_ignoring_case(other, name); });
  return found;
}

}  // namespace

std::u16string named_as_in_folder(std::u16string_view path) {
  const std::vector<std::u16string> found = spellings_of(path);
  return found.size() == 1 ? folder_of(path) + found[0] : std::u16string(path);
}

void refuse_twin(std::u16string_view path) {
  const std::vector<std::u16string> found = spellings_of(path);
  if (found.size() < 2) return;
  throw failure(
      FailureNumber::kFileAlreadyExists,
      formatted(u"The names {} and {} differ in letter case only; rename one of the files", found[0], found[1]));
}

}  // namespace kavo
