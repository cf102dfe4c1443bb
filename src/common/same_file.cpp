#include "common/same_file.h"

#include <string>

#include "common/path_parts.h"
#include "platform/case_fold.h"
#include "platform/ports.h"

namespace kavo {

bool is_same_file(std::u16string_view a, std::u16string_view b) {
  FileSystem& files = *ports().files;
  const auto first = files.identity(a);
  const auto second = files.identity(b);
  if (first && second) return *first == *second;
  if (first || second) return false;
  // Neither file exists yet. A link to a missing file counts as that file.
  const std::u16string first_path = files.absolute(files.link_target(a));
  const std::u16string second_path = files.absolute(files.link_target(b));
  if (equal_ignoring_case(first_path, second_path)) return true;
  if (!equal_ignoring_case(file_name_of(first_path), file_name_of(second_path))) return false;
  const auto first_folder = files.identity(folder_of(first_path));
  return first_folder && first_folder == files.identity(folder_of(second_path));
}

}  // namespace kavo
