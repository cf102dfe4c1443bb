// What the filter of RTF documents reads.
#include "driver/rtf_preparation.h"

#include <gtest/gtest.h>

#include "common/folder_run.h"
#include "driver/driver_fixture.h"
#include "platform/failure.h"

namespace kavo::test {
namespace {

constexpr std::u16string_view kLetter = u"C:\\WORK\\letter.rtf";
constexpr std::u16string_view kObjects = u"C:\\WORK\\letter.obj";
constexpr std::string_view kText = "{\\rtf1 One {\\pict 0102} two}";

class RtfPreparation : public DriverFixture {
 protected:
  // What the filter reads, with everything put in place.
  std::string seen(bool replaces_objects = false) {
    FolderRun run(kLetter);
    const std::u16string path =
        without_objects(std::u16string(kLetter), std::u16string(kObjects), replaces_objects, run);
    const std::string bytes = files.get(path);
    run.commit();
    return bytes;
  }
};

TEST_F(RtfPreparation, PicturesMoveOutOfACopy) {
  files.put(kLetter, kText);
  EXPECT_EQ(seen(), "{\\rtf1 One {\\v\\mor OBJ 1 } two}");
  EXPECT_EQ(files.get(kLetter), kText) << "the author's file is only read";
  EXPECT_NE(files.get(kObjects).find("{\\pict 0102}"), std::string::npos);
}

TEST_F(RtfPreparation, ADocumentWithoutPicturesIsReadItself) {
  files.put(kLetter, "{\\rtf1 One}");
  EXPECT_EQ(seen(), "{\\rtf1 One}");
  EXPECT_FALSE(files.has(kObjects));
}

TEST_F(RtfPreparation, ADocumentWhoseObjectsWereMovedKeepsItsMarkersAndItsObjectFile) {
  constexpr std::string_view marked = "{\\rtf1 One {\\v\\mor OBJ 1 } {\\pict 03}}";
  files.put(kLetter, marked);
  files.put(kObjects, "objects");
  EXPECT_EQ(seen(), marked);
  EXPECT_EQ(files.get(kObjects), "objects");
}

TEST_F(RtfPreparation, AnObjectFileOfSomebodyElseIsReplacedOnlyWhenAsked) {
  files.put(kLetter, kText);
  files.put(kObjects, "compiled code");
  EXPECT_THROW(seen(), failure);
  EXPECT_EQ(files.get(kObjects), "compiled code");
  seen(true);
  EXPECT_NE(files.get(kObjects).find("{\\pict 0102}"), std::string::npos);
}

}  // namespace
}  // namespace kavo::test
