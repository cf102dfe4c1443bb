#include "suite/suite.h"

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "platform/ports.h"

namespace kavo::test {
namespace {

ObjectRef create(std::u16string_view identifier) {
  for (const SuiteClass& known : suite_classes())
    if (known.programmatic_identifier == identifier) return known.create();
  return nullptr;
}

struct Answer {
  std::int32_t status;
  std::u16string first, second, name;
  std::int32_t value;
};
Answer enumerate(AutomationObject& catalogue, std::int32_t index) {
  Argument arguments[] = {by_value(index), by_reference(std::u16string(u"-")), by_reference(std::u16string(u"-")),
                          by_reference(std::u16string(u"-")), by_reference(std::int32_t{-7})};
  const std::int32_t status = as_number(catalogue.invoke(u"enumerate", arguments));
  return {status, as_text(arguments[1].value), as_text(arguments[2].value), as_text(arguments[3].value),
          as_number(arguments[4].value)};
}

TEST(FilterCatalogue, ListsOneFilterForEachTag) {
  const ObjectRef catalogue = create(u"K19Suite.FilterCatalogue");
  ASSERT_TRUE(catalogue);
  const char16_t* tags[] = {u"K19DOCW", u"K19RTF", u"K19HTM", u"K19MIF", u"K19GCP", u"K19TXT", u"K19PPTW", u"K19XLSW"};
  for (std::int32_t index = 0; index < 8; ++index) {
    const Answer answer = enumerate(*catalogue, index);
    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.name, tags[index]);
    EXPECT_EQ(answer.value, index + 1);
    EXPECT_FALSE(answer.first.empty());
    EXPECT_TRUE(answer.second.starts_with(u"*."));
  }
}

TEST(FilterCatalogue, PastTheLastFilterNothingIsWritten) {
  const ObjectRef catalogue = create(u"K19Suite.FilterCatalogue");
  for (const std::int32_t index : {8, 1000, -1}) {
    const Answer answer = enumerate(*catalogue, index);
    EXPECT_NE(answer.status, 1);
    EXPECT_EQ(answer.name, u"-");
    EXPECT_EQ(answer.value, -7);
  }
}

TEST(FilterCatalogue, WrongArgumentsAreRaised) {
  const ObjectRef catalogue = create(u"K19Suite.FilterCatalogue");
  Argument one[] = {by_value(std::int32_t{0})};
  EXPECT_THROW(catalogue->invoke(u"Enumerate", one), failure);
  EXPECT_THROW(catalogue->invoke(u"Enumerate"), failure);
  Argument wrong[] = {by_value(std::u16string(u"x")), by_reference(std::u16string()), by_reference(std::u16string()),
                      by_reference(std::u16string()), by_reference(std::int32_t{0})};
  EXPECT_THROW(catalogue->invoke(u"Enumerate", wrong), failure);
}

TEST(Suite, EveryComponentIsCreatedThroughTheAutomationPort) {
  const AutomationSession session;
  register_suite_factories();
  ASSERT_FALSE(suite_classes().empty());
  for (const SuiteClass& known : suite_classes()) {
    EXPECT_TRUE(ports().automation->create(known.programmatic_identifier));
    EXPECT_FALSE(known.description.empty());
    register_factory(known.programmatic_identifier, {});
  }
}

}  // namespace
}  // namespace kavo::test
