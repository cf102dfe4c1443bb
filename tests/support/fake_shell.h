// A shell that starts nothing and records what it was asked for.
#pragma once

#include <string>
#include <vector>

#include "platform/failure.h"
#include "platform/shell.h"

namespace kavo::test {

class FakeShell : public Shell {
 public:
  struct Opened {
    std::u16string file;
    std::u16string parameters;
    bool operator==(const Opened&) const = default;
  };
  struct OpenedAs {
    std::u16string file;
    std::u16string extension;
    bool operator==(const OpenedAs&) const = default;
  };
  std::vector<Opened> opened;
  std::vector<OpenedAs> opened_as;
  using Words = std::vector<std::u16string>;
  std::vector<Words> started;  // each a program and its arguments
  int open_result = 42;
  int open_as_result = 42;
  bool can_start = true;

  int open(std::u16string_view document) override { return run(document, u""); }

  int run(std::u16string_view file, std::u16string_view parameters) override {
    opened.push_back({std::u16string(file), std::u16string(parameters)});
    return open_result;
  }

  int open_as(std::u16string_view file, std::u16string_view extension) override {
    opened_as.push_back({std::u16string(file), std::u16string(extension)});
    return open_as_result;
  }

  void start(std::u16string_view program, const std::vector<std::u16string>& arguments) override {
    if (!can_start) throw failure(FailureNumber::kFileNotFound, std::u16string(program) + u": No such program");
    started.push_back({std::u16string(program)});
    started.back().insert(started.back().end(), arguments.begin(), arguments.end());
  }
};

}  // namespace kavo::test
