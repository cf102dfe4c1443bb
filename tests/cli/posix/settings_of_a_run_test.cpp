// What a run says to its own filters in the registry stays in the run.
#include <cstdlib>

#include "cli/site_test.h"

namespace kavo::test {
namespace {

class SettingsOfARun : public SiteTest {
 protected:
  SettingsOfARun() {
    const char* const saved = std::getenv("KAVO_CONFIG_FOLDER");
    saved_ = saved ? saved : "";
    setenv("KAVO_CONFIG_FOLDER", path("config").c_str(), 1);
  }
  ~SettingsOfARun() override { setenv("KAVO_CONFIG_FOLDER", saved_.c_str(), 1); }

 private:
  std::string saved_;
};

constexpr char kRtf[] = "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 One text\\par}";

TEST_F(SettingsOfARun, PreparingAndRebuildingStoreNothing) {
  put("site/a.txt", "One\r\n");
  put("site/page.asp", "<html><body><p>One</p><% MsgBox \"Two\" %></body></html>\r\n");
  put("site/letter.rtf", kRtf);
  ASSERT_EQ(prepare({"--jobs", "1"}).code, 0);
  const Ran rebuilt = kavo({"rebuild", "work", "-r", "--output-dir", "out-{lang}", "--jobs", "1"});
  EXPECT_EQ(rebuilt.code, 0) << rebuilt.errors;
  EXPECT_FALSE(has("config/registry.json"));
}

TEST_F(SettingsOfARun, AreThoseThatTheUserHasStored) {
  put("site/page.asp", "<html><body><p>One</p><% Show \"Two\" %></body></html>\r\n");
  ASSERT_EQ(kavo({"settings", "scripts.texts=Show"}).code, 0);
  const std::string stored = get("config/registry.json");
  ASSERT_EQ(prepare({"--jobs", "1"}, "FR").code, 0);
  EXPECT_TRUE(holds(get("work/page_asp_scr_FR.tud"), "Two"));
  EXPECT_EQ(get("config/registry.json"), stored);
}

// The font map of a document's folder reaches the filter through the run's own registry.
TEST_F(SettingsOfARun, TheFontMapOfADocumentsFolderIsRead) {
  put("site/letter.rtf", kRtf);
  ASSERT_EQ(prepare({}, "FR").code, 0);
  put("work/KAVO.FMP", "Arial=Verdana\n");
  ASSERT_EQ(kavo({"pseudo", "work", "-r"}).code, 0);
  ASSERT_EQ(kavo({"rebuild", "work", "-r", "--output-dir", "out"}).code, 0);
  EXPECT_TRUE(holds(get("out/letter.rtf"), "Verdana"));
}

}  // namespace
}  // namespace kavo::test
