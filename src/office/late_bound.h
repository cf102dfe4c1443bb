// Calls on Office objects by member name. A null reference throws `failure` 91, as in a late-bound host.
#pragma once

#include <initializer_list>
#include <string_view>
#include <vector>

#include "platform/automation.h"

namespace kavo {

inline Value get_member(const ObjectRef& object, std::u16string_view member,
                        std::initializer_list<Argument> arguments = {}) {
  std::vector<Argument> passed(arguments);
  return as_object(object)->get(member, passed);
}

inline void put_member(const ObjectRef& object, std::u16string_view member, const Value& value) {
  as_object(object)->put(member, value);
}

inline Value call_member(const ObjectRef& object, std::u16string_view member,
                         std::initializer_list<Argument> arguments = {}) {
  std::vector<Argument> passed(arguments);
  return as_object(object)->invoke(member, passed);
}

}  // namespace kavo
