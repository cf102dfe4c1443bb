// Objects written in C++: the member table behind them.
#include "platform/automation.h"

#include "platform/case_fold.h"
#include "platform/failure.h"

namespace kavo {
namespace {

[[noreturn]] void throw_no_such_member(std::u16string_view name) {
  throw failure(FailureNumber::kNoSuchMember,
                u"Object doesn't support this property or method: " + std::u16string(name));
}

bool answers(MemberKind member, MemberKind wanted) {
  return (member == MemberKind::kPropertyPut) == (wanted == MemberKind::kPropertyPut);
}

}  // namespace

Value TableObject::get(std::u16string_view member, std::span<Argument> arguments) {
  return call(member, MemberKind::kPropertyGet, arguments);
}

Value TableObject::invoke(std::u16string_view member, std::span<Argument> arguments) {
  return call(member, MemberKind::kMethod, arguments);
}

void TableObject::put(std::u16string_view member, std::span<Argument> arguments, const Value& value) {
  std::vector<Argument> with_value(arguments.begin(), arguments.end());
  with_value.push_back(by_value(value));
  call(member, MemberKind::kPropertyPut, with_value);
}

bool TableObject::has_member(std::u16string_view member) const {
  for (const Member& candidate : members_)
    if (equal_ignoring_case(candidate.name, member)) return true;
  return false;
}

Value TableObject::call(std::u16string_view name, MemberKind kind, std::span<Argument> arguments) {
  for (const Member& member : members_) {
    if (!answers(member.kind, kind) || !equal_ignoring_case(member.name, name)) continue;
    if (arguments.size() < member.required_count || arguments.size() > member.parameter_count)
      throw failure(FailureNumber::kWrongArgumentCount,
                    u"Wrong number of arguments or invalid property assignment: " + std::u16string(name));
    // The callee works on copies, so that an argument that was passed by value stays what it was.
    std::vector<Argument> complete;
    complete.reserve(member.parameter_count);
    for (const Argument& argument : arguments) complete.push_back(argument);
    const std::size_t missing = member.parameter_count - arguments.size();
    // The new value of a property is its last parameter, whatever was left out before it.
    const auto position = kind == MemberKind::kPropertyPut && missing > 0 ? complete.end() - 1 : complete.end();
    complete.insert(position, missing, by_value(Omitted{}));
    Value result = member.call(complete);
    for (std::size_t i = 0; i < arguments.size(); ++i)
      if (arguments[i].by_reference) arguments[i].value = std::move(complete[i].value);
    return result;
  }
  throw_no_such_member(name);
}

}  // namespace kavo
