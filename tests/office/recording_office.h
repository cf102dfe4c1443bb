// An Office program that only records its calls: every call in order, with the exact types of its arguments.
//
//   active Word.Application                     attaching to a running program
//   create Word.Application                     starting one
//   bind C:\WORK\a.doc                          the object of a file
//   Application.Visible = true                  a property set
//   Documents.Open("C:\WORK\a.doc"&, false)     a call; "&" marks an argument passed by reference
//   Document.Close(0i16)                        16-bit numbers end in i16, 32-bit ones in i32
//
// Reading a member that holds an object is written down too. Any call can be told to fail.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/automation.h"
#include "platform/failure.h"
#include "platform/unicode.h"
#include "support/fake_desktop.h"

namespace kavo::test {

class RecordingOffice : public Automation {
 public:
  using Answer = std::function<Value(std::span<Argument>)>;

  std::vector<std::string> calls;
  // What a member answers, by "Object.Member"; Empty for any other.
  std::map<std::string, Answer> answers;
  bool running = false;           // active_object() finds it
  bool installed = true;          // create() can start it
  bool bindable = false;          // bind_to_file() finds a program for the file
  std::size_t fail_at = 0;        // 1-based number of the call that fails, 0 for none
  std::set<std::string> failing;  // members that fail whenever they are called, by "Object.Member"

  // An object that records under this name.
  ObjectRef object(std::string name) { return std::make_shared<Recorded>(*this, std::move(name)); }
  // Answers with a new object of that name.
  Answer with_object(std::string name) {
    return [this, name](std::span<Argument>) -> Value { return object(name); };
  }

  ObjectRef create(std::u16string_view identifier) override {
    record("create " + to_utf8(identifier), "create", installed);
    return object("Application");
  }
  ObjectRef active_object(std::u16string_view identifier) override {
    record("active " + to_utf8(identifier), "active", running);
    return object("Application");
  }
  ObjectRef bind_to_file(std::u16string_view path) override {
    record("bind " + to_utf8(path), "bind", bindable);
    return object("File");
  }

  // All calls, one a line.
  std::string text() const {
    std::string all;
    for (const std::string& call : calls) all += call + "\n";
    return all;
  }

  void note(std::string call) { calls.push_back(std::move(call)); }

 private:
  class Recorded : public AutomationObject {
   public:
    Recorded(RecordingOffice& office, std::string name) : office_(office), name_(std::move(name)) {}
    using AutomationObject::get;
    using AutomationObject::invoke;
    using AutomationObject::put;
    Value get(std::u16string_view member, std::span<Argument> arguments) override {
      return call(member, arguments, "");
    }
    Value invoke(std::u16string_view member, std::span<Argument> arguments) override {
      return call(member, arguments, "()");
    }
    void put(std::u16string_view member, std::span<Argument> arguments, const Value& value) override {
      const std::string name = name_ + "." + to_utf8(member);
      office_.record(name + list(arguments, "") + " = " + text_of(value), name, true);
    }
    bool has_member(std::u16string_view member) const override {
      return office_.answers.contains(name_ + '.' + to_utf8(member));
    }

   private:
    Value call(std::u16string_view member, std::span<Argument> arguments, const char* when_empty) {
      const std::string name = name_ + "." + to_utf8(member);
      office_.record(name + list(arguments, when_empty), name, true);
      const auto answer = office_.answers.find(name);
      return answer == office_.answers.end() ? Value() : answer->second(arguments);
    }

    RecordingOffice& office_;
    std::string name_;
  };

  static std::string text_of(const Value& value) {
    if (std::holds_alternative<Empty>(value)) return "empty";
    if (std::holds_alternative<Omitted>(value)) return "omitted";
    if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "true" : "false";
    if (const auto* number = std::get_if<std::int16_t>(&value)) return std::to_string(*number) + "i16";
    if (const auto* number = std::get_if<std::int32_t>(&value)) return std::to_string(*number) + "i32";
    if (const auto* number = std::get_if<double>(&value)) return std::to_string(*number);
    if (const auto* text = std::get_if<std::u16string>(&value)) return '"' + to_utf8(*text) + '"';
    return "object";
  }

  static std::string list(std::span<Argument> arguments, const char* when_empty) {
    if (arguments.empty()) return when_empty;
    std::string all = "(";
    for (const Argument& argument : arguments) {
      if (all.size() > 1) all += ", ";
      all += text_of(argument.value);
      if (argument.by_reference) all += '&';
    }
    return all + ")";
  }

  void record(std::string call, const std::string& name, bool possible) {
    calls.push_back(std::move(call));
    if (!possible) throw failure(FailureNumber::kCannotCreateObject, u"No such program");
    if (calls.size() == fail_at || failing.contains(name)) throw failure(1004, u"The call was refused", u"Office");
  }
};

// The desktop's part of a conversion, written into the same record.
class RecordingDesktop : public FakeDesktop {
 public:
  explicit RecordingDesktop(RecordingOffice& office) : office_(office) {}
  void activate(std::u16string_view caption_text) override {
    office_.note("activate \"" + to_utf8(caption_text) + '"');
  }
  std::uintptr_t find_window(std::u16string_view class_name) override {
    office_.note("find window " + to_utf8(class_name));
    return FakeDesktop::find_window(class_name);
  }
  void post_message(std::uintptr_t window, std::uint32_t message) override {
    office_.note("post " + std::to_string(message) + " to " + std::to_string(window));
  }

 private:
  RecordingOffice& office_;
};

}  // namespace kavo::test
