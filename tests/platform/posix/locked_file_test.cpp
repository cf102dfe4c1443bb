#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <optional>

#include "platform/files.h"
#include "platform/posix/host.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

TEST(LockedFile, IsFreeAtTheEndAlthoughAnotherProcessHasACopyOfTheDescriptor) {
  const TempFolder folder;
  const std::string path = path_to_host(folder.write(u"lock", ""));
  Descriptor file = open_host(path, O_RDWR);
  const Descriptor copy(::dup(file.get()));  // as a program has that is being started
  ASSERT_EQ(::flock(file.get(), LOCK_EX | LOCK_NB), 0);
  std::optional<LockedFile> lock(std::move(file));
  const Descriptor other = open_host(path, O_RDWR);
  EXPECT_NE(::flock(other.get(), LOCK_EX | LOCK_NB), 0);
  lock.reset();
  EXPECT_EQ(::flock(other.get(), LOCK_EX | LOCK_NB), 0);
}

}  // namespace
}  // namespace kavo::test
