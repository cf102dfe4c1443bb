// Whatever fails, no document is lost.
#include <gtest/gtest.h>

#include <string>

#include "common/block_reader.h"
#include "office/rtf_fixture.h"
#include "support/faulty_files.h"

namespace kavo::test {
namespace {

constexpr std::string_view kWhole = "{\\rtf1 a{\\pict 00112233}b{\\object{\\result c}}d}";
constexpr std::string_view kMarked = "{\\rtf1 a{\\v\\mor OBJ 1 }b{\\v\\mor OBJ 2 }d}";
constexpr std::string_view kSide =
    "{\\v\\mor OBJ 1 }\r\n{\\pict 00112233}\r\n{\\v\\mor OBJ 2 }\r\n{\\object{\\result c}}\r\n{\\v\\mor OBJ 3 }\r\n";

struct FaultCase {
  const char* name;
  bool lasting;
  std::size_t partial_bytes;
};
constexpr FaultCase kFaults[] = {{"one operation fails", false, 0},
                                 {"one write stops in the middle", false, 5},
                                 {"everything fails from then on", true, 0}};

class RtfFaultTest : public RtfFixture {
 protected:
  RtfFaultTest() : faulty(files) { ports().files = &faulty; }
  FaultyFiles faulty;
};

TEST_F(RtfFaultTest, ExtractionKeepsTheDocumentWhole) {
  for (const FaultCase& c : kFaults) {
    for (const bool with_old_side_file : {false, true}) {
      SCOPED_TRACE(std::string(c.name) + (with_old_side_file ? ", old side file" : ""));
      std::int32_t result = 0;
      std::size_t messages = 0;
      const std::size_t faults = for_each_fault(
          faulty, {.lasting = c.lasting, .partial_bytes = c.partial_bytes},
          [&](std::size_t) {
            BlockSizeScope scope(16);
            for (const auto& path : files.all_files()) files.remove_file(path);
            files.put(kDocument, kWhole);
            if (with_old_side_file) files.put(kObjects, kNoObjects);
            clsRTFUtil util;
            util.RTFFile(kDocument);
            result = util.ExtractObjects();
            messages = util.ErrorList().size();
          },
          [&](std::size_t number) {
            SCOPED_TRACE(number);
            ASSERT_TRUE(files.has(kDocument));
            const std::string document = files.get(kDocument);
            if (result == 0) {
              // Only what comes after both files have their names may fail unseen.
              EXPECT_EQ(document, kMarked);
              EXPECT_EQ(files.get(kObjects), kSide);
              return;
            }
            EXPECT_EQ(messages, 1u);
            EXPECT_EQ(document, kWhole);
            if (!c.lasting) {
              EXPECT_EQ(files.has(kObjects), with_old_side_file);
              if (with_old_side_file) {
                EXPECT_EQ(files.get(kObjects), kNoObjects);
              }
            }
          });
      EXPECT_GT(faults, 15u);
    }
  }
}

TEST_F(RtfFaultTest, InsertionKeepsTheDocumentWhole) {
  for (const FaultCase& c : kFaults) {
    SCOPED_TRACE(c.name);
    std::int32_t result = 0;
    std::size_t messages = 0;
    const std::size_t faults = for_each_fault(
        faulty, {.lasting = c.lasting, .partial_bytes = c.partial_bytes},
        [&](std::size_t) {
          BlockSizeScope scope(16);
          for (const auto& path : files.all_files()) files.remove_file(path);
          files.put(kDocument, kMarked);
          files.put(kObjects, kSide);
          clsRTFUtil util;
          util.RTFFile(kDocument);
          result = util.InsertObjects();
          messages = util.ErrorList().size();
        },
        [&](std::size_t number) {
          SCOPED_TRACE(number);
          EXPECT_EQ(files.get(kObjects), kSide);
          EXPECT_EQ(files.get(kDocument), result == 0 ? kWhole : kMarked);
          EXPECT_EQ(messages == 0, result == 0);
        });
    EXPECT_GT(faults, 15u);
  }
}

}  // namespace
}  // namespace kavo::test
