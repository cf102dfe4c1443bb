#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/posix/host.h"

namespace kavo::test {
namespace {

// The variables as they were, at the end.
class ConfigFolderTest : public ::testing::Test {
 protected:
  void set(const char* name, const char* value) {
    const char* const before = std::getenv(name);
    kept_.push_back({name, before ? std::optional<std::string>(before) : std::nullopt});
    value ? ::setenv(name, value, 1) : ::unsetenv(name);
  }
  void TearDown() override {
    for (auto variable = kept_.rbegin(); variable != kept_.rend(); ++variable) {
      const auto& [name, value] = *variable;
      value ? ::setenv(name, value->c_str(), 1) : ::unsetenv(name);
    }
  }

 private:
  std::vector<std::pair<const char*, std::optional<std::string>>> kept_;
};

TEST_F(ConfigFolderTest, TheFirstVariableThatIsSetNamesIt) {
  set("HOME", "/home/anna");
  set("XDG_CONFIG_HOME", nullptr);
  set("KAVO_CONFIG_FOLDER", nullptr);
  EXPECT_EQ(config_folder(), "/home/anna/.config/kavo");
  set("XDG_CONFIG_HOME", "/srv/settings");
  EXPECT_EQ(config_folder(), "/srv/settings/kavo");
  set("KAVO_CONFIG_FOLDER", "/srv/own");
  EXPECT_EQ(config_folder(), "/srv/own");
}

TEST_F(ConfigFolderTest, WithoutHomeItIsBelowTheHomeFolderOfTheUserDatabase) {
  const passwd* const user = ::getpwuid(::getuid());
  const std::string folder = user ? user->pw_dir : "";  // a container may run under a number that has no name
  set("XDG_CONFIG_HOME", nullptr);
  set("KAVO_CONFIG_FOLDER", nullptr);
  for (const char* const home : {static_cast<const char*>(nullptr), ""}) {
    set("HOME", home);
    EXPECT_EQ(config_folder(), folder + "/.config/kavo");
  }
}

}  // namespace
}  // namespace kavo::test
