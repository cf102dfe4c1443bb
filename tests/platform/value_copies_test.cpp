// Copies of values when memory runs out: this program's own operator new fails where a test wants it to.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "platform/automation.h"

namespace {

long allocations_left = -1;  // before one fails; none does while this is negative

void* allocate(std::size_t size) {
  if (allocations_left == 0) {
    allocations_left = -1;
    throw std::bad_alloc();
  }
  if (allocations_left > 0) --allocations_left;
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace kavo::test {
namespace {

// Runs a step with each of its allocations failing in turn; how many there were.
template <class Step>
long fail_each_allocation(const Step& step) {
  for (long number = 0;; ++number) {
    allocations_left = number;
    try {
      step();
      allocations_left = -1;
      return number;
    } catch (const std::bad_alloc&) {
      // The next one.
    }
  }
}

// Too long for the place that a text has inside of itself.
const std::u16string long_text(100, u'x');

TEST(ValueCopies, AFailingCopyOfATextLeavesNothing) {
  const Value text = long_text;
  const long allocations = fail_each_allocation([&] {
    const Value copy = text;
    EXPECT_TRUE(std::holds_alternative<std::u16string>(copy));
  });
  EXPECT_EQ(allocations, 1);
}

TEST(ValueCopies, AFailingAssignmentKeepsTheValue) {
  const Value text = long_text;
  Value number = std::int32_t{1};
  fail_each_allocation([&] {
    number = std::int32_t{1};
    try {
      number = text;
    } catch (const std::bad_alloc&) {
      EXPECT_EQ(number, Value(std::int32_t{1}));
      throw;
    }
  });
  EXPECT_EQ(number, text);
}

class Repeater final : public TableObject {
 public:
  Repeater()
      : TableObject({{u"Repeat", MemberKind::kMethod, 1, 3, [](std::span<Argument> arguments) { return arguments[0].value; }},
                     {u"Text", MemberKind::kPropertyPut, 1, 2, [](auto) { return Value(); }}}) {}
};

TEST(ValueCopies, AFailingCallLeavesNothing) {
  Repeater repeater;
  const long allocations = fail_each_allocation([&] {
    std::vector<Argument> arguments{by_value(long_text), by_reference(long_text)};
    EXPECT_EQ(repeater.invoke(u"Repeat", arguments), Value(long_text));
    repeater.put(u"Text", long_text);
  });
  EXPECT_GT(allocations, 6);
}

}  // namespace
}  // namespace kavo::test
