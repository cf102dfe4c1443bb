// Lines of standard input, or of any other open file. Waiting for one can be interrupted by Ctrl+C.
#pragma once

#include <optional>
#include <string>

namespace kavo {

class TerminalInput {
 public:
  explicit TerminalInput(int descriptor) : descriptor_(descriptor) {}
  // The next line without its end; nothing at the end of the input. Throws `interruption` when the user interrupts.
  std::optional<std::string> line();

 private:
  int descriptor_;  // not owned
  std::string read_;
  bool ended_ = false;
};

}  // namespace kavo
