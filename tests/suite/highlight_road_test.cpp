// The four colours, from the editor's settings to the page that a translator looks at.
#include <gtest/gtest.h>

#include "driver/K19FPWObj.h"
#include "driver/filter_run.h"
#include "suite/suite.h"
#include "suite/suite_fixture.h"

namespace kavo::test {
namespace {

class HighlightRoad : public SuiteTest {
 protected:
  HighlightRoad() {
    for (const SuiteClass& known : suite_classes())
      automation.factories[std::u16string(known.programmatic_identifier)] = known.create;
    driver.emplace();
    driver->QuietMode(1);
  }
  ~HighlightRoad() override { driver.reset(); }

  void set_colour(std::u16string_view name, std::uint32_t value) {
    RegistryData data{RegistryType::kNumber, {}};
    for (int i = 0; i < 4; ++i) data.bytes += static_cast<char>(value >> (8 * i));
    registry.write(Hive::kCurrentUser, u"Software\\MOR\\MOR Edit\\Settings", name, data);
  }

  // The rebuilt page of five paragraphs, one of each status.
  std::string rebuilt(std::int32_t highlight) {
    put(u"a.htm",
        "<html><body><p>new</p><p>fuzzy</p><p>exact</p><p>done</p><p>approved</p><p>locked</p></body></html>");
    std::u16string file = in_folder(u"a.htm");
    EXPECT_EQ(driver->PreProcess(file), 0);
    std::vector<ProducedFile> produced(driver->produced_files().begin(), driver->produced_files().end());
    EXPECT_EQ(convert_produced_files(produced, {u"EN-US", u"FR"}).result, 0);
    std::u16string tud = produced[0].tud_name;
    BilingualDocument document(tud);
    using enum TranslationStatus;
    const TranslationStatus statuses[] = {kUntranslated, kFuzzy, kExact, kTranslated, kApproved, kLocked};
    for (std::size_t i = 0; i < std::size(statuses); ++i)
      document.set_segment(i, document.segment(i).source, statuses[i], 0);
    document.save();
    std::u16string target;
    std::int32_t preview = 0;
    EXPECT_EQ(driver->CreateTranslation(tud, target, preview, highlight), 0)
        << testing::PrintToString(driver->LastError());
    return files.get(target);
  }

  std::optional<K19FPWObj> driver;
};

TEST_F(HighlightRoad, EachStatusHasTheColourOfTheEditorsSettings) {
  set_colour(u"ColourUntran", 0x000000FF);
  set_colour(u"ColourFuzzy", 0x0000A5FF);
  set_colour(u"Colour100", 0x00008000);
  set_colour(u"ColourTran", 0x00FF0000);
  EXPECT_EQ(rebuilt(1),
            "<html><body><p><font color=\"#FF0000\">new</font></p><p><font color=\"#FFA500\">fuzzy</font></p><p><font "
            "color=\"#008000\">exact</font></p><p><font color=\"#0000FF\">done</font></p><p><font "
            "color=\"#0000FF\">approved</font></p><p>locked</p></body></html>");
}

TEST_F(HighlightRoad, WithoutHighlightingThePageIsPlain) {
  const std::string page = rebuilt(0);
  EXPECT_EQ(page, files.get(in_folder(u"a.htm")));
}

TEST_F(HighlightRoad, ColoursThatAreNotSetAreBlack) {
  EXPECT_NE(rebuilt(1).find("<font color=\"#000000\">new</font>"), std::string::npos);
}

}  // namespace
}  // namespace kavo::test
