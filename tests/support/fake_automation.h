// Automation for one test: components that the test brings, and nothing of the system's.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/automation.h"
#include "platform/case_fold.h"
#include "platform/failure.h"

namespace kavo::test {

class FakeAutomation : public Automation {
 public:
  std::map<std::u16string, ObjectFactory, LessIgnoringCase> factories;
  std::map<std::u16string, ObjectRef, LessIgnoringCase> active;
  std::map<std::u16string, ObjectRef, LessIgnoringCase> files;  // what bind_to_file() finds, by path
  std::vector<std::u16string> created;                          // identifiers in the order of create()

  ObjectRef create(std::u16string_view programmatic_identifier) override {
    created.emplace_back(programmatic_identifier);
    const auto found = factories.find(programmatic_identifier);
    if (found == factories.end()) raise(FailureNumber::kCannotCreateObject, programmatic_identifier);
    return found->second();
  }

  ObjectRef active_object(std::u16string_view programmatic_identifier) override {
    const auto found = active.find(programmatic_identifier);
    if (found == active.end()) raise(FailureNumber::kCannotCreateObject, programmatic_identifier);
    return found->second;
  }

  ObjectRef bind_to_file(std::u16string_view path) override {
    const auto found = files.find(path);
    if (found == files.end()) raise(FailureNumber::kCannotBindToFile, path);
    return found->second;
  }

 private:
  [[noreturn]] static void raise(FailureNumber number, std::u16string_view name) {
    throw failure(number, std::u16string(name) + u": no such component");
  }
};

// Brings a component into the program's table for as long as it lives.
class FactoryScope {
 public:
  FactoryScope(std::u16string_view programmatic_identifier, ObjectFactory factory)
      : identifier_(programmatic_identifier) {
    register_factory(identifier_, std::move(factory));
  }
  ~FactoryScope() { register_factory(identifier_, {}); }
  FactoryScope(const FactoryScope&) = delete;
  FactoryScope& operator=(const FactoryScope&) = delete;

 private:
  std::u16string identifier_;
};

// A TableObject whose table the test writes in place.
class FakeObject : public TableObject {
 public:
  explicit FakeObject(std::vector<Member> members) : TableObject(std::move(members)) {}
};

}  // namespace kavo::test
