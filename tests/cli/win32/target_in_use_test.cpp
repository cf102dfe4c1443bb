// A target that another program has open.
#include <gtest/gtest.h>
#include <windows.h>

#include <nlohmann/json.hpp>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "platform/win32/owners.h"
#include "platform/win32/text.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

TEST(TargetInUse, IsReportedAndStaysAsItIs) {
  const TempFolder folder;
  const std::string text = path_to_host(folder.write(u"a.txt", "One\r\n"));
  ASSERT_EQ(run_kavo({"prepare", text, "--source", "EN-US", "--target", "FR"}).code, 0);
  const std::string tud = path_to_host(folder.path(u"a_txt_FR.tud"));
  const std::u16string target = folder.write(u"a_FR.txt", "old target");
  const std::size_t entries = folder.entry_count();
  {
    const unique_handle other(
        CreateFileW(to_wide(target).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    ASSERT_TRUE(other);
    const Ran ran = run_kavo({"rebuild", "--overwrite", "--json", tud});
    EXPECT_EQ(ran.code, 1);
    const auto told = nlohmann::json::parse(ran.output);
    EXPECT_EQ(told["result"], 1);
    const std::string message = told["messages"][0]["text"];
    EXPECT_TRUE(message.starts_with(path_to_host(target) + ": ")) << message;
    EXPECT_EQ(folder.entry_count(), entries);
  }
  EXPECT_EQ(folder.read(u"a_FR.txt"), "old target");
  EXPECT_EQ(run_kavo({"rebuild", "--overwrite", tud}).code, 0);
  EXPECT_EQ(folder.read(u"a_FR.txt"), "One\r\n");
}

}  // namespace
}  // namespace kavo::test
