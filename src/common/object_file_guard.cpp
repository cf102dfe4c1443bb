#include "common/object_file_guard.h"

#include <string_view>

#include "common/block_reader.h"
#include "common/file_comparison.h"
#include "platform/failure.h"
#include "platform/ports.h"

namespace kavo {
namespace {

// Object files without objects, of MIF and of RTF.
constexpr std::string_view kEmptyFiles[] = {"", "<KAVOObj End>\r\n", "{\\v\\mor OBJ 1 }\r\n"};

bool is_empty_object_file(std::u16string_view path) {
  BlockReader reader(path);
  for (const std::string_view empty : kEmptyFiles) {
    if (reader.size() != empty.size()) continue;
    while (reader.more()) {
    }
    if (reader.window() == empty) return true;
  }
  return false;
}

}  // namespace

void refuse_to_lose_objects(PendingFile& objects) {
  objects.complete();
  const std::u16string& path = objects.final_path();
  const auto old = ports().files->info(path);
  if (!old || old->is_folder) return;  // the commit reports a folder
  if (is_empty_object_file(path) || !first_difference(path, objects.temporary_path())) return;
  throw failure(FailureNumber::kFileAlreadyExists,
                u"It contains something other than the objects of this document: name another object file, or allow "
                u"this one to be replaced");
}

}  // namespace kavo
