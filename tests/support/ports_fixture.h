// A test with every port replaced by a double: nothing outside the test is read or changed.
#pragma once

#include <gtest/gtest.h>

#include "platform/ports.h"
#include "support/fake_automation.h"
#include "support/fake_clock.h"
#include "support/fake_desktop.h"
#include "support/fake_profile_files.h"
#include "support/fake_registry.h"
#include "support/fake_shell.h"
#include "support/memory_files.h"

namespace kavo::test {

// `class MoveFileTest : public PortsFixture {};` The code page stays the system's.
class PortsFixture : public testing::Test {
 protected:
  PortsFixture() {
    ports().files = &files;
    ports().registry = &registry;
    ports().profile_files = &profile_files;
    ports().shell = &shell;
    ports().desktop = &desktop;
    ports().clock = &clock;
    ports().automation = &automation;
  }

  MemoryFiles files;
  FakeRegistry registry;
  FakeProfileFiles profile_files;
  FakeShell shell;
  FakeDesktop desktop;
  FakeClock clock;
  FakeAutomation automation;

 private:
  PortsScope scope_;
};

}  // namespace kavo::test
