#include "common/error_state.h"

#include <gtest/gtest.h>

namespace kavo::test {
namespace {

void fail(std::int32_t number, const char16_t* description) { throw failure(number, description, u"test"); }

TEST(ErrorState, KeepsTheLastNumberAndTheFirstDescriptionUntilCleared) {
  error_state errors;
  EXPECT_EQ(errors.number(), 0);
  EXPECT_EQ(errors.first_description(), u"");
  EXPECT_FALSE(errors.run([] { fail(53, u"what went wrong"); }));
  EXPECT_FALSE(errors.run([] { fail(91, u"what followed from it"); }));
  EXPECT_TRUE(errors.run([] {}));
  EXPECT_EQ(errors.number(), 91);
  EXPECT_EQ(errors.first_description(), u"what went wrong");
  errors.clear();
  EXPECT_EQ(errors.number(), 0);
  EXPECT_EQ(errors.first_description(), u"");
  EXPECT_FALSE(errors.run([] { fail(70, u"the next"); }));
  EXPECT_EQ(errors.first_description(), u"the next");
}

TEST(ErrorState, AnInterruptionPassesAndIsNotAnError) {
  error_state errors;
  EXPECT_THROW(errors.run([] { throw interruption(); }), interruption);
  EXPECT_EQ(errors.number(), 0);
}

}  // namespace
}  // namespace kavo::test
