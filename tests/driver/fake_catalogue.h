// A filter catalogue that lists what a test says.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "support/fake_automation.h"

namespace kavo::test {

struct ListedFilter {
  std::u16string first_text, second_text, name;
  std::int32_t value = 0;
};

// Answers 1 with the entry of each index, `past_the_end` (any other status) after the last.
inline ObjectRef make_catalogue(std::vector<ListedFilter> filters, std::int32_t past_the_end = 0) {
  return std::make_shared<FakeObject>(
      std::vector<Member>{{u"Enumerate", MemberKind::kMethod, 5, 5,
                           [filters = std::move(filters), past_the_end](std::span<Argument> arguments) -> Value {
                             const auto index = static_cast<std::size_t>(as_number(arguments[0].value));
                             if (index >= filters.size()) return past_the_end;
                             arguments[1].value = filters[index].first_text;
                             arguments[2].value = filters[index].second_text;
                             arguments[3].value = filters[index].name;
                             arguments[4].value = filters[index].value;
                             return std::int32_t{1};
                           }}});
}

}  // namespace kavo::test
