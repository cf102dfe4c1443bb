#include "common/checksum.h"

#include "common/block_reader.h"
#include "platform/fnv_hash.h"

namespace kavo {

std::uint64_t checksum_of_file(std::u16string_view path) {
  std::uint64_t sum = kFnvSeed;
  for (BlockReader reader(path); reader.more(); reader.consume(reader.window().size()))
    sum = fnv_add(sum, reader.window());
  return sum;
}

}  // namespace kavo
