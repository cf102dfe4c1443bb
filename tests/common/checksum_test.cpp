#include "common/checksum.h"

#include <gtest/gtest.h>

#include "common/block_reader.h"
#include "platform/fnv_hash.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

class ChecksumTest : public PortsFixture {};

// The values that the algorithm's authors publish: they are stored in documents and must never change.
TEST_F(ChecksumTest, IsFnv1aOfAllBytesAtEveryBlockSize) {
  const struct {
    std::string_view bytes;
    std::uint64_t value;
  } cases[] = {
      {"", 0xCBF29CE484222325},
      {"a", 0xAF63DC4C8601EC8C},
      {"foobar", 0x85944171F73967E8},
      {"\xFF", 0xAF64724C8602EB6E},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(fnv_hash(c.bytes), c.value) << c.bytes;
    files.put(u"C:\\a", c.bytes);
    for (const std::size_t size : {1, 2, 100}) {
      const BlockSizeScope scope(size);
      EXPECT_EQ(checksum_of_file(u"C:\\a"), c.value) << c.bytes;
    }
  }
}

}  // namespace
}  // namespace kavo::test
