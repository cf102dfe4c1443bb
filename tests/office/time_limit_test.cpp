#include "office/time_limit.h"

#include <gtest/gtest.h>

#include "common/program_settings.h"
#include "support/ports_fixture.h"

namespace kavo::test {
namespace {

class TimeLimit : public PortsFixture {};

TEST_F(TimeLimit, IsThatOfTheUserElseThatOfTheDocument) {
  files.put(u"C:\\small.doc", "");
  files.put(u"C:\\large.doc", std::string(2'000'000, 'x'));
  const struct {
    std::u16string_view stored, document;
    double seconds;
  } cases[] = {{u"", u"C:\\small.doc", 60},      {u"", u"C:\\large.doc", 120},        {u"", u"C:\\missing.doc", 60},
               {u"5", u"C:\\large.doc", 5},      {u"86400", u"C:\\small.doc", 86400}, {u"0", u"C:\\small.doc", 60},
               {u"86401", u"C:\\small.doc", 60}, {u"-5", u"C:\\small.doc", 60},       {u"5s", u"C:\\small.doc", 60}};
  for (const auto& c : cases) {
    kOfficeSettings.save(u"TimeLimit", c.stored);
    EXPECT_EQ(time_limit_for(c.document), c.seconds) << testing::PrintToString(std::u16string(c.stored));
  }
  store_time_limit(7);
  EXPECT_EQ(stored_time_limit(), 7);
  store_time_limit(std::nullopt);
  EXPECT_EQ(stored_time_limit(), std::nullopt);
}

}  // namespace
}  // namespace kavo::test
