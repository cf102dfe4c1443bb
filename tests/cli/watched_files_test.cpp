// Messages of a run show paths as the user writes them.
#include "cli/watched_files.h"

#include <gtest/gtest.h>

#include "platform/unicode.h"
#include "support/memory_files.h"

namespace kavo::test {
namespace {

std::u16string page(unsigned number) { return u"C:\\WORK\\page" + to_utf16(std::to_string(number)) + u".htm"; }

std::u16string shown(const WatchedFiles& files, const std::u16string& path) {
  return files.in_host_form(path + u": no place");
}

class WatchedFilesTest : public testing::Test {
 protected:
  MemoryFiles memory;
  WatchedFiles files{memory};
};

TEST_F(WatchedFilesTest, APathThatIsNamedTwiceAppearsOnce) {
  files.info(page(1));
  EXPECT_EQ(shown(files, page(1) + u": " + page(1)), to_utf16(path_to_host(page(1))) + u": no place");
}

// A folder may have any number of files.
TEST_F(WatchedFilesTest, KeepsTheLastThousandsOfPathsAndForgetsTheOldest) {
  constexpr unsigned count = 20'000;
  constexpr unsigned kept = 2'000;  // at least
  for (unsigned i = 0; i < count; ++i) files.info(page(i));
  for (unsigned i = count - kept; i < count; i += 50) {
    const std::u16string twice = page(i) + u": " + page(i);
    ASSERT_EQ(shown(files, twice), to_utf16(path_to_host(page(i))) + u": no place") << i;
  }
  const std::u16string forgotten = page(0) + u": " + page(0);
  EXPECT_EQ(shown(files, forgotten), forgotten + u": no place");
  files.forget();
  const std::u16string last = page(count - 1) + u": " + page(count - 1);
  EXPECT_EQ(shown(files, last), last + u": no place");
}

}  // namespace
}  // namespace kavo::test
