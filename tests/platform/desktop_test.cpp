#include "platform/desktop.h"

#include <gtest/gtest.h>

#include <csignal>

#include "platform/ports.h"
#include "support/failures.h"
#include "support/fake_desktop.h"
#include "support/system.h"

namespace kavo::test {
namespace {

TEST(InterruptTest, OneRequestInterruptsOnce) {
  EXPECT_FALSE(interrupt_requested());
  EXPECT_NO_THROW(ports().desktop->process_messages());
  request_interrupt();
  request_interrupt();
  EXPECT_TRUE(interrupt_requested());
  const std::optional<failure> error = failure_of([] { ports().desktop->process_messages(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), 18);
  EXPECT_EQ(error->description(), u"Interrupted by the user");
  EXPECT_FALSE(interrupt_requested());
  EXPECT_NO_THROW(ports().desktop->process_messages());
}

TEST(InterruptTest, SignalHandlerMayRequest) {
  const auto old = std::signal(SIGINT, [](int) { request_interrupt(); });
  std::raise(SIGINT);
  std::signal(SIGINT, old);
  EXPECT_EQ(failure_number([] { ports().desktop->process_messages(); }), 18);
}

TEST(InterruptTest, DoubleInterruptsToo) {
  FakeDesktop desktop;
  desktop.on_process_messages = [] { request_interrupt(); };
  EXPECT_EQ(failure_number([&] { desktop.process_messages(); }), 18);
  EXPECT_EQ(desktop.process_messages_calls, 1u);
}

TEST(DesktopTest, MissingWindowIsNotFoundAndNotActivated) {
  EXPECT_EQ(ports().desktop->find_window(u"KavoTestNoSuchClass"), 0u);
  EXPECT_NO_THROW(ports().desktop->activate(u"Kavo test: no such caption"));
}

TEST(DesktopTest, NativelyThereAreNoWindows) {
  if (!is_native()) GTEST_SKIP() << "windows exist here";
  EXPECT_FALSE(ports().desktop->foreground_caption());
  testing::internal::CaptureStderr();
  ports().desktop->message_box(u"Text \u00E4", u"KAVO", MessageIcon::kExclamation);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "KAVO: Text \xC3\xA4\n");
}

}  // namespace
}  // namespace kavo::test
