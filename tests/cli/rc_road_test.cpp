// Resource scripts on the command's road.
#include <gtest/gtest.h>

#include "cli/run_kavo.h"
#include "platform/files.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

class RcRoad : public testing::Test {
 protected:
  std::string path(std::u16string_view name) const { return path_to_host(folder_.path(name)); }
  TempFolder folder_;
};

constexpr std::string_view kScript =
    "LANGUAGE 9, 1\r\n#pragma code_page(1252)\r\nA ACCELERATORS { \"a\", 1 }\r\nSTRINGTABLE { IDS_A \"One &two\" IDS_B "
    "\"%d\xE9\" }\r\n";

TEST_F(RcRoad, FromPreparationToVerification) {
  folder_.write(u"app.rc", kScript);
  const Ran prepared = run_kavo({"prepare", path(u"app.rc"), "--source", "EN-US", "--target", "FR"});
  EXPECT_EQ(prepared.code, 0) << prepared.errors;
  EXPECT_NE(prepared.errors.find("left as they are: 1 ACCELERATORS"), std::string::npos) << prepared.errors;
  EXPECT_EQ(run_kavo({"pseudo", path(u"app_rc_FR.tud")}).code, 0);
  const Ran rebuilt = run_kavo({"rebuild", path(u"app_rc_FR.tud")});
  EXPECT_EQ(rebuilt.code, 0) << rebuilt.errors;
  EXPECT_EQ(folder_.read(u"app_FR.rc"),
            "LANGUAGE 12, 1\r\n#pragma code_page(1252)\r\nA ACCELERATORS { \"a\", 1 }\r\nSTRINGTABLE { IDS_A \"[\xD5\xF1\xE8 "
            "&tw\xF4]\" IDS_B \"%d[\xE9]\" }\r\n");
  EXPECT_EQ(run_kavo({"export", path(u"app_rc_FR.tud")}).code, 0);
  const Ran verified = run_kavo({"verify", path(u"app.rc")});
  EXPECT_EQ(verified.code, 0) << verified.output;
}

TEST_F(RcRoad, TheTargetLanguageIsReplacedOnlyWhenAsked) {
  folder_.write(u"app.rc", std::string(kScript) + "LANGUAGE 12, 1\r\nSTRINGTABLE { IDS_A \"Un\" }\r\n");
  const std::vector<std::string> command = {"prepare", path(u"app.rc"), "--source", "EN-US", "--target", "FR"};
  const Ran refused = run_kavo(command);
  EXPECT_NE(refused.code, 0);
  EXPECT_NE(refused.errors.find("already has resources in FR, from line 6 on"), std::string::npos) << refused.errors;
  std::vector<std::string> asked = command;
  asked.push_back("--overwrite");
  EXPECT_EQ(run_kavo(asked).code, 0);
}

}  // namespace
}  // namespace kavo::test
