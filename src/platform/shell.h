// Port: the shell and other programs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kavo {

class Shell {
 public:
  virtual ~Shell() = default;
  // The first three return what ShellExecute returns for the verb "open": 0 to 31 for a failure. They do not throw when
  // the program cannot be started.
  //
  // Opens a document with the program for its type. Natively it is never executed itself, whatever its permissions.
  virtual int open(std::u16string_view document) = 0;
  // Opens a document as if it had another extension (".xlf"). A desktop that goes by the content of a file ignores the
  // extension.
  virtual int open_as(std::u16string_view document, std::u16string_view extension) = 0;
  // Runs a program; `parameters` are all its arguments in one line.
  virtual int run(std::u16string_view program, std::u16string_view parameters) = 0;
  // Starts a program (a core path, or a name that the system looks up) and does not wait for it. Each argument arrives
  // unchanged as one argument, so a path among them must have the host's form. Throws `failure` 53, naming the program,
  // when it cannot be started.
  virtual void start(std::u16string_view program, const std::vector<std::u16string>& arguments) = 0;
};

}  // namespace kavo
