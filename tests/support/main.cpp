// The main program of every test program.
#include <gtest/gtest.h>

#include "platform/automation.h"
#include "support/system.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const kavo::test::TestProcess process;
  const kavo::AutomationSession session;
  return RUN_ALL_TESTS();
}
