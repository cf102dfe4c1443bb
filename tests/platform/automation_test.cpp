#include "platform/automation.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/ports.h"
#include "support/failures.h"
#include "support/fake_automation.h"
#include "support/temp_folder.h"

namespace kavo::test {
namespace {

constexpr std::int32_t kMaximum = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kMinimum = std::numeric_limits<std::int32_t>::min();

Value text(std::u16string_view value) { return std::u16string(value); }

TEST(ValueTest, Numbers) {
  const struct {
    Value value;
    std::int32_t expected;
  } cases[] = {
      {Empty{}, 0},
      {true, -1},
      {false, 0},
      {std::int16_t{-5}, -5},
      {kMaximum, kMaximum},
      {2.5, 2},
      {3.5, 4},
      {-2.5, -2},
      {2.51, 3},
      {2147483647.4, kMaximum},
      {-2147483648.5, kMinimum},
      {text(u"12"), 12},
      {text(u" -12 "), -12},
      {text(u"+7"), 7},
      {text(u"1.5"), 2},
      {text(u"1e3"), 1000},
      {text(u".5"), 0},
  };
  for (const auto& c : cases) EXPECT_EQ(as_number(c.value), c.expected);
}

TEST(ValueTest, NumbersThatDoNotFit) {
  for (const Value& value : {Value(2147483648.0), Value(-2147483649.0), Value(1e300), text(u"2147483648"),
                             text(u"1e400"), Value(std::numeric_limits<double>::quiet_NaN())})
    EXPECT_EQ(failure_number([&] { as_number(value); }), 6);
}

TEST(ValueTest, RefusesTextsThatAreNotNumbers) {
  for (const Value& value : {text(u""), text(u"x"), text(u"1 2"), text(u"1x"), text(u"+-1"), text(u"inf"), text(u"nan"),
                             text(u"--1"), text(u"True"), Value(Omitted{}), Value(ObjectRef())})
    EXPECT_EQ(failure_number([&] { as_number(value); }), 13);
}

TEST(ValueTest, Flags) {
  for (const Value& value : {Value(true), Value(std::int16_t{-1}), Value(7), Value(0.1), text(u"True"), text(u"TRUE"),
                             text(u"1"), text(u"-1")})
    EXPECT_TRUE(as_flag(value));
  for (const Value& value : {Value(false), Value(Empty{}), Value(0), Value(0.0), text(u"false"), text(u"0")})
    EXPECT_FALSE(as_flag(value));
  for (const Value& value : {text(u""), text(u"yes"), Value(Omitted{}), Value(ObjectRef())})
    EXPECT_EQ(failure_number([&] { as_flag(value); }), 13);
}

TEST(ValueTest, Texts) {
  const struct {
    Value value;
    std::u16string_view expected;
  } cases[] = {
      {Empty{}, u""},
      {true, u"True"},
      {false, u"False"},
      {std::int16_t{-3}, u"-3"},
      {kMinimum, u"-2147483648"},
      {1.5, u"1.5"},
      {0.1, u"0.1"},
      {100.0, u"100"},
      {1e20, u"1E+20"},
      {1.0 / 3, u"0.333333333333333"},
      {-0.25, u"-0.25"},
      {text(u"x"), u"x"},
  };
  for (const auto& c : cases) EXPECT_EQ(as_text(c.value), c.expected);
  EXPECT_EQ(failure_number([] { as_text(Omitted{}); }), 13);
  EXPECT_EQ(failure_number([] { as_text(ObjectRef()); }), 13);
}

TEST(ValueTest, Objects) {
  const ObjectRef object = std::make_shared<FakeObject>(std::vector<Member>{});
  EXPECT_EQ(as_object(object), object);
  EXPECT_EQ(failure_number([] { as_object(ObjectRef()); }), 91);
  EXPECT_EQ(failure_number([] { as_object(text(u"x")); }), 13);
  EXPECT_EQ(failure_number([] { as_object(Empty{}); }), 13);
  EXPECT_TRUE(is_omitted(Omitted{}));
  EXPECT_FALSE(is_omitted(Empty{}));
}

// A counter with each kind of member.
class Counter : public TableObject {
 public:
  Counter()
      : TableObject({
            {u"Count", MemberKind::kPropertyGet, 0, 0, [this](auto) -> Value { return count_; }},
            {u"Count", MemberKind::kPropertyPut, 1, 1,
             [this](std::span<Argument> a) -> Value { return count_ = as_number(a[0].value), Empty{}; }},
            {u"Item", MemberKind::kPropertyPut, 1, 3,
             [this](std::span<Argument> a) -> Value { return received_.assign(a.begin(), a.end()), Empty{}; }},
            {u"Join", MemberKind::kMethod, 1, 3,
             [this](std::span<Argument> a) -> Value {
               return received_.assign(a.begin(), a.end()), as_text(a[0].value);
             }},
            {u"Fill", MemberKind::kMethod, 2, 2,
             [](std::span<Argument> a) -> Value { return a[0].value = a[1].value = text(u"filled"), true; }},
            {u"Fail", MemberKind::kMethod, 0, 0,
             [](auto) -> Value { throw failure(9, u"Subscript out of range", u"Counter"); }},
        }) {}

