// An Office program, if there is one, gets a file that is not one of its own.
#include <gtest/gtest.h>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

TEST(OfficeDocument, AFileThatIsNoDocumentFailsUnderItsName) {
  const TempFolder folder;
  const std::string file = path_to_host(folder.write(u"a.doc", "x"));
  const Ran ran = run_kavo({"verify", file});
  EXPECT_EQ(ran.code, 1);
  EXPECT_EQ(ran.output, "");
  EXPECT_TRUE(ran.errors.starts_with(file + ": ")) << ran.errors;
}

}  // namespace
}  // namespace kavo::test
