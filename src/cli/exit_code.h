#pragma once

namespace kavo {

// The exit codes of the command. docs/command.md and the help of the command list the same numbers.
enum class ExitCode {
  kDone = 0,
  kFailed = 1,
  kWrongUsage = 2,
  kDifference = 3,     // a check found one
  kInterrupted = 130,  // by Ctrl+C, as shells report it
};

}  // namespace kavo
