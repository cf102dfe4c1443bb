// The main program of every test program.
#include <gtest/gtest.h>

#include "platform/automation.h"
#include "support/slow_test_notice.h"
#include "support/system.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const kavo::test::TestProcess process;
  const kavo::AutomationSession session;
  kavo::test::SlowTestNotice notice;
  testing::TestEventListeners& listeners = testing::UnitTest::GetInstance()->listeners();
  listeners.Append(&notice);
  const int result = RUN_ALL_TESTS();
  listeners.Release(&notice);
  return result;
}
