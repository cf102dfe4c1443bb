// Documents that the version before units had an identity prepared and pseudo-translated (tests/cli/earlier_version).
#include "cli/site_test.h"

namespace kavo::test {
namespace {

class EarlierVersion : public SiteTest {
 protected:
  EarlierVersion() { fs::copy(KAVO_EARLIER_VERSION, path("site"), fs::copy_options::recursive); }
  static void replace(std::string& text, const std::string& what, const std::string& with) {
    const std::size_t at = text.find(what);
    ASSERT_NE(at, std::string::npos) << what;
    text.replace(at, what.size(), with);
  }
  Ran update() const { return kavo({"prepare", "site", "--source", "EN-US", "--target", "FR", "--code-page", "utf-8"}); }
};

constexpr const char* kDocuments[] = {"KAVO_ix_mif_FR.tud", "KAVO_va_mif_FR.tud", "KAVO_xr_mif_FR.tud",
                                      "manual_mif_FR.tud",  "note_txt_FR.tud",    "shop_asp_htm_FR.tud",
                                      "shop_asp_scr_FR.tud"};

TEST_F(EarlierVersion, IsRebuilt) {
  for (const char* const document : kDocuments) EXPECT_FALSE(holds(get(std::string("site/") + document), "resname"));
  const Ran ran = kavo({"rebuild", "site", "--output-dir", "out"});
  ASSERT_EQ(ran.code, 0) << ran.errors;
  const std::string page = get("out/shop.asp");
  EXPECT_TRUE(holds(page, "<h1>[Wèlçômè tô thè shôp]</h1>")) << page;
  EXPECT_TRUE(holds(page, "MsgBox \"[Wè árè çlôsèd tôdáÿ]\"")) << page;
  const std::string manual = get("out/manual.mif");
  EXPECT_TRUE(holds(manual, "<VariableDef `[Th\\x8f  pr\\x99 d\\x9f \\x8d t")) << manual;
  EXPECT_TRUE(holds(manual, "<MText `[p\\x9f mp p\\x87 rts]'>")) << manual;
  EXPECT_TRUE(holds(get("out/note.txt"), "[Thè fïrst lïñè")) << get("out/note.txt");
}

TEST_F(EarlierVersion, IsUpdatedAndRebuilt) {
  std::string page = get("site/shop.asp"), manual = get("site/manual.mif.kavo.bak"), note = get("site/note.txt");
  replace(page, "<h1>", "<h1>A heading that is new</h1><h1>");
  replace(manual, "How to clean the pump", "How to clean the old pump");
  put("site/shop.asp", page);
  put("site/manual.mif", manual);
  put("site/note.txt", "A line that is new\r\n" + note);
  const Ran ran = update();
  ASSERT_EQ(ran.code, 0) << ran.errors;
  EXPECT_TRUE(holds(ran.errors, "shop.asp: 4 kept, 0 moved, 0 similar, 1 new, 0 removed")) << ran.errors;
  EXPECT_TRUE(holds(ran.errors, "note.txt: 2 kept, 0 moved, 0 similar, 1 new, 0 removed")) << ran.errors;
  EXPECT_TRUE(holds(ran.errors, "manual.mif: 3 kept, 0 moved, 1 similar, 0 new, 0 removed")) << ran.errors;
  const Ran rebuilt = kavo({"rebuild", "site", "--output-dir", "out"});
  ASSERT_EQ(rebuilt.code, 0) << rebuilt.errors;
  const std::string made = get("out/shop.asp");
  EXPECT_TRUE(holds(made, "<h1>A heading that is new</h1><h1>[Wèlçômè tô thè shôp]</h1>")) << made;
  EXPECT_TRUE(holds(made, "MsgBox \"[Wè árè çlôsèd tôdáÿ]\"")) << made;
  EXPECT_TRUE(holds(get("out/note.txt"), "A line that is new\r\n[Thè fïrst lïñè"));
  EXPECT_EQ(update().output, "0 documents prepared, 3 up to date\n");
}

}  // namespace
}  // namespace kavo::test
