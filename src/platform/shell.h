// Port: the shell and other programs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kavo {

class Shell {
 public:
  virtual ~Shell() = default;
  // These three are ShellExecute with the verb "open", shown normally; a result of 0 to 31 is a failure, as that call
  // answers. A document is opened with the program for documents of its kind and natively never run itself, whatever
  // its permissions say.
  virtual int open(std::u16string_view document) = 0;
  // With the program that files of another extension (".xlf") are opened with. Where the desktop chooses by what a file
  // holds, that decides.
  virtual int open_as(std::u16string_view document, std::u16string_view extension) = 0;
  // Runs a program with the line of its parameters.
  virtual int run(std::u16string_view program, std::u16string_view parameters) = 0;
  // Starts a program, a core path or a name that the system looks up, and does not wait. Each argument arrives whole and
  // as it is: a path among them must have the host's form. Throws `failure` 53, which names the program, when it cannot
  // be started.
  virtual void start(std::u16string_view program, const std::vector<std::u16string>& arguments) = 0;
};

}  // namespace kavo
