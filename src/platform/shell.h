// Port: the shell and other programs.
#pragma once

#include <string>
#include <string_view>

namespace kavo {

class Shell {
 public:
  virtual ~Shell() = default;
  // ShellExecute with the verb "open", shown normally. A result of 0 to 31 is a failure, as that call answers.
  virtual int open(std::u16string_view file, std::u16string_view parameters) = 0;
  // The same with the program that files of another extension (".xlf") are opened with. Where the desktop chooses by
  // what a file holds, that decides.
  virtual int open_as(std::u16string_view file, std::u16string_view extension) = 0;
  // Starts a program by its command line and does not wait; throws `failure` 53 when it cannot be started.
  virtual void start(std::u16string_view command_line) = 0;
};

}  // namespace kavo
