#include <gtest/gtest.h>

namespace kavo::test {
namespace {

TEST(OfficeStandInTest, RunsOnWindowsOnly) {
  GTEST_SKIP() << "automation between processes exists on Windows only; run the Windows tests";
}

}  // namespace
}  // namespace kavo::test
