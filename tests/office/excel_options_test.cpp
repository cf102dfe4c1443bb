#include "office/excel_options.h"

#include <gtest/gtest.h>

#include "common/program_settings.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

std::u16string stored(std::u16string_view key) { return kExcelSettings.get(key, u"(none)"); }

class ExcelOptionsTest : public PortsFixture {};

TEST_F(ExcelOptionsTest, WithoutStoredSettingsTheDefaultsHold) {
  EXPECT_EQ(load_excel_options(), (ExcelOptions{0, true, true, false, u"255"}));
  EXPECT_EQ(stored(u"Order"), u"(none)");
}

TEST_F(ExcelOptionsTest, AStoredOrderOfOneIsStoredBackAsOne) {
  kExcelSettings.save(u"Order", u"1");
  const ExcelOptions options = load_excel_options();
  EXPECT_EQ(options.order, 1);
  save_excel_options(options);
  EXPECT_EQ(stored(u"Order"), u"1");
}

TEST_F(ExcelOptionsTest, AStoredOrderThatIsNeitherIsStoredBackAsOne) {
  for (const std::u16string_view text : {u"2", u"-1", u"", u"rows"}) {
    kExcelSettings.save(u"Order", text);
    const ExcelOptions options = load_excel_options();
    EXPECT_EQ(options.order, kUnknownOrder);
    save_excel_options(options);
    EXPECT_EQ(stored(u"Order"), u"1");
  }
}

TEST_F(ExcelOptionsTest, AnEmptyToleranceIsStoredAsTheDefault) {
  ExcelOptions options;
  options.tolerance.clear();
  save_excel_options(options);
  EXPECT_EQ(stored(u"Tolerance"), u"255");
}

TEST_F(ExcelOptionsTest, EverySettingComesBack) {
  const ExcelOptions options{1, false, false, true, u"12"};
  save_excel_options(options);
  EXPECT_EQ(load_excel_options(), options);
  EXPECT_EQ(stored(u"Order"), u"1");
  EXPECT_EQ(stored(u"Hidden"), u"0");
  EXPECT_EQ(stored(u"Formulas"), u"0");
  EXPECT_EQ(stored(u"Ungroup"), u"1");
  EXPECT_EQ(stored(u"Tolerance"), u"12");
}

TEST_F(ExcelOptionsTest, AFlagIsSetByOneOnly) {
  for (const std::u16string_view text : {u"", u"0", u"2", u"true", u" 1"}) {
    kExcelSettings.save(u"Hidden", text);
    EXPECT_FALSE(load_excel_options().hidden);
  }
}

}  // namespace
}  // namespace kavo::test
