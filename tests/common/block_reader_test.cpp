#include "common/block_reader.h"

#include <gtest/gtest.h>

#include <string>

#include "common/progress_event.h"
#include "common/sparse_files.h"
#include "platform/failure.h"
#include "support/faulty_files.h"
#include "support/ports_fixture.h"
#include "support/splits.h"

namespace kavo::test {
namespace {

constexpr std::u16string_view kFile = u"C:\\WORK\\data";

std::string numbered_bytes(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7 + i / 251);
  return bytes;
}

class BlockReaderTest : public PortsFixture {};

TEST_F(BlockReaderTest, GivesTheFileForEveryBlockSizeAndAnyConsumption) {
  const std::string bytes = numbered_bytes(200);
  files.put(kFile, bytes);
  for (std::size_t kept = 0; kept < 5; ++kept)
    same_for_every_block_size(bytes.size(), [&](std::size_t block) {
      const BlockSizeScope scope(block);
      BlockReader reader(kFile);
      std::string read;
      while (reader.more()) {
        EXPECT_EQ(reader.position(), read.size());
        EXPECT_LE(reader.window().size(), block + kept);
        // Some bytes are always left, as of a token that is not complete.
        const std::size_t count = reader.window().size() > kept ? reader.window().size() - kept : 0;
        read += reader.window().substr(0, count);
        reader.consume(count);
      }
      EXPECT_TRUE(reader.exhausted());
      EXPECT_FALSE(reader.more());
      read += reader.window();
      EXPECT_EQ(read, bytes);
      return read;
    });
}

TEST_F(BlockReaderTest, EmptyFileHasNoBlock) {
  files.put(kFile, "");
  BlockReader reader(kFile);
  EXPECT_TRUE(reader.exhausted());
  EXPECT_FALSE(reader.more());
  EXPECT_EQ(reader.percent(), 100);
}

TEST_F(BlockReaderTest, MissingFileIsAFailure) {
  try {
    BlockReader reader(kFile);
    FAIL() << "opened";
  } catch (const failure& reason) {
    EXPECT_TRUE(reason.is(FailureNumber::kFileNotFound));
  }
}

TEST_F(BlockReaderTest, SeekContinuesAnywhereWithAnEmptyWindow) {
  const std::string bytes = numbered_bytes(100);
  files.put(kFile, bytes);
  const BlockSizeScope scope(7);
  BlockReader reader(kFile);
  for (const std::uint64_t position : {50, 3, 99, 100, 0}) {
    reader.more();
    reader.seek(position);
    EXPECT_TRUE(reader.window().empty());
    EXPECT_EQ(reader.position(), position);
    std::string rest;
    while (reader.more()) {
      rest += reader.window();
      reader.consume(reader.window().size());
    }
    EXPECT_EQ(rest, bytes.substr(static_cast<std::size_t>(position)));
  }
  reader.seek(1000);
  EXPECT_EQ(reader.position(), 100u);
}

TEST_F(BlockReaderTest, BlocksAreAHundredthOfTheFileWithinTheirLimits) {
  const auto first_block = [&](std::uint64_t size) {
    SparseFiles sparse(size);
    ports().files = &sparse;
    BlockReader reader(u"C:\\any");
    reader.more();
    return reader.window().size();
  };
  EXPECT_EQ(first_block(100), 100u);
  EXPECT_EQ(first_block(100'000), 4096u);
  EXPECT_EQ(first_block(1'000'000), 12288u);
  EXPECT_EQ(first_block(std::uint64_t{1} << 33), 256u * 1024);
}

TEST_F(BlockReaderTest, ReadErrorsAreRaised) {
  files.put(kFile, numbered_bytes(100));
  FaultyFiles faulty(files);
  ports().files = &faulty;
  const BlockSizeScope scope(30);
  const std::size_t faults = for_each_fault(
      faulty, {.number = FailureNumber::kDeviceError},
      [&](std::size_t) {
        try {
          BlockReader reader(kFile);
          while (reader.more()) {
          }
          EXPECT_EQ(reader.window().size(), 100u);
        } catch (const failure& reason) {
          EXPECT_TRUE(reason.is(FailureNumber::kDeviceError));
        }
      },
      [](std::size_t) {});
  EXPECT_GE(faults, 5u) << "open, size and four reads";
}

TEST(PercentOf, RoundsHalvesToTheEvenNumber) {
  const struct {
    std::uint64_t part, whole;
    std::int16_t percent;
  } cases[] = {
      {0, 200, 0},     {1, 200, 0},
      {2, 200, 1},     {3, 200, 2},
      {5, 200, 2},     {7, 200, 4},
      {199, 200, 100}, {197, 200, 98},
      {200, 200, 100}, {300, 200, 100},
      {0, 0, 100},     {1, 3, 33},
      {2, 3, 67},      {(std::uint64_t{1} << 63), ~std::uint64_t{0}, 50},
  };
  for (const auto& c : cases) EXPECT_EQ(percent_of(c.part, c.whole), c.percent) << c.part << " of " << c.whole;
}

class ProgressTest : public PortsFixture {};

TEST_F(ProgressTest, IsRaisedOnlyWhenItGrowsAndLetsTheHostRepaint) {
  std::vector<int> seen;
  ProgressEvent event;
  event.handler([&](std::int16_t percent) { seen.push_back(percent); });
  event.restart();
  for (const std::int16_t percent : {0, 0, 5, 3, 5, 6, 100, 100}) event.report(percent);
  EXPECT_EQ(seen, (std::vector<int>{0, 5, 6, 100}));
  EXPECT_EQ(desktop.process_messages_calls, 4u);
  event.restart();
  event.report(1);
  EXPECT_EQ(seen.back(), 1);
}

TEST_F(ProgressTest, WithoutHandlerTheHostStillRepaints) {
  ProgressEvent event;
  event.report(10);
  EXPECT_EQ(desktop.process_messages_calls, 1u);
}

TEST_F(ProgressTest, InterruptionIsRaised) {
  ProgressEvent event;
  request_interrupt();
  try {
    event.report(10);
    FAIL() << "not interrupted";
  } catch (const interruption&) {
  }
  event.report(11);
}

}  // namespace
}  // namespace kavo::test
