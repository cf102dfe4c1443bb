#include "platform/shell.h"

#include <gtest/gtest.h>

#include <optional>

#include "platform/failure.h"
#include "platform/files.h"
#include "platform/ports.h"
#include "platform/unicode.h"
#include "support/failures.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

TEST(ShellTest, MissingProgramCannotBeStartedAndIsNamed) {
  for (const std::u16string_view program : {u"kavo-test-no-such-program", u"\\nowhere\\kavo-test-no-such-program"}) {
    const std::optional<failure> thrown = failure_of([&] { ports().shell->start(program, {u"a b"}); });
    ASSERT_TRUE(thrown);
    EXPECT_TRUE(thrown->is(FailureNumber::kFileNotFound));
    EXPECT_TRUE(thrown->description().starts_with(to_utf16(path_to_host(program)) + u": ")) << thrown->what();
  }
  EXPECT_EQ(failure_number([] { ports().shell->start(u"", {}); }), 53);
}

TEST(ShellTest, MissingFileCannotBeOpened) {
  const TempFolder temp;
  for (const int result :
       {ports().shell->open(temp.path(u"missing.txt")), ports().shell->run(temp.path(u"missing"), u"")}) {
    EXPECT_GE(result, 0);
    EXPECT_LE(result, 31);
  }
}

}  // namespace
}  // namespace kavo::test
