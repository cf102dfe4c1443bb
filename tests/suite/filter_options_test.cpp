// The options of the filters: what may be chosen, what is refused, what is stored, and that the documentation has all.
#include "suite/filters/filter_options.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>

#include "common/program_settings.h"
#include "suite/suite_fixture.h"

namespace kavo::test {
namespace {

TEST(FilterOptionTable, EachRowHasAnExampleAndAUsualValueThatItCanHave) {
  std::set<std::string_view> keys;
  for (const FilterOption& option : filter_options()) {
    SCOPED_TRACE(option.key);
    EXPECT_TRUE(keys.insert(option.key).second) << "named twice";
    EXPECT_FALSE(option.summary.empty());
    EXPECT_EQ(option_problem(option.key, option.example), "");
    EXPECT_NE(option.example, option.usual);
    EXPECT_EQ(option.usual.empty() ? "" : option_problem(option.key, option.usual), "");
    EXPECT_EQ(option.kind == OptionKind::kChoice, !option.choices.empty());
  }
}

// The rows of docs/filter-options.md. A row that differs is shown as it must stand there.
TEST(FilterOptionTable, TheDocumentationHasTheSameRows) {
  std::ifstream page(KAVO_FILTER_OPTIONS_PAGE);
  ASSERT_TRUE(page) << KAVO_FILTER_OPTIONS_PAGE;
  std::string documented, expected;
  for (std::string line; std::getline(page, line);)
    if (line.starts_with("| `")) documented += line + "\n";
  for (const FilterOption& option : filter_options())
    expected += "| `" + std::string(option.key) + "` | " + values_of(option) + " | " +
                (option.usual.empty() ? "" : "`" + std::string(option.usual) + "` ") + "| " +
                std::string(option.summary) + " | `" + std::string(option.example) + "` |\n";
  EXPECT_EQ(documented, expected);
}

TEST(FilterOptionTable, ErrorsAreReported) {
  const struct {
    const char* key;
    const char* value;
    const char* problem;
  } cases[] = {
      {"rc.dialog-font", "MS UI Gothic", ""},
      {"rc.dialog-fonts", "x", "there is no option \"rc.dialog-fonts\"; the nearest is \"rc.dialog-font\""},
      {"script.offer", "all", "there is no option \"script.offer\"; the nearest is \"scripts.offer\""},
      {"scripts.offer", "most", "scripts.offer can be likely, all or none, not \"most\""},
      {"scripts.offer", "", "scripts.offer can be likely, all or none, not \"\""},
      {"scripts.offer", "likely all", "scripts.offer can be likely, all or none, not \"likely all\""},
      {"rc.dialog-font-size", "9", ""},
      {"rc.dialog-font-size", "-9", "rc.dialog-font-size can be a number, not \"-9\""},
      {"rc.dialog-font-size", "9999999999", "rc.dialog-font-size can be a number, not \"9999999999\""},
      {"overwrite", "1", ""},
      {"overwrite", "maybe", "overwrite can be on or off, not \"maybe\""},
      {"rc.dialog-font", "a\nscripts.offer=all", "rc.dialog-font can be a text, not \"a\nscripts.offer=all\""},
  };
  for (const auto& c : cases) EXPECT_EQ(option_problem(c.key, c.value), c.problem) << c.key;
}

TEST(FilterOptionTable, AChoiceIsReadAndAListGetsLonger) {
  FilterOptions options;
  EXPECT_EQ(option_text(options, "scripts.offer"), "likely");
  EXPECT_TRUE(option_items(options, "scripts.texts").empty());
  choose(options, "scripts.offer", "all");
  choose(options, "scripts.offer", "none");
  EXPECT_EQ(option_text(options, "scripts.offer"), "none");
  choose(options, "scripts.texts", " Say,Tell  Ask ");
  choose(options, "scripts.texts", "Shout,,");
  EXPECT_EQ(option_items(options, "scripts.texts"), (std::vector<std::string>{"Say", "Tell", "Ask", "Shout"}));
  EXPECT_FALSE(is_on(options, "overwrite"));
  for (const char* const on : {"on", "1"}) EXPECT_TRUE(is_on({{"overwrite", on}}, "overwrite")) << on;
  for (const char* const off : {"off", "0"}) EXPECT_FALSE(is_on({{"overwrite", off}}, "overwrite")) << off;
  EXPECT_THROW(option_text(options, "scripts.offers"), failure) << "a filter that reads what nobody can choose";
}

class StoredFilterOptions : public SuiteTest {};

TEST_F(StoredFilterOptions, LieWhereTheyAlwaysLay) {
  SettingsSection{u"KAVO", u"Scripts"}.save(u"Texts", u"Say Tell");
  EXPECT_EQ(option_items(stored_filter_options(), "scripts.texts"), (std::vector<std::string>{"Say", "Tell"}));
  store_filter_option("scripts.offer", "none");
  EXPECT_EQ((SettingsSection{u"KAVO", u"Scripts"}.get(u"Offer")), u"none");
  store_filter_option("scripts.offer", "");
  EXPECT_EQ(option_text(stored_filter_options(), "scripts.offer"), "likely");
}

TEST_F(StoredFilterOptions, NothingOfOneRunIsStored) {
  for (const FilterOption& option : filter_options())
    EXPECT_EQ(is_lasting(option), option.key != "overwrite") << option.key;
  SettingsSection{u"KAVO", u"overwrite"}.save(u"", u"on");
  SettingsSection{u"KAVO", u"overwrite"}.save(u"overwrite", u"on");
  EXPECT_FALSE(is_on(stored_filter_options(), "overwrite"));
}

}  // namespace
}  // namespace kavo::test
