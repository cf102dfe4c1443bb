#include "workflow/work_folder.h"

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "platform/ports.h"
#include "support/faulty_files.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

// With a temporary folder of the test's own.
class OwnTemporaryFolder final : public FaultyFiles {
 public:
  OwnTemporaryFolder() : FaultyFiles(*ports().files) { ports().files = this; }
  std::u16string temporary_folder() override { return folder.path(); }

  const TempFolder folder;
  const PortsScope scope;
};

TEST(WorkFolderTest, GoesWithAllThatItHolds) {
  const OwnTemporaryFolder files;
  {
    const WorkFolder folder;
    ports().files->open(folder.make("inner") + u"\\file", Access::kCreate)->close();
    EXPECT_EQ(files.folder.entry_count(), 1u);
  }
  EXPECT_EQ(files.folder.entry_count(), 0u);
}

TEST(WorkFolderTest, WhatAKilledRunLeftGoesWithAWordAndNothingElse) {
  const OwnTemporaryFolder files;
  files.folder.write(u"kavo-0123abcd\\kavo.work", "");
  files.folder.write(u"kavo-0123abcd\\plain\\page.htm", "a copy");
  files.folder.write(u"kavo-0123abcd\\MOR1234.TMP", "half repaired");
  files.folder.make_folder(u"kavo-00000000");  // killed before its mark was made
  files.folder.write(u"kavo-89abcdef\\letter.txt", "somebody's, without the mark");
  files.folder.write(u"kavo-letters\\kavo.work", "somebody's, of another name");
  testing::internal::CaptureStderr();
  const WorkFolder in_use;
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_NE(told.find("kavo-0123abcd, which a run that was stopped had left\n"), std::string::npos) << told;
  EXPECT_NE(told.find("kavo-00000000, which"), std::string::npos) << told;
  EXPECT_EQ(told.find("kavo-89abcdef"), std::string::npos) << told;
  { const WorkFolder other; }
  EXPECT_EQ(files.folder.entry_count(), 3u) << "the user's two, and the one in use";
  EXPECT_TRUE(files.folder.exists(u"kavo-89abcdef\\letter.txt"));
  EXPECT_TRUE(files.folder.exists(u"kavo-letters\\kavo.work"));
}

// A run that is killed while it removes such a folder leaves one that the next run still knows.
TEST(WorkFolderTest, TheMarkGoesLast) {
  OwnTemporaryFolder files;
  const std::u16string abandoned = u"kavo-0123abcd";
  files.folder.write(abandoned + u"\\kavo.work", "");
  files.folder.write(abandoned + u"\\plain\\page.htm", "a copy");
  files.folder.write(abandoned + u"\\zebra.htm", "another one");
  files.set_fault({.operation = 1, .counted = FaultyFiles::Counted::kMutating, .lasting = true, .kills = true});
  EXPECT_THROW(WorkFolder(), failure);
  EXPECT_TRUE(files.fault_happened());
  files.clear_fault();
  EXPECT_TRUE(files.folder.exists(abandoned + u"\\kavo.work"));
  EXPECT_FALSE(files.folder.exists(abandoned + u"\\plain"));
  EXPECT_FALSE(files.folder.exists(abandoned + u"\\zebra.htm"));
  { const WorkFolder next; }
  EXPECT_EQ(files.folder.entry_count(), 0u);
}

TEST(WorkFolderTest, WhateverFailsWhileItIsMadeNoneIsLeft) {
  OwnTemporaryFolder files;
  std::size_t failed = 0;
  for_each_fault(
      files, {},
      [&](std::size_t) {
        try {
          const WorkFolder folder;
        } catch (const failure&) {
          ++failed;
        }
      },
      [&](std::size_t number) { EXPECT_EQ(files.folder.entry_count(), 0u) << number; });
  EXPECT_GT(failed, 1u);
}

}  // namespace
}  // namespace kavo::test
