// Settings that another program holds: the wait for them ends.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>

#include <cstdlib>

#include "platform/files.h"
#include "platform/ports.h"
#include "platform/posix/host.h"
#include "platform/unicode.h"
#include "support/failures.h"
#include "support/fake_clock.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

TEST(HeldSettings, AreGivenUpAfterTenSecondsAndTheHolderIsSought) {
  const TempFolder folder;
  const std::string saved = std::getenv("KAVO_CONFIG_FOLDER");
  setenv("KAVO_CONFIG_FOLDER", path_to_host(folder.path()).c_str(), 1);
  const std::string path = path_to_host(folder.write(u"registry.lock", ""));
  const Descriptor other = open_host(path, O_RDWR);
  ASSERT_EQ(::flock(other.get(), LOCK_EX | LOCK_NB), 0);
  FakeClock clock;
  std::optional<failure> thrown;
  {
    const PortsScope scope;
    ports().clock = &clock;
    thrown = failure_of([] { ports().registry->create_key(Hive::kCurrentUser, u"Software"); });
  }
  setenv("KAVO_CONFIG_FOLDER", saved.c_str(), 1);
  ASSERT_TRUE(thrown);
  EXPECT_EQ(thrown->number(), 70);
  EXPECT_NE(to_utf8(thrown->description()).find("another program holds " + path), std::string::npos);
  EXPECT_NEAR(clock.slept, 10, 1);
  EXPECT_FALSE(folder.exists(u"registry.json"));
}

}  // namespace
}  // namespace kavo::test
