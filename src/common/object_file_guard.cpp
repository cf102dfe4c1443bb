#include "common/object_file_guard.h"

#include <algorithm>
#include <string_view>

#include "common/block_reader.h"
#include "platform/failure.h"
#include "platform/ports.h"

namespace kavo {
namespace {

// Object files without objects, of MIF and of RTF.
constexpr std::string_view kEmptyFiles[] = {"", "<KAVOObj End>\r\n", "{\\v\\mor OBJ 1 }\r\n"};

// The bytes at hand, after reading until there are some or the file ends.
std::string_view next_bytes(BlockReader& reader) {
  while (reader.window().empty() && reader.more()) {
  }
  return reader.window();
}

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

bool have_same_content(std::u16string_view first, std::u16string_view second) {
  BlockReader one(first);
  BlockReader two(second);
  if (one.size() != two.size()) return false;
  for (;;) {
    const std::string_view a = next_bytes(one);
    const std::string_view b = next_bytes(two);
    const std::size_t length = std::min(a.size(), b.size());
    if (a.substr(0, length) != b.substr(0, length)) return false;
    if (length == 0) return a.size() == b.size();
    one.consume(length);
    two.consume(length);
  }
}

}  // namespace

void refuse_to_lose_objects(PendingFile& objects) {
  objects.complete();
  const std::u16string& path = objects.final_path();
  const auto old = ports().files->info(path);
  if (!old || old->is_folder) return;  // the commit says what is wrong with a folder
  if (is_empty_object_file(path) || have_same_content(path, objects.temporary_path())) return;
  throw failure(FailureNumber::kFileAlreadyExists,
                u"It holds something else than the objects of this document: name another object file, or have it "
                u"replaced on purpose");
}

}  // namespace kavo