  std::int32_t count_ = 0;
  std::vector<Argument> received_;
};

TEST(TableObjectTest, PropertiesAreReadAndWritten) {
  Counter counter;
  counter.put(u"Count", 5);
  EXPECT_EQ(as_number(counter.get(u"Count")), 5);
}

TEST(TableObjectTest, NamesIgnoreCase) {
  Counter counter;
  counter.put(u"COUNT", text(u"7"));
  EXPECT_EQ(as_number(counter.get(u"count")), 7);
  EXPECT_TRUE(counter.has_member(u"jOIN"));
  EXPECT_FALSE(counter.has_member(u"Joi"));
}

TEST(TableObjectTest, MissingMember) {
  Counter counter;
  EXPECT_EQ(failure_number([&] { counter.get(u"Missing"); }), 438);
  EXPECT_EQ(failure_number([&] { counter.put(u"Missing", 1); }), 438);
  EXPECT_EQ(failure_number([&] { counter.put(u"Join", 1); }), 438) << "a method is no property to write";
  EXPECT_EQ(failure_number([&] { counter.invoke(u""); }), 438);
}

TEST(TableObjectTest, GetAndInvokeReachMethodsAndProperties) {
  Counter counter;
  counter.put(u"Count", 3);
  EXPECT_EQ(as_number(counter.invoke(u"Count")), 3);
  Argument argument = by_value(text(u"x"));
  EXPECT_EQ(as_text(counter.AutomationObject::get(u"Count")), u"3");
  EXPECT_EQ(as_text(counter.get(u"Join", std::span(&argument, 1))), u"x");
}

TEST(TableObjectTest, WrongArgumentCount) {
  Counter counter;
  std::vector<Argument> four(4, by_value(1));
  EXPECT_EQ(failure_number([&] { counter.invoke(u"Join"); }), 450);
  EXPECT_EQ(failure_number([&] { counter.invoke(u"Join", four); }), 450);
  EXPECT_EQ(failure_number([&] { counter.get(u"Count", four); }), 450);
  EXPECT_EQ(failure_number([&] { counter.put(u"Count", four, 1); }), 450);
}

TEST(TableObjectTest, MissingTrailingArgumentsAreOmitted) {
  Counter counter;
  Argument argument = by_value(text(u"x"));
  counter.invoke(u"Join", std::span(&argument, 1));
  ASSERT_EQ(counter.received_.size(), 3u);
  EXPECT_TRUE(is_omitted(counter.received_[1].value));
  EXPECT_TRUE(is_omitted(counter.received_[2].value));
}

TEST(TableObjectTest, NewValueOfAPropertyIsTheLastParameter) {
  Counter counter;
  Argument index = by_value(1);
  counter.put(u"Item", std::span(&index, 1), text(u"value"));
  ASSERT_EQ(counter.received_.size(), 3u);
  EXPECT_EQ(as_number(counter.received_[0].value), 1);
  EXPECT_TRUE(is_omitted(counter.received_[1].value));
  EXPECT_EQ(as_text(counter.received_[2].value), u"value");
}

TEST(TableObjectTest, OnlyArgumentsByReferenceAreWrittenBack) {
  Counter counter;
  std::vector<Argument> arguments = {by_reference(Empty{}), by_value(1)};
  EXPECT_TRUE(as_flag(counter.invoke(u"fill", arguments)));
  EXPECT_EQ(as_text(arguments[0].value), u"filled");
  EXPECT_TRUE(arguments[0].by_reference);
  EXPECT_EQ(as_number(arguments[1].value), 1);
}

TEST(TableObjectTest, FailureOfTheObjectKeepsNumberDescriptionAndSource) {
  Counter counter;
  const std::optional<failure> error = failure_of([&] { counter.invoke(u"Fail"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), 9);
  EXPECT_EQ(error->description(), u"Subscript out of range");
  EXPECT_EQ(error->source(), u"Counter");
}

TEST(TableObjectTest, MembersStandInTheOrderOfTheTable) {
  const Counter counter;
  ASSERT_EQ(counter.members().size(), 6u);
  EXPECT_EQ(counter.members()[0].name, u"Count");
  EXPECT_EQ(counter.members()[5].name, u"Fail");
}

TEST(AutomationTest, ComponentOfTheProgramIsCreated) {
  const FactoryScope scope(u"KavoTest.Counter", [] { return std::make_shared<Counter>(); });
  const ObjectRef first = ports().automation->create(u"kavotest.COUNTER");
  const ObjectRef second = ports().automation->create(u"KavoTest.Counter");
  ASSERT_TRUE(first);
  first->put(u"Count", 4);
  EXPECT_EQ(as_number(first->get(u"Count")), 4);
  EXPECT_EQ(as_number(second->get(u"Count")), 0) << "each call makes a new object";
}

TEST(AutomationTest, ComponentOfTheProgramComesBeforeARegisteredOne) {
  // Every Windows has a component of this name.
  const FactoryScope scope(u"Scripting.Dictionary", [] { return std::make_shared<Counter>(); });
  EXPECT_TRUE(ports().automation->create(u"Scripting.Dictionary")->has_member(u"Fail"));
}

TEST(AutomationTest, LaterRegistrationReplacesAndAnEmptyOneRemoves) {
  const FactoryScope scope(u"KavoTest.Counter", [] { return ObjectRef(); });
  register_factory(u"KAVOTEST.Counter", [] { return std::make_shared<Counter>(); });
  EXPECT_TRUE(ports().automation->create(u"KavoTest.Counter"));
  register_factory(u"KavoTest.Counter", {});
  EXPECT_FALSE(find_factory(u"KavoTest.Counter"));
}

TEST(AutomationTest, MissingComponentIsNamed) {
  for (const auto& call : {&Automation::create, &Automation::active_object}) {
    const std::optional<failure> error = failure_of([&] { (ports().automation->*call)(u"KavoTest.Missing"); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->number(), 429);
    EXPECT_NE(error->description().find(u"KavoTest.Missing"), std::u16string::npos);
  }
}

TEST(AutomationTest, FileThatNoComponentOpens) {
  const TempFolder temp;
  const std::u16string path = temp.write(u"file.kavo-test", "content");
  EXPECT_EQ(failure_number([&] { ports().automation->bind_to_file(path); }), 432);
}

}  // namespace
}  // namespace kavo::test
