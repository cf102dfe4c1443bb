// Port: late-bound objects.
//
// The suite's components and the Office programs are reached by programmatic identifier and member name only. On
// Windows this port is COM; natively it is a table of factories in the process. Objects written in C++ (suite
// components, test doubles) derive from `TableObject`, list their members in one table and serve both builds: one
// adapter turns any of them into an IDispatch.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kavo {

class AutomationObject;
using ObjectRef = std::shared_ptr<AutomationObject>;

// The copy operations are deliberately not trivial. libstdc++ 12 assumes that a std::variant never loses its value when
// all of its alternatives can be moved without throwing. If memory runs out while such a variant is copied, it destroys
// an alternative that was never constructed. One alternative with a copy of its own switches this assumption off, so
// every variant that holds texts includes this one.
struct Empty {
  Empty() = default;
  Empty(const Empty&) noexcept {}
  Empty& operator=(const Empty&) noexcept { return *this; }
  bool operator==(const Empty&) const = default;
};
// An optional argument that the caller left out (DISP_E_PARAMNOTFOUND).
struct Omitted {
  bool operator==(const Omitted&) const = default;
};

using Value = std::variant<Empty, Omitted, bool, std::int16_t, std::int32_t, double, std::u16string, ObjectRef>;

// One positional argument. If it is passed by reference, `value` is what the callee left there once the call returns.
struct Argument {
  Value value;
  bool by_reference = false;
};
inline Argument by_value(Value value) { return {std::move(value), false}; }
inline Argument by_reference(Value value) { return {std::move(value), true}; }

// Conversions as an automation host makes them (text "12" to number 12, number to text ...); throw `failure` 13 (or 6
// when a number does not fit). Empty is 0, false, ""; true is -1; halves go to the even number. An omitted argument
// cannot be converted (13).
std::int32_t as_number(const Value& value);
bool as_flag(const Value& value);
std::u16string as_text(const Value& value);
ObjectRef as_object(const Value& value);  // never null; throws 91 for a null reference
bool is_omitted(const Value& value);

// A late-bound object. Member names ignore case. Each call throws `failure`: 438 for a member that does not exist, 450
// for a wrong number of arguments, 13 for one of the wrong type, else what the object itself reported (number,
// description, source).
class AutomationObject {
 public:
  virtual ~AutomationObject() = default;
  virtual Value get(std::u16string_view member, std::span<Argument> arguments) = 0;
  virtual void put(std::u16string_view member, std::span<Argument> arguments, const Value& value) = 0;
  virtual Value invoke(std::u16string_view member, std::span<Argument> arguments) = 0;
  // True when a member of that name exists, as far as that can be known without calling it.
  virtual bool has_member(std::u16string_view member) const = 0;

  Value get(std::u16string_view member) { return get(member, std::span<Argument>{}); }
  void put(std::u16string_view member, const Value& value) { put(member, std::span<Argument>{}, value); }
  Value invoke(std::u16string_view member) { return invoke(member, std::span<Argument>{}); }
};

enum class MemberKind { kMethod, kPropertyGet, kPropertyPut };

// One row of a TableObject's table. The caller must pass at least `required_count` arguments. `call` always gets
// `parameter_count` of them: those that the caller left out at the end arrive as Omitted. For kPropertyPut the new
// value is the last one.
struct Member {
  std::u16string_view name;
  MemberKind kind;
  std::size_t required_count;
  std::size_t parameter_count;
  std::function<Value(std::span<Argument>)> call;
};

// An object written in C++: its members in one table, in the order of its documentation. get() and invoke() both reach
// methods and readable properties, because a late-bound host does not know which of the two a name stands for.
class TableObject : public AutomationObject {
 public:
  using AutomationObject::get;
  using AutomationObject::invoke;
  using AutomationObject::put;
  Value get(std::u16string_view member, std::span<Argument> arguments) override;
  void put(std::u16string_view member, std::span<Argument> arguments, const Value& value) override;
  Value invoke(std::u16string_view member, std::span<Argument> arguments) override;
  bool has_member(std::u16string_view member) const override;
  std::span<const Member> members() const { return members_; }

 protected:
  explicit TableObject(std::vector<Member> members) : members_(std::move(members)) {}

 private:
  Value call(std::u16string_view name, MemberKind kind, std::span<Argument> arguments);
  std::vector<Member> members_;
};

// Finds objects. No result is null; each failure names the identifier or the file.
class Automation {
 public:
  virtual ~Automation() = default;
  // A new object (CoCreateInstance). Throws `failure` 429.
  virtual ObjectRef create(std::u16string_view programmatic_identifier) = 0;
  // The object of that kind that is running already (GetActiveObject). Throws `failure` 429.
  virtual ObjectRef active_object(std::u16string_view programmatic_identifier) = 0;
  // The object that opens a file (CoGetObject). Throws `failure` 432.
  virtual ObjectRef bind_to_file(std::u16string_view path) = 0;
};

// Prepares the calling thread for automation as long as it lives (a single-threaded apartment on Windows, nothing
// natively). Programs make one in main(). The library makes none, because it runs in its host's apartment. Throws
// `failure` when the thread is in an apartment of the other kind.
class AutomationSession {
 public:
  AutomationSession();
  ~AutomationSession();  // NOLINT(performance-trivially-destructible): does nothing natively, but not on Windows
  AutomationSession(const AutomationSession&) = delete;
  AutomationSession& operator=(const AutomationSession&) = delete;
};

using ObjectFactory = std::function<ObjectRef()>;
// Adds an identifier to this process's own table of factories, so that a program can bring components without
// registering them with the system. Automation::create() asks this table first: a program works with the components
// that it was built with, whatever the machine has registered under the same identifiers. The case of the identifier
// does not matter. A second registration replaces the first; an empty factory removes it. All threads share the table.
void register_factory(std::u16string_view programmatic_identifier, ObjectFactory factory);
// The factory of an identifier, empty when it has none. For adapters.
ObjectFactory find_factory(std::u16string_view programmatic_identifier);

}  // namespace kavo
