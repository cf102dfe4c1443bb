#include "common/object_file_guard.h"

#include <string>

#include "common/block_reader.h"
#include "platform/failure.h"
#include "platform/ports.h"

namespace kavo {
namespace {

constexpr std::string_view kStarts[] = {"<KAVOObj ", "{\\v\\mor OBJ "};  // of MIF and of RTF
constexpr std::uint64_t kLongestEmptyFile = 32;                          // bytes: the closing marker alone

}  // namespace

void refuse_foreign_objects(std::u16string_view path, std::string_view own_start) {
  const auto info = ports().files->info(path);
  if (!info || info->is_folder || info->size <= kLongestEmptyFile) return;
  BlockReader reader(path);
  reader.more();
  for (const std::string_view start : kStarts)
    if (start != own_start && reader.window().starts_with(start))
      throw failure(FailureNumber::kFileAlreadyExists,
                    std::u16string(path) +
                        u" holds the objects of another document: put them back first, or name another object file");
}

}  // namespace kavo
